// The charsets that the whole program knows: one table with their names for every kind of reader,
// what kind of encoding each is, and the decode table of the single-byte ones.
//
//   const orva::Charset* c = orva::find_charset("latin1");
//   if (c != nullptr) printf("%s %s\n", c->iana, c->python);   // ISO-8859-1 iso8859-1
//
// Life cycle: constant data, there from the program's start to its end.
// Ownership:  none.
// Threads:    any number.
#ifndef ORVA_LIB_DETECT_CHARSET_TABLE_H_
#define ORVA_LIB_DETECT_CHARSET_TABLE_H_

#include <cstdint>
#include <string_view>

namespace orva {

enum CharsetFlags : uint32_t {
  kAsciiCompatible = 1U << 0,  // bytes below 0x80 stand for ASCII wherever they occur alone
  kMultiByte = 1U << 1,
  kSevenBit = 1U << 2,  // escape sequences or shifts, no byte above 0x7F
  kUtf16 = 1U << 3,
  kUtf32 = 1U << 4,
  kEbcdic = 1U << 5,
  kWeb = 1U << 6,  // browsers decode it, and pages use it
  kDos = 1U << 7,
  kMac = 1U << 8,
  kIso = 1U << 9,  // bytes 0x80 to 0x9F are controls
  kWindows = 1U << 10,
  kMarkupSafe = 1U << 11,  // "<" and ">" are never part of another character
  kUnicode = 1U << 12,
  kPart = 1U << 13,  // part of another one, and answered only where a caller lists it
};

// What a program that reads the answer calls the charset.
enum class NameScheme { kIana, kIconv, kPython, kWeb };

struct Charset {
  // The registered name where there is one and programs know it, else the commonest: IBM858 is
  // registered as IBM00858, which neither the C library nor Python reads.
  const char* iana;
  const char* iconv;    // "" where the C library has no such converter
  const char* python;   // "" where Python has no such codec
  const char* web;      // "" where browsers do not decode it
  const char* aliases;  // further names, apart by single blanks
  uint32_t flags;
};

extern const Charset kCharsets[];
extern const int kCharsetCount;

// Looks a charset up by any of its names, whatever their case and punctuation; null when unknown.
const Charset* find_charset(std::string_view name);

// What names both byte orders of UTF-16 or UTF-32, with its names; null for any other name.
const Charset* find_family(std::string_view name);

// The position of a charset in kCharsets.
int charset_index(const Charset* charset);

// The same as find_charset, as a position; -1 when unknown.
int find_charset_index(std::string_view name);

// The charset's name in `scheme`; null where that reader has no name for it.
const char* charset_name(const Charset& charset, NameScheme scheme);

// The 256 Unicode values of a single-byte charset; null for any other.
const uint16_t* single_byte_table(int charset);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_CHARSET_TABLE_H_
