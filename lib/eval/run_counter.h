// RunCounter: which trigrams come in a run of bytes, and how often.
//
// A table that fits into the processor's first cache has a slot for every few trigrams, in which
// the latest of them is counted; one that needs the slot of another drives it out into the list of
// those counted. A trigram may thus be listed several times. No branch depends on the text.
//
//   orva::RunCounter counter;
//   for (const orva::CountedTrigram t : counter.count(pair, buf, n)) use(t.pair(), t.times());
//
// Ownership:  its table and the list, which stays as it is until the next count.
#ifndef ORVA_LIB_EVAL_RUN_COUNTER_H_
#define ORVA_LIB_EVAL_RUN_COUNTER_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orva {

// Three bytes in a row, the first one in bits 8 to 15, and how often they came in the low 8 bits.
struct CountedTrigram {
  uint32_t bits;

  // The first byte in the low 8 bits.
  unsigned pair() const { return bits >> 8 & 0xFFFF; }
  unsigned char last_byte() const { return static_cast<unsigned char>(bits >> 24); }
  uint32_t times() const { return bits & 0xFF; }
};

class RunCounter {
 public:
  static constexpr size_t kMostCounted = 10000;  // bytes in one run
  // One that comes more often is listed again.
  static constexpr uint32_t kMostTimes = 63;

  RunCounter();

  // The trigrams that end in buf[0], ..., buf[n - 1], where the byte pair `pair` comes before buf.
  // REQUIRES: n <= kMostCounted.
  std::span<const CountedTrigram> count(unsigned pair, const unsigned char* buf, size_t n);

 private:
  template <unsigned kSlotBits>
  std::span<const CountedTrigram> count_in(const std::vector<uint32_t>& empty, unsigned pair,
                                           const unsigned char* buf, size_t n);

  std::vector<uint32_t> empty_;       // what slots hold at first
  std::vector<uint32_t> empty_some_;  // as many as some bytes need
  std::vector<uint32_t> empty_few_;   // as many as few bytes need
  std::vector<uint32_t> slots_;
  std::vector<CountedTrigram> counted_;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_RUN_COUNTER_H_
