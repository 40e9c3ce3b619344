// Tally: how often answers were right, by charset and by language, what was taken for what, and
// whether the probabilities meant what they said.
//
//   orva::Tally tally;
//   tally.add(outcome);                       // for each document
//   tally.all().same_text, tally.calibration_error()
//
// Ownership:  plain values.
// Threads:    one at a time.
#ifndef ORVA_LIB_ACCURACY_TALLY_H_
#define ORVA_LIB_ACCURACY_TALLY_H_

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "lib/accuracy/judge.h"

namespace orva {

// One document: what is known of it, and what was answered.
struct Outcome {
  std::string charset;
  std::string language;  // plain; empty when it is not known
  std::string answered_charset;
  std::string answered_language;
  double probability = 0;
  Judgement judgement;
};

struct Counts {
  uint64_t documents = 0;
  uint64_t same_text = 0;
  uint64_t same_name = 0;
  uint64_t with_language = 0;
  uint64_t right_language = 0;
};

// Answers whose probabilities lie in one tenth of 0 to 1.
struct Bin {
  uint64_t answers = 0;
  uint64_t right = 0;
  double probabilities = 0;  // their sum
};

// A label, the answer it got instead (empty for none), and how often.
struct Confusion {
  std::string label;
  std::string answer;
  uint64_t documents = 0;
};

class Tally {
 public:
  static constexpr size_t kBins = 10;

  void add(const Outcome& outcome);

  const Counts& all() const { return all_; }
  uint64_t unanswered() const { return unanswered_; }
  // The most documents first.
  std::vector<std::pair<std::string, Counts>> by_charset() const;
  std::vector<std::pair<std::string, Counts>> by_language() const;
  std::vector<Confusion> charset_confusions() const;
  std::vector<Confusion> language_confusions() const;

  const std::array<Bin, kBins>& bins() const { return bins_; }
  // How far the probability is from the share that is right, in the mean over all answers, each bin
  // taken as a whole.
  double calibration_error() const;

 private:
  Counts all_;
  uint64_t unanswered_ = 0;
  std::map<std::string, Counts> charsets_;
  std::map<std::string, Counts> languages_;
  std::map<std::pair<std::string, std::string>, uint64_t> charset_confusions_;
  std::map<std::pair<std::string, std::string>, uint64_t> language_confusions_;
  std::array<Bin, kBins> bins_;
};

}  // namespace orva

#endif  // ORVA_LIB_ACCURACY_TALLY_H_
