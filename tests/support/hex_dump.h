// Bytes as the format pages show them.
#ifndef ORVA_TESTS_SUPPORT_HEX_DUMP_H_
#define ORVA_TESTS_SUPPORT_HEX_DUMP_H_

#include <string>

namespace orva {

// Sixteen bytes a line with their offset and their text; lines that repeat the one above are
// replaced by one "*"; the last line is the length.
std::string hex_dump(const std::string& bytes);

}  // namespace orva

#endif  // ORVA_TESTS_SUPPORT_HEX_DUMP_H_
