// Results as JSON lines.
#ifndef ORVA_TOOLS_JSON_OUTPUT_H_
#define ORVA_TOOLS_JSON_OUTPUT_H_

#include <string>

#include "lib/accuracy/tally.h"
#include "tools/detection.h"

namespace orva {

// One object without a newline. What is not known is null. Bytes of `path` that are not UTF-8 are
// replaced there and given whole, in hexadecimal, as path_bytes.
std::string detection_json(const std::string& path, const Detection& detection);

// All figures of a tally as one object without a newline. Shares are between 0 and 1.
std::string tally_json(const Tally& tally);

}  // namespace orva

#endif  // ORVA_TOOLS_JSON_OUTPUT_H_
