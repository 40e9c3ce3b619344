#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

constexpr uint32_t kLargest = 0x10FFFF;

uint32_t byte_at(std::string_view bytes, size_t i) { return static_cast<unsigned char>(bytes[i]); }

bool is_surrogate(uint32_t value) { return value >= 0xD800 && value <= 0xDFFF; }

uint32_t unit16(std::string_view bytes, size_t at, bool big_endian) {
  const uint32_t first = byte_at(bytes, at);
  const uint32_t second = byte_at(bytes, at + 1);
  return big_endian ? first << 8 | second : second << 8 | first;
}

void append_byte(uint32_t value, std::string* out) {
  out->push_back(static_cast<char>(static_cast<unsigned char>(value & 0xFFU)));
}

void append_unit16(uint32_t unit, bool big_endian, std::string* out) {
  append_byte(big_endian ? unit >> 8 : unit, out);
  append_byte(big_endian ? unit : unit >> 8, out);
}

}  // namespace

Character read_utf8(std::string_view bytes) {
  const uint32_t lead = byte_at(bytes, 0);
  if (lead < 0x80) return {Character::kGood, lead, 1};
  if (lead < 0xC2 || lead > 0xF4) return {};
  const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The second byte's range keeps out overlong forms, surrogates and what lies beyond Unicode.
  uint32_t low = 0x80;
  uint32_t high = 0xBF;
  if (lead == 0xE0) low = 0xA0;
  if (lead == 0xED) high = 0x9F;
  if (lead == 0xF0) low = 0x90;
  if (lead == 0xF4) high = 0x8F;
  uint32_t value = lead & (0xFFU >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if (i == bytes.size()) return {Character::kCut, 0, 0};
    const uint32_t b = byte_at(bytes, i);
    if (b < low || b > high) return {};
    value = value << 6 | (b & 0x3FU);
    low = 0x80;
    high = 0xBF;
  }
  return {Character::kGood, value, length};
}

Character read_utf16(std::string_view bytes, bool big_endian) {
  if (bytes.size() < 2) return {Character::kCut, 0, 0};
  const uint32_t unit = unit16(bytes, 0, big_endian);
  if (!is_surrogate(unit)) return {Character::kGood, unit, 2};
  if (unit >= 0xDC00) return {};
  if (bytes.size() < 4) return {Character::kCut, 0, 0};
  const uint32_t low = unit16(bytes, 2, big_endian);
  if (low < 0xDC00 || low > 0xDFFF) return {};
  return {Character::kGood, 0x10000 + ((unit - 0xD800) << 10 | (low - 0xDC00)), 4};
}

Character read_utf32(std::string_view bytes, bool big_endian) {
  if (bytes.size() < 4) return {Character::kCut, 0, 0};
  const uint32_t first = unit16(bytes, 0, big_endian);
  const uint32_t second = unit16(bytes, 2, big_endian);
  const uint32_t value = big_endian ? first << 16 | second : second << 16 | first;
  if (value > kLargest || is_surrogate(value)) return {};
  return {Character::kGood, value, 4};
}

void append_utf8(uint32_t value, std::string* out) {
  if (value < 0x80) {
    append_byte(value, out);
  } else if (value < 0x800) {
    append_byte(0xC0 | value >> 6, out);
    append_byte(0x80 | (value & 0x3FU), out);
  } else if (value < 0x10000) {
    append_byte(0xE0 | value >> 12, out);
    append_byte(0x80 | (value >> 6 & 0x3FU), out);
    append_byte(0x80 | (value & 0x3FU), out);
  } else {
    append_byte(0xF0 | value >> 18, out);
    append_byte(0x80 | (value >> 12 & 0x3FU), out);
    append_byte(0x80 | (value >> 6 & 0x3FU), out);
    append_byte(0x80 | (value & 0x3FU), out);
  }
}

void append_utf16(uint32_t value, bool big_endian, std::string* out) {
  if (value < 0x10000) {
    append_unit16(value, big_endian, out);
    return;
  }
  append_unit16(0xD800 + ((value - 0x10000) >> 10), big_endian, out);
  append_unit16(0xDC00 + ((value - 0x10000) & 0x3FFU), big_endian, out);
}

void append_utf32(uint32_t value, bool big_endian, std::string* out) {
  append_unit16(big_endian ? value >> 16 : value & 0xFFFFU, big_endian, out);
  append_unit16(big_endian ? value & 0xFFFFU : value >> 16, big_endian, out);
}

}  // namespace orva
