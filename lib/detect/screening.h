// Screening: which single-byte readings of a text are worth asking the models about.
//
//   orva::Screening screening;
//   screening.start(text.segments, homes.letters());
//   double nats = screening.cost(charset);
//
// Letters that are wrong are also seldom ones, as a rule: how often the letters occur that the
// bytes would be tells most wrong readings, in a fraction of the time that models take.
//
// Life cycle: start for each text.
// Ownership:  the costs are not owned.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_SCREENING_H_
#define ORVA_LIB_DETECT_SCREENING_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "lib/detect/letter_costs.h"

namespace orva {

class Screening {
 public:
  // Bytes above 0x7F that are looked at; more would tell the same.
  static constexpr size_t kMostSeen = 512;

  // How often a byte counts; in the order of what it costs.
  struct Counts {
    uint16_t alone = 0;
    uint16_t within = 0;  // behind a small letter of ASCII
    uint16_t beside = 0;  // letters of ASCII next to it
    uint16_t between = 0;
  };
  static_assert(sizeof(Counts) == sizeof(LetterCost));

  // What adds up the costs of all columns for the bytes that are there.
  using Adder = void (*)(const LetterCosts& costs, const Counts* counts,
                         const std::vector<uint8_t>& present, int32_t* sums);
  static Adder plain_adder();
  // The fastest for this machine.
  static Adder best_adder();

  explicit Screening(Adder adder = best_adder()) : adder_(adder) {}

  void start(const std::vector<std::string_view>& texts, const LetterCosts& costs);
  size_t seen() const { return seen_; }
  // Nats, in which a byte that comes again and again counts a few times. REQUIRES: a single-byte
  // charset that keeps ASCII.
  double cost(int charset) const { return sums_[costs_->column(charset)] * LetterCost::kUnit; }
  // How much more than the least a reading may cost that is worth asking about.
  double margin() const;

 private:
  void count_all(const std::vector<std::string_view>& texts);
  void count(std::string_view text, size_t at);

  Adder adder_;
  const LetterCosts* costs_ = nullptr;
  Counts counts_[LetterCosts::kBytes];
  std::vector<uint8_t> present_;  // those counted, less 0x80
  std::vector<int32_t> sums_;     // by column of the costs, in their units
  size_t seen_ = 0;
  size_t counted_ = 0;  // of them, in cost()
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_SCREENING_H_
