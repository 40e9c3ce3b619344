// What `orva eval` found out, as text and as a picture.
#ifndef ORVA_TOOLS_EVAL_OUTPUT_H_
#define ORVA_TOOLS_EVAL_OUTPUT_H_

#include <string>

#include "lib/accuracy/tally.h"

namespace orva {

// Tables: all documents, by charset, by language, confusions, calibration.
std::string tally_text(const Tally& tally);

// A self-contained SVG picture: accuracy by charset, and how often answers of each probability were
// right.
std::string tally_picture(const Tally& tally);

}  // namespace orva

#endif  // ORVA_TOOLS_EVAL_OUTPUT_H_
