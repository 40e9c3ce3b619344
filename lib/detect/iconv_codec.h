// The C library's converter, made to leave out and count what the target cannot hold.
#ifndef ORVA_LIB_DETECT_ICONV_CODEC_H_
#define ORVA_LIB_DETECT_ICONV_CODEC_H_

#include <string_view>

#include "lib/detect/converter.h"

namespace orva {

// As decode_bytes, for the charset that iconv calls `name`.
ConvertResult iconv_decode(const char* name, std::string_view bytes, Conversion* out);

// As encode_text. REQUIRES: `utf8` is valid UTF-8.
ConvertResult iconv_encode(const char* name, std::string_view utf8, Conversion* out);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_ICONV_CODEC_H_
