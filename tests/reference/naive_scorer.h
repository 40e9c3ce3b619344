// The walk and the scores by their definition: one byte at a time, maps for look-ups, every cell
// cleared and every byte value summed.
#ifndef ORVA_TESTS_REFERENCE_NAIVE_SCORER_H_
#define ORVA_TESTS_REFERENCE_NAIVE_SCORER_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/reference/plain_group.h"

namespace orva {

class NaiveScorer {
 public:
  explicit NaiveScorer(const PlainGroup* group);

  void start(uint8_t c1, uint8_t c2);
  void feed(const std::string& bytes);
  std::vector<float> scores();

  int total() const { return total_; }
  int value_total() const { return value_total_; }

 private:
  // A model's unigram cost of a byte, and the index whose coverage counts besides its own.
  struct Entry {
    int model;
    int q;
    int group;
  };

  int child(int state, uint8_t c) const;
  // Moves on by one byte; the leaf that was reached, or null.
  const PlainLeaf* transition(uint8_t c);
  std::vector<Entry> entries(uint8_t byte) const;
  void convert();

  const PlainGroup& group_;
  int nb_models_;
  int state_ = 0;
  uint8_t last_ = 0;
  std::array<uint32_t, 256> byte_counts_ = {};
  std::vector<std::array<uint32_t, 256>> seen_;
  std::vector<uint32_t> q_sum_;
  std::vector<uint32_t> q_count_;
  std::vector<float> cost_;
  std::vector<uint32_t> trigram_count_;
  int total_ = 0;
  int value_total_ = 0;
};

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_NAIVE_SCORER_H_
