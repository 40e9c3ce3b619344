#include "lib/detect/focus.h"

#include "lib/detect/byte_blocks.h"

namespace orva {

namespace {

constexpr int kLongestRun = 3;
constexpr size_t kContext = 2;

bool is_high(char c) { return static_cast<unsigned char>(c) >= 0x80; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// What becomes of each byte.
struct Normal {
  char as[256];
  bool blank[256];

  Normal() {
    for (int b = 0; b < 256; ++b) {
      const auto c = static_cast<char>(b);
      as[b] = is_digit(c) ? '0' : c;
      blank[b] = is_blank(c);
    }
  }
};

// `missing` of the bytes are not there.
size_t context_before(std::string_view text, size_t at, size_t* missing) {
  for (*missing = kContext; at > 0 && *missing > 0;) *missing -= is_digit(text[--at]) ? 0 : 1;
  return at;
}

// Where the two bytes that models see from text[at] on end.
size_t context_behind(std::string_view text, size_t at) {
  for (size_t wanted = kContext; at < text.size() && wanted > 0;) {
    wanted -= is_digit(text[at++]) ? 0 : 1;
  }
  return at;
}

}  // namespace

size_t context_before(std::string_view text, size_t at) {
  size_t missing = 0;
  return context_before(text, at, &missing);
}

std::string normalised(std::string_view text) {
  static const Normal normal;
  std::string out(text.size(), '\0');
  char* const begin = out.data();
  char* to = begin;
  char last = 0;
  int run = 0;
  bool behind_blank = false;
  // Every byte is written, and kept or written over by the next one.
  for (const char raw : text) {
    const auto b = static_cast<unsigned char>(raw);
    const char as = normal.as[b];
    const bool blank = normal.blank[b];
    *to = as;
    // Neighbours are seldom the same.
    if (as != last) {
      run = 1;
      last = as;
    } else if (++run > (is_digit(as) ? 1 : kLongestRun)) {
      continue;
    }
    to += blank && behind_blank ? 0 : 1;
    behind_blank = blank;
  }
  out.resize(static_cast<size_t>(to - begin));
  return out;
}

std::string_view with_few_high(std::string_view sample, size_t most_high) {
  constexpr size_t kBlock = 64;
  size_t high = 0;
  size_t i = 0;
  for (; i < sample.size(); i += kBlock) {
    const size_t more = count_high(sample.substr(i, kBlock));
    if (high + more > most_high) break;
    high += more;
  }
  for (; i < sample.size(); ++i) {
    if (is_high(sample[i]) && ++high > most_high) return sample.substr(0, i);
  }
  return sample;
}

std::vector<std::string> high_segments(std::string_view text) {
  std::vector<std::string> segments;
  size_t end = 0;  // of the segment under way
  for (size_t i = skip_ascii(text, 0); i < text.size(); i = skip_ascii(text, i)) {
    size_t missing = kContext;
    const size_t begin = context_before(text, i, &missing);
    if (segments.empty() || begin >= end) {
      // The first byte of a text is scored too, as if it stood at a line's beginning.
      segments.emplace_back(missing, '\n');
      end = begin;
    }
    while (i < text.size() && is_high(text[i])) ++i;
    const size_t next = context_behind(text, i);
    segments.back() += text.substr(end, next - end);
    end = next;
  }
  return segments;
}

}  // namespace orva
