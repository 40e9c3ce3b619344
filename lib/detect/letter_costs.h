// LetterCosts: what bytes above 0x7F cost as letters of a single-byte charset, by how often these
// letters occur in the languages that have them, and nothing else: cheap to add up for all charsets
// before any model is asked.
//
//   const orva::LetterCosts costs(tables, homes);
//   double nats = costs.of(charset, 0xE9).alone * orva::LetterCost::kUnit;
//
// Life cycle: made whole by the constructor, constant from then on.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_LETTER_COSTS_H_
#define ORVA_LIB_DETECT_LETTER_COSTS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orva {

struct Home;
class ModelTables;

// Of a byte. Whole numbers, so that sums do not depend on their order.
struct LetterCost {
  static constexpr double kUnit = 1.0 / 16;  // nats

  uint16_t alone = 0;
  uint16_t within = 0;   // more behind a small letter of ASCII
  uint16_t beside = 0;   // more for each letter of ASCII next to it
  uint16_t between = 0;  // more between two letters of ASCII
};
static_assert(sizeof(LetterCost) == 8);

class LetterCosts {
 public:
  static constexpr size_t kBytes = 128;

  LetterCosts() = default;
  LetterCosts(const ModelTables& tables, const std::vector<Home>& homes);

  // Of a byte from 0x80 on in a charset. REQUIRES: a single-byte one that keeps ASCII.
  const LetterCost& of(int charset, unsigned char byte) const {
    return row(byte)[column_of_[static_cast<size_t>(charset)]];
  }

  // All that charsets make of a byte: width() costs. REQUIRES: byte >= 0x80.
  const LetterCost* row(unsigned char byte) const {
    return costs_.data() + static_cast<size_t>(byte - 0x80) * width_;
  }
  // A multiple of kStep.
  size_t width() const { return width_; }
  static constexpr size_t kStep = 24;
  // Where a charset stands in rows.
  size_t column(int charset) const { return column_of_[static_cast<size_t>(charset)]; }

 private:
  size_t width_ = 0;
  std::vector<size_t> column_of_;  // by charset
  std::vector<LetterCost> costs_;  // by byte and column
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_LETTER_COSTS_H_
