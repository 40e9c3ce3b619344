// Decode tables of the single-byte charsets: one Unicode value per byte, 0xFFFF where a byte stands
// for nothing. The tables are generated; all of these charsets stay within the basic plane.
#ifndef ORVA_LIB_DETECT_SINGLE_BYTE_TABLES_H_
#define ORVA_LIB_DETECT_SINGLE_BYTE_TABLES_H_

#include <cstdint>

namespace orva {

inline constexpr uint16_t kNoCharacter = 0xFFFF;

struct SingleByteTable {
  const char* name;        // as in the charset table
  const uint16_t* decode;  // 256 entries
};

extern const SingleByteTable kSingleByteTables[];
extern const int kSingleByteTableCount;

}  // namespace orva

#endif  // ORVA_LIB_DETECT_SINGLE_BYTE_TABLES_H_
