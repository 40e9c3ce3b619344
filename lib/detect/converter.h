// Conversion between any charset of the table and UTF-8.
//
//   orva::Conversion text;
//   if (orva::decode_bytes(*orva::find_charset("KOI8-R"), bytes, &text) == orva::kConverted)
//     use(text.bytes);
//
// Single-byte charsets and the Unicode forms are converted by our own tables, HZ by our own reader
// over the C library's GB2312; the other multi-byte ones by the C library.
//
// Life cycle: plain functions; nothing is kept from one call to the next.
// Ownership:  results own their bytes.
// Results:    kConverted, or why not; with kBadInput `offset` tells where and `bytes` holds what
// came
//             before.
// Threads:    any number.
#ifndef ORVA_LIB_DETECT_CONVERTER_H_
#define ORVA_LIB_DETECT_CONVERTER_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "lib/detect/charset_table.h"

namespace orva {

enum ConvertResult {
  kConverted = 0,
  kNoConverter = -1,  // the C library lacks the converter
  kBadInput = -2,     // a byte that the source charset does not allow
};

struct Conversion {
  std::string bytes;
  size_t offset = 0;   // of the first byte of the input that was not converted
  size_t dropped = 0;  // characters that the target cannot hold, left out (encoding only)
  bool cut = false;    // the input ends within a character, which is left out
};

// Bytes of `charset` to UTF-8, strictly. A character cut at the end of the input is no error.
ConvertResult decode_bytes(const Charset& charset, std::string_view bytes, Conversion* out);

// UTF-8 to bytes of `charset`; characters that it cannot hold are left out and counted. Input that
// is not UTF-8, a cut character at its end included, is kBadInput.
ConvertResult encode_text(const Charset& charset, std::string_view utf8, Conversion* out);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_CONVERTER_H_
