// One character at a time in the Unicode encoding forms.
#ifndef ORVA_LIB_DETECT_UTF_CODEC_H_
#define ORVA_LIB_DETECT_UTF_CODEC_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orva {

// What reading one character gives.
struct Character {
  enum State { kGood, kBad, kCut };  // kCut: the input ends before the character does
  State state = kBad;
  uint32_t value = 0;
  size_t length = 0;  // bytes read, with kGood
};

// The character at the start of `bytes`, which is not empty. Surrogates, overlong forms and values
// above 0x10FFFF are bad.
Character read_utf8(std::string_view bytes);
Character read_utf16(std::string_view bytes, bool big_endian);
Character read_utf32(std::string_view bytes, bool big_endian);

// Appends a character. REQUIRES: a scalar value.
void append_utf8(uint32_t value, std::string* out);
void append_utf16(uint32_t value, bool big_endian, std::string* out);
void append_utf32(uint32_t value, bool big_endian, std::string* out);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_UTF_CODEC_H_
