#include "lib/api/markup.h"

namespace orva {

size_t strip_markup(const char* in, size_t length, char* out, int* in_markup) {
  size_t kept = 0;
  bool after_blank = false;
  for (size_t i = 0; i < length; ++i) {
    const char c = in[i];
    if (*in_markup != 0) {
      if (c == '>') *in_markup = 0;
    } else if (c == '<') {
      *in_markup = 1;
    } else {
      const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
      if (!blank || !after_blank) out[kept++] = c;
      after_blank = blank;
    }
  }
  return kept;
}

}  // namespace orva
