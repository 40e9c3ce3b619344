#include "lib/detect/focus.h"

#include <algorithm>

namespace orva {

namespace {

constexpr int kLongestRun = 3;
constexpr size_t kContext = 2;

bool is_high(char c) { return static_cast<unsigned char>(c) >= 0x80; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

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
  std::string out;
  out.reserve(text.size());
  char last = 0;
  int run = 0;
  for (const char raw : text) {
    const char c = is_digit(raw) ? '0' : raw;
    run = c == last ? run + 1 : 1;
    last = c;
    if (run > (is_digit(c) ? 1 : kLongestRun)) continue;
    if (is_blank(c) && !out.empty() && is_blank(out.back())) continue;
    out.push_back(c);
  }
  return out;
}

std::string_view with_few_high(std::string_view sample, size_t most_high) {
  size_t high = 0;
  for (size_t i = 0; i < sample.size(); ++i) {
    if (is_high(sample[i]) && ++high > most_high) return sample.substr(0, i);
  }
  return sample;
}

std::vector<std::string> high_segments(std::string_view text) {
  std::vector<std::string> segments;
  size_t end = 0;  // of the segment under way
  for (size_t i = 0; i < text.size(); ++i) {
    if (!is_high(text[i])) continue;
    size_t missing = kContext;
    const size_t begin = context_before(text, i, &missing);
    if (segments.empty() || begin >= end) {
      // The first byte of a text is scored too, as if it stood at a line's beginning.
      segments.emplace_back(missing, '\n');
      end = begin;
    }
    const size_t next = context_behind(text, i + 1);
    segments.back() += text.substr(end, next - end);
    end = next;
  }
  return segments;
}

}  // namespace orva
