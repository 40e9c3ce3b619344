#include "tests/reference/naive_evidence.h"

#include "lib/detect/sample.h"
#include "lib/detect/utf_codec.h"

namespace orva {

ByteKinds naive_byte_kinds(std::string_view bytes) {
  ByteKinds kinds;
  for (const char c : bytes) {
    const auto b = static_cast<unsigned char>(c);
    if (b >= 0x80) ++kinds.high;
    if (b == ' ') ++kinds.blanks;
    if (b == '@') ++kinds.at_signs;
    // Those that text holds: tabulators, ends of lines and pages, the old end of a file, escapes.
    const bool of_text = (b >= 0x09 && b <= 0x0D) || b == 0x1A || b == 0x1B;
    if ((b < 0x20 && !of_text) || b == 0x7F) ++kinds.odd_controls;
  }
  return kinds;
}

NaiveUnicode naive_unicode(int width, bool big_endian, std::string_view bytes) {
  NaiveUnicode out;
  while (!bytes.empty()) {
    const Character c = width == 2 ? read_utf16(bytes, big_endian) : read_utf32(bytes, big_endian);
    if (c.state == Character::kCut) break;
    const bool none = (c.value & 0xFFFE) == 0xFFFE || (c.value >= 0xFDD0 && c.value <= 0xFDEF);
    out.valid = c.state == Character::kGood && c.value != 0 && !none;
    if (!out.valid) break;
    ++out.characters;
    bytes.remove_prefix(c.length);
  }
  return out;
}

NaiveMultiByte naive_multi_byte(MultiByteKind kind, std::string_view bytes) {
  NaiveMultiByte out;
  for (std::string_view rest = bytes; !rest.empty();) {
    const int length = character_length(kind, rest);
    out.valid = length != 0;  // what the end cuts may become one
    if (length <= 0) break;
    out.wide += length > 1 ? 1 : 0;
    out.offset += static_cast<uint64_t>(length);
    rest.remove_prefix(static_cast<size_t>(length));
  }
  return out;
}

std::string naive_sample(std::string_view bytes) {
  std::string text(bytes.substr(0, Sample::kHead));
  std::string line;
  const auto end_line = [&] {
    for (const char c : line) {
      if (static_cast<unsigned char>(c) < 0x80) continue;
      text += line;
      break;
    }
    line.clear();
  };
  for (size_t i = Sample::kHead; i < bytes.size() && text.size() < Sample::kLimit; ++i) {
    line.push_back(bytes[i]);
    const bool full =
        line.size() >= Sample::kLongestLine && static_cast<unsigned char>(bytes[i]) < 0x30;
    if (bytes[i] == '\n' || full || line.size() >= 2 * Sample::kLongestLine) end_line();
  }
  end_line();
  return text;
}

}  // namespace orva
