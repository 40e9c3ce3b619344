#include "lib/detect/focus.h"

#include <cstring>

#include "lib/detect/byte_blocks.h"

namespace orva {

namespace {

constexpr int kLongestRun = 3;
constexpr size_t kContext = 2;
// So many bytes between two are context of the one or the other, and the segments meet.
constexpr size_t kSharedContext = 3;

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

namespace {

// Copies what text[i] begins with up to a byte that may not stay as it is, as far as blocks go;
// returns where it stopped. REQUIRES: there are two bytes before `*to`, and room for what is left
// of the text.
size_t copy_normal(std::string_view text, size_t i, char** to) {
  const size_t first = i;
  for (; i + kByteBlock <= text.size(); i += kByteBlock, *to += kByteBlock) {
    const ByteBlock block = block_at(text.data() + i);
    ByteBlock last = block_at(text.data() + i - 1);
    ByteBlock second_last = block_at(text.data() + i - 2);
    if (i == first) {
      last[0] = second_last[1] = static_cast<uint8_t>((*to)[-1]);
      second_last[0] = static_cast<uint8_t>((*to)[-2]);
    }
    const ByteBlock digits = ByteBlock(block - '0' < 10);
    const ByteBlock runs = ByteBlock(block == last) & ByteBlock(last == second_last);
    memcpy(*to, &block, sizeof block);
    const size_t odd = first_of(digits | runs | (blanks_of(block) & blanks_of(last)));
    if (odd == kByteBlock) continue;
    *to += odd;
    return i + odd;
  }
  return i;
}

}  // namespace

size_t context_before(std::string_view text, size_t at) {
  size_t missing = 0;
  return context_before(text, at, &missing);
}

std::string normalised(std::string_view text) {
  TextBuffer buffer;
  return std::string(normalised(text, &buffer));
}

std::string_view normalised(std::string_view text, TextBuffer* buffer, bool wide) {
  static const Normal normal;
  char* const begin = buffer->room(text.size() + kWideBlock);
  if (wide) return {begin, copy_normal_wide(text, begin)};
  char* to = begin;
  char last = 0;
  int run = 0;
  bool behind_blank = false;
  // Every byte is written, and kept or written over by the next one.
  for (size_t i = 0; i < text.size(); ++i) {
    // What does not stay comes in runs.
    const bool blank_again = behind_blank && is_blank(text[i]);
    if (to - begin >= 2 && !is_digit(text[i]) && text[i] != last && !blank_again) {
      const size_t next = copy_normal(text, i, &to);
      if (next == text.size()) break;
      if (next != i) {
        last = to[-1];
        run = to[-2] == last ? 2 : 1;
        behind_blank = is_blank(last);
      }
      i = next;
    }
    const auto b = static_cast<unsigned char>(text[i]);
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
  return {begin, static_cast<size_t>(to - begin)};
}

std::string_view with_few_high(std::string_view sample, size_t most_high) {
  constexpr size_t kBlock = 64;
  if (count_high(sample) <= most_high) return sample;
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

namespace {

// Skips bytes above 0x7F, and others between two of them that are context of both.
size_t skip_high_words(std::string_view text, size_t i) {
  for (;;) {
    i = skip_high(text, i);
    size_t gap = 1;
    while (gap <= kSharedContext && i + gap < text.size() && !is_high(text[i + gap])) ++gap;
    if (gap > kSharedContext || i + gap >= text.size()) return i;
    i += gap;
  }
}

}  // namespace

void find_high_segments(std::string_view framed, std::vector<std::string_view>* segments) {
  const std::string_view text = framed.substr(kFront.size());
  segments->clear();
  size_t end = 0;  // of the segment under way
  for (size_t i = skip_ascii(text, 0); i < text.size(); i = skip_ascii(text, i)) {
    size_t missing = kContext;
    const size_t begin = context_before(text, i, &missing);
    i = skip_high_words(text, i);
    const size_t next = context_behind(text, i);
    if (segments->empty() || begin >= end) {
      // The first byte of a text is scored too, as if it stood at a line's beginning.
      const size_t from = kFront.size() + begin - missing;
      segments->push_back(framed.substr(from, kFront.size() + next - from));
    } else {
      std::string_view& last = segments->back();
      last = {last.data(), last.size() + next - end};
    }
    end = next;
  }
}

}  // namespace orva
