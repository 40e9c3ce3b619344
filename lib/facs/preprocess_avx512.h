// The one pass over a buffer, 64 bytes at once.
#ifndef ORVA_LIB_FACS_PREPROCESS_AVX512_H_
#define ORVA_LIB_FACS_PREPROCESS_AVX512_H_

#include "lib/facs/preprocess.h"

namespace orva {

// As preprocess_text does. REQUIRES: a machine with AVX-512 BW, VBMI and VBMI2, and popcnt.
int preprocess_avx512(const PreprocessSwitches& switches, unsigned char* buf, int len);

}  // namespace orva

#endif  // ORVA_LIB_FACS_PREPROCESS_AVX512_H_
