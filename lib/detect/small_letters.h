// UTF-8 as the models know it: without capitals.
//
//   orva::ScriptCounts scripts;
//   const std::string small = orva::with_small_letters(text, &scripts);
//
// Ownership: none; a plain function.
// Threads:   any number.
#ifndef ORVA_LIB_DETECT_SMALL_LETTERS_H_
#define ORVA_LIB_DETECT_SMALL_LETTERS_H_

#include <string>
#include <string_view>

#include "lib/detect/scripts.h"
#include "lib/detect/text_buffer.h"

namespace orva {

// `text` with small letters for capitals, which take as many bytes. Its letters are counted by
// script; what is no UTF-8 stays as it is.
std::string with_small_letters(std::string_view text, ScriptCounts* scripts);
// The same in a buffer, which `text` is not part of.
std::string_view with_small_letters(std::string_view text, ScriptCounts* scripts, TextBuffer* to);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_SMALL_LETTERS_H_
