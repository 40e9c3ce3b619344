// How often trigrams cover each model, counted from a bit for each model that a trigram covers.
#ifndef ORVA_LIB_EVAL_COVERAGE_H_
#define ORVA_LIB_EVAL_COVERAGE_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/eval/lanes.h"

namespace orva {

inline constexpr size_t kMostModels = 256;

struct alignas(32) ModelSet {
  uint64_t words[kMostModels / 64] = {};  // bit m of them all: model m
};

struct CoverTimes {
  uint32_t set;  // its place among all sets
  uint32_t times;
};

// Stores in covered[m], for each model m of kMostModels, the times of the sets that have it
// together, which for none of them are more than `most`. REQUIRES: most <= kMostCovered; `covered`
// is aligned to 64 bytes; kSetsAhead more sets can be read, whatever they are.
inline constexpr size_t kSetsAhead = 8;
using AddCovered = void (*)(const ModelSet* all, const CoverTimes* sets, size_t count,
                            uint32_t most, uint16_t* covered);
inline constexpr uint32_t kMostCovered = 65535;

// All that this machine can run, the plain one first and the fastest last.
std::vector<AddCovered> cover_adders();

}  // namespace orva

#endif  // ORVA_LIB_EVAL_COVERAGE_H_
