// RunCounter: how often each trigram leaf is reached in a run of bytes.
//
// The values of a leaf are then added once, times its count, instead of once for every time it is
// reached; the sums are the same integers.
//
// Life cycle: count fills the list, clear empties it; both leave the counters of the leaves at 0.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_RUN_COUNTER_H_
#define ORVA_LIB_EVAL_RUN_COUNTER_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/eval/trigram_index.h"

namespace orva {

struct LeafCount {
  uint32_t id;     // of the leaf, as in TrigramIndex
  uint32_t count;  // how often it was reached, at least 1
};

class RunCounter {
 public:
  static constexpr int kMaxRun = 10000;

  explicit RunCounter(const TrigramIndex* index);

  // Counts the leaves of the trigrams that end in buf[0], ..., buf[n - 1], where the byte pair
  // `pair` comes before buf[0], and adds the bytes to `byte_counts`. REQUIRES: n <= kMaxRun.
  void count(unsigned pair, const unsigned char* buf, int n, uint32_t* byte_counts);

  const std::vector<LeafCount>& leaves() const { return leaves_; }

 private:
  template <typename Count>
  void count_with(unsigned pair, const unsigned char* buf, int n, uint32_t* byte_counts,
                  Count count);
  __attribute__((target("popcnt"))) void count_popcnt(unsigned pair, const unsigned char* buf,
                                                      int n, uint32_t* byte_counts);

  const TrigramIndex* index_;
  bool has_popcnt_;
  std::vector<uint16_t> counts_;   // by leaf; 0 between calls
  std::vector<uint32_t> touched_;  // leaves reached, in order of first reach
  std::vector<LeafCount> leaves_;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_RUN_COUNTER_H_
