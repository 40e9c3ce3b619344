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

// What is to be added, and how many times each.
struct Credits {
  const uint32_t* places;  // of rows, in units after the first row
  const uint32_t* times;
  size_t count;
};

// Adds rows of one shape to `sums`. REQUIRES: no lane counts more than kMostCounted values, and
// kRowsAhead more places can be read, whatever they are.
inline constexpr size_t kRowsAhead = 4;
using AddRows = void (*)(const RowShape& shape, const LaneValue* first_row, const Credits& rows,
                         LaneSums* sums);

// All that this machine can run, the plain one first and the fastest last.
std::vector<AddRows> row_adders();

}  // namespace orva

#endif  // ORVA_LIB_EVAL_ROW_ADDER_H_
