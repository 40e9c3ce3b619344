// Which byte pairs are characters in the double-byte charsets: a bit for each pair whose lead byte
// is 0x80 to 0xFF. Private-use characters are left out, since no text in the wild is made of them.
#ifndef ORVA_LIB_DETECT_DOUBLE_BYTE_TABLES_H_
#define ORVA_LIB_DETECT_DOUBLE_BYTE_TABLES_H_

#include <cstdint>

namespace orva {

inline constexpr int kPairTableWords = 128 * 8;

extern const uint32_t kShiftJisPairs[kPairTableWords];
extern const uint32_t kEucJpPairs[kPairTableWords];
extern const uint32_t kEucJpPlane2Pairs[kPairTableWords];  // behind the byte 0x8F
extern const uint32_t kGbkPairs[kPairTableWords];
extern const uint32_t kBig5Pairs[kPairTableWords];
extern const uint32_t kEucTwPairs[kPairTableWords];  // plane 1
extern const uint32_t kCp949Pairs[kPairTableWords];
extern const uint32_t kJohabPairs[kPairTableWords];

// REQUIRES: lead >= 0x80.
inline bool is_pair(const uint32_t* pairs, unsigned char lead, unsigned char trail) {
  return (pairs[(lead - 0x80) * 8 + trail / 32] >> (trail % 32) & 1U) != 0;
}

}  // namespace orva

#endif  // ORVA_LIB_DETECT_DOUBLE_BYTE_TABLES_H_
