// The costs of trigrams, of 16 bits, added up column by column, by vectors where the machine has
// them.
//
//   orva::best_cost_adders().all({index, rows, width}, bytes, count, sums);
//
// Ownership: none; plain functions.
// Threads:   any number.
#ifndef ORVA_LIB_DETECT_COST_ROWS_H_
#define ORVA_LIB_DETECT_COST_ROWS_H_

#include <cstddef>
#include <cstdint>

#include "lib/detect/known_trigrams.h"
#include "lib/detect/trigram_place.h"

namespace orva {

// A row fills whole vectors of 16 bytes.
inline constexpr size_t kRowStep = 8;

// What a trigram costs in one column.
struct CostEntry {
  uint16_t column;
  uint16_t cost;
};

// Rows of `width` costs: those of the 256 bytes, for trigrams that are not known, and behind them
// those of trigrams.
struct CostRows {
  const KnownTrigrams& index;
  const uint16_t* rows;
  size_t width;
  // By trigram; null where each has the row of its number. One that has none costs what its last
  // byte does, but for what its entries say.
  const TrigramPlace* places = nullptr;
  const CostEntry* entries = nullptr;
};

// Add what `count` trigrams cost that begin at bytes[0], bytes[1] and so on to `sums`, of which
// there are as many as a row is wide.
struct CostAdders {
  using Add = void (*)(const CostRows& rows, const unsigned char* bytes, size_t count,
                       uint32_t* sums);
  Add all;     // where there are no places
  Add listed;  // where there are
};

CostAdders plain_cost_adders();
// The fastest for this machine.
const CostAdders& best_cost_adders();

}  // namespace orva

#endif  // ORVA_LIB_DETECT_COST_ROWS_H_
