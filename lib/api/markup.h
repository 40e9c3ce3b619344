// Markup stripping, as the component does it before identification.
#ifndef ORVA_LIB_API_MARKUP_H_
#define ORVA_LIB_API_MARKUP_H_

#include <cstddef>

namespace orva {

// Copies `in` without its tags to `out`, which needs room for `length` bytes, and returns the number
// of bytes kept. A tag is everything from "<" to the next ">"; a ">" outside a tag is kept. Of a run
// of white space (space, TAB, LF, CR) only the first byte is kept, as it is.
//
// `*in_markup` is nonzero inside a tag; it is kept from one call to the next, so that a tag may span
// calls. The white-space rule starts afresh at every call.
size_t strip_markup(const char* in, size_t length, char* out, int* in_markup);

}  // namespace orva

#endif  // ORVA_LIB_API_MARKUP_H_
