// Focus: a text cut into what all readings of it have in common and what they differ in.
//
// Charsets that keep ASCII read the same trigrams wherever three ASCII bytes stand together. Only
// the segments around bytes above 0x7F tell them apart, so only those are read again for each
// reading.
#ifndef ORVA_LIB_DETECT_FOCUS_H_
#define ORVA_LIB_DETECT_FOCUS_H_

#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/text_buffer.h"
#include "lib/detect/wide_blocks.h"

namespace orva {

// The text as the models were trained on it: capitals folded, digits left out, runs cut to three.
// Blanks stay, a run of them as one.
std::string normalised(std::string_view text);
// The same in a buffer, which `text` is not part of.
std::string_view normalised(std::string_view text, TextBuffer* to, bool wide = has_wide_blocks());

// The beginning of `sample` with at most `most_high` bytes above 0x7F.
std::string_view with_few_high(std::string_view sample, size_t most_high);

// Where the two bytes that models see before text[at] begin: digits are not seen.
size_t context_before(std::string_view text, size_t at);

// The stretches of a text whose trigrams hold a byte above 0x7F, each with two bytes of context in
// front and behind, as far as the text goes. The first byte of a text has line ends in front of it.
// REQUIRES: `framed` is kFront and the text.
inline constexpr std::string_view kFront = "\n\n";
void find_high_segments(std::string_view framed, std::vector<std::string_view>* segments);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_FOCUS_H_
