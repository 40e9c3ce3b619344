// How texts are prepared for the models, by definition: a byte or a character after the other.
#ifndef ORVA_TESTS_REFERENCE_NAIVE_TEXT_H_
#define ORVA_TESTS_REFERENCE_NAIVE_TEXT_H_

#include <string>
#include <string_view>

#include "lib/detect/scripts.h"

namespace orva {

std::string naive_normalised(std::string_view text);
std::string naive_without_markup(std::string_view text);
std::string naive_small_letters(std::string_view text, ScriptCounts* scripts);

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_NAIVE_TEXT_H_
