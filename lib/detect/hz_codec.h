// HZ, which the C library lacks: GB2312 pairs with the high bits off between "~{" and "~}".
#ifndef ORVA_LIB_DETECT_HZ_CODEC_H_
#define ORVA_LIB_DETECT_HZ_CODEC_H_

#include <string_view>

#include "lib/detect/converter.h"

namespace orva {

// As decode_bytes and encode_text. "~~" is a tilde and "~" before a line end joins the lines; a
// line end closes an open run of pairs.
ConvertResult hz_decode(std::string_view bytes, Conversion* out);
ConvertResult hz_encode(std::string_view utf8, Conversion* out);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_HZ_CODEC_H_
