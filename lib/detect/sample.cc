#include "lib/detect/sample.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "lib/detect/byte_blocks.h"

namespace orva {

namespace {

// A "<" whose ">" is farther away is a sign of its own.
constexpr size_t kLongestTag = 2048;

enum ByteKind : uint8_t { kOther = 0, kBlank = 1, kTagSign = 2 };

struct TextKinds {
  ByteKind of[256] = {};

  TextKinds() {
    for (const unsigned char blank : {' ', '\t', '\n', '\r'}) of[blank] = kBlank;
    of[static_cast<unsigned char>('<')] = kTagSign;
  }
};

// How many bytes of whole lines without a byte above 0x7F `bytes` begins with, not looking far.
size_t ascii_lines(std::string_view bytes) {
  constexpr size_t kFar = 4096;
  const std::string_view ascii = bytes.substr(0, skip_ascii(bytes.substr(0, kFar), 0));
  const size_t end = ascii.rfind('\n');
  return end == std::string_view::npos ? 0 : end + 1;
}

// Copies what text[i] begins with up to a "<" or a blank behind another one, as far as blocks go;
// returns where it stopped. REQUIRES: there is a byte before `*to`, and room for what is left of
// the text.
size_t copy_plain(std::string_view text, size_t i, char** to) {
  const size_t first = i;
  for (; i + kByteBlock <= text.size(); i += kByteBlock, *to += kByteBlock) {
    const ByteBlock block = block_at(text.data() + i);
    ByteBlock last = block_at(text.data() + i - 1);
    if (i == first) last[0] = static_cast<uint8_t>((*to)[-1]);
    memcpy(*to, &block, sizeof block);
    const size_t odd = first_of((blanks_of(block) & blanks_of(last)) | ByteBlock(block == '<'));
    if (odd == kByteBlock) continue;
    *to += odd;
    return i + odd;
  }
  return i;
}

bool begins_tag(std::string_view text, size_t at) {
  if (at + 1 >= text.size()) return false;
  const char c = text[at + 1];
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '/' || c == '!' || c == '?';
}

}  // namespace

void Sample::reset() {
  text_.clear();
  line_.clear();
  high_ = false;
}

void Sample::feed(std::string_view bytes) {
  if (text_.size() < kHead) {
    const std::string_view head = bytes.substr(0, kHead - text_.size());
    text_ += head;
    bytes.remove_prefix(head.size());
  }
  while (!bytes.empty() && text_.size() < kLimit) {
    if (line_.empty()) bytes.remove_prefix(ascii_lines(bytes));
    bytes.remove_prefix(take_line(bytes));
  }
}

// Takes bytes of the line under way, to its end when that is among `bytes`; returns how many.
size_t Sample::take_line(std::string_view bytes) {
  // Up to here a line is ended by nothing but its own end.
  const size_t room = kLongestLine - std::min(kLongestLine, line_.size() + 1);
  const std::string_view near = bytes.substr(0, room);
  const size_t end = near.find('\n');
  size_t taken = end == std::string_view::npos ? near.size() : end + 1;
  line_ += bytes.substr(0, taken);
  high_ = high_ || skip_ascii(near.substr(0, taken), 0) != taken;
  if (end != std::string_view::npos) {
    end_line();
    return taken;
  }
  while (taken < bytes.size()) {
    const char c = bytes[taken++];
    line_.push_back(c);
    if (static_cast<unsigned char>(c) >= 0x80) high_ = true;
    // A line is cut where no character is: behind a byte below 0x40.
    const bool full = line_.size() >= kLongestLine && static_cast<unsigned char>(c) < 0x30;
    if (c == '\n' || full || line_.size() >= 2 * kLongestLine) {
      end_line();
      break;
    }
  }
  return taken;
}

void Sample::end_line() {
  if (high_) text_ += line_;
  line_.clear();
  high_ = false;
}

std::string_view Sample::text() {
  end_line();
  return text_;
}

std::string without_markup(std::string_view text) {
  TextBuffer buffer;
  return std::string(without_markup(text, &buffer));
}

std::string_view without_markup(std::string_view text, TextBuffer* buffer, bool wide) {
  static const TextKinds kinds;
  char* const begin = buffer->room(text.size() + kWideBlock);
  char* to = begin;
  unsigned behind_blank = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (wide) {
      bool blank = behind_blank != 0;
      i += copy_plain_wide(text.substr(i), &to, &blank);
      if (i == text.size()) break;
      behind_blank = blank ? kBlank : kOther;
    }
    // Blanks come in runs.
    if (!wide && to != begin && kinds.of[static_cast<unsigned char>(text[i])] != kBlank) {
      i = copy_plain(text, i, &to);
      if (i == text.size()) break;
      behind_blank = kinds.of[static_cast<unsigned char>(to[-1])] & kBlank;
    }
    const unsigned kind = kinds.of[static_cast<unsigned char>(text[i])];
    if (kind == kTagSign && begins_tag(text, i)) {
      const size_t end = text.substr(i, kLongestTag).find('>');
      if (end != std::string_view::npos) {
        i += end;
        continue;
      }
    }
    // Every byte is written, and kept or written over by the next one.
    *to = text[i];
    to += 1 - (kind & behind_blank);
    behind_blank = kind & kBlank;
  }
  return {begin, static_cast<size_t>(to - begin)};
}

std::string_view main_text(std::string_view text, TextBuffer* to) {
  const std::string_view plain = without_markup(text, to);
  return 2 * count_high(plain) < count_high(text) ? text : plain;
}

}  // namespace orva
