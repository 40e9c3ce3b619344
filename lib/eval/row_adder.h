// Adds up rows of lanes, each so many times.
#ifndef ORVA_LIB_EVAL_ROW_ADDER_H_
#define ORVA_LIB_EVAL_ROW_ADDER_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/eval/lanes.h"

namespace orva {

// The blocks of lanes that a row holds, in ascending order.
struct RowShape {
  uint8_t mask;  // bit b: block b
  uint8_t nb_blocks;
  uint8_t blocks[kNbBlocks];
  uint8_t place[kNbBlocks];  // of a block among those held

  explicit RowShape(unsigned block_mask);
};

// A row is one unit that tells which lanes of each block that it holds have a value, bit i lane i,
// and for each of these blocks a unit of costs, 0 where there is no value.
union alignas(32) RowUnit {
  uint32_t there[kNbBlocks];
  uint8_t costs[kBlockLanes];
};
static_assert(sizeof(RowUnit) == 32);

// What is to be added, and how many times each.
struct Credits {
  const uint32_t* places;  // of rows, in units after the first row
  const uint32_t* times;
  size_t count;
};

// Adds rows of one shape to `sums`. REQUIRES: no row comes more than kMostTimesOfRow times, and
// kRowsAhead more places can be read, whatever they are.
inline constexpr uint32_t kMostTimesOfRow = 255;
inline constexpr size_t kRowsAhead = 4;
using AddRows = void (*)(const RowShape& shape, const RowUnit* first_row, const Credits& rows,
                         LaneSums* sums);

// All that this machine can run, the plain one first and the fastest last.
std::vector<AddRows> row_adders();

}  // namespace orva

#endif  // ORVA_LIB_EVAL_ROW_ADDER_H_
