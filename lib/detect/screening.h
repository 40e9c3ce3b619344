// Screening: which single-byte readings of a text are worth asking the models about.
//
//   orva::Screening screening;
//   screening.start(text.segments);
//   double nats = screening.cost(costs.of(charset));
//
// Letters that are wrong are also seldom ones, as a rule: how often the letters occur that the
// bytes would be tells most wrong readings, in a fraction of the time that models take.
//
// Life cycle: start for each text.
// Ownership:  none.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_SCREENING_H_
#define ORVA_LIB_DETECT_SCREENING_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lib/detect/letter_costs.h"

namespace orva {

class Screening {
 public:
  // Bytes above 0x7F that are looked at; more would tell the same.
  static constexpr size_t kMostSeen = 512;

  void start(const std::vector<std::string>& texts);
  size_t seen() const { return seen_; }
  // Nats, in which a byte that comes again and again counts a few times.
  double cost(const LetterCost* costs) const;
  // How much more than the least a reading may cost that is worth asking about.
  double margin() const;

 private:
  struct Counts {
    uint32_t all = 0;
    uint32_t within = 0;  // behind a small letter of ASCII
    uint32_t beside = 0;  // letters of ASCII next to it
    uint32_t between = 0;
  };

  void count(const std::string& text, size_t at);

  Counts counts_[LetterCosts::kBytes];
  std::vector<uint8_t> present_;     // those counted, less 0x80
  std::vector<uint8_t> near_ascii_;  // those of them next to a letter of ASCII
  size_t seen_ = 0;
  size_t counted_ = 0;  // of them, in cost()
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_SCREENING_H_
