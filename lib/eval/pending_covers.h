// PendingCovers: which models pending trigrams cover, by the trigrams' last bytes.
//
//   orva::PendingCovers covers;
//   const orva::PendingCovers::End end = covers.end();
//   end.sets[0] = set; end.times[0] = times; end.bytes[0] = last_byte;
//   covers.added(1);                                // any number of times
//   for (const orva::ByteCover& b : covers.sort()) use(b.byte, b.count, b.sets);
//
// Life cycle: empty after sort, the result of which stays until the next one.
// Ownership:  its lists, outside the accounted memory; memory beyond what was ever added is not
// touched.
#ifndef ORVA_LIB_EVAL_PENDING_COVERS_H_
#define ORVA_LIB_EVAL_PENDING_COVERS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "lib/eval/coverage.h"

namespace orva {

// A byte that came `count` times, and the sets that were covered then.
struct ByteCover {
  unsigned char byte;
  uint32_t count;
  std::span<const CoverTimes> sets;
};

class PendingCovers {
 public:
  static constexpr size_t kMostAdded = 16;  // at once
  static constexpr size_t kMost = 1 << 16;  // until sort

  PendingCovers();

  // Where kMostAdded can be stored, to be added then.
  struct End {
    uint32_t* sets;  // their places among all sets
    uint32_t* times;
    uint8_t* bytes;  // last ones
  };
  End end() { return {sets_.get() + count_, times_.get() + count_, bytes_.get() + count_}; }
  void added(size_t count) { count_ += count; }
  // Trigrams that cover nothing.
  void add_uncovered(unsigned char byte, uint32_t times) { counts_[byte] += times; }

  // A leaf to be taken value by value, besides add_uncovered. These stay until clear_one_by_one.
  struct OneByOne {
    uint32_t leaf;
    uint32_t times;
    unsigned char byte;
  };
  void add_one_by_one(const OneByOne& leaf) { one_by_one_.push_back(leaf); }
  std::span<const OneByOne> one_by_one() const { return one_by_one_; }
  void clear_one_by_one() { one_by_one_.clear(); }

  // By byte, of those that came.
  std::span<const ByteCover> sort();

 private:
  static constexpr unsigned kSetsShift = 32;

  std::unique_ptr<uint32_t[]> sets_;
  std::unique_ptr<uint32_t[]> times_;
  std::unique_ptr<uint8_t[]> bytes_;
  size_t count_ = 0;
  // By byte, occurrences in the lower half and the number of sets above.
  std::array<uint64_t, 256> counts_ = {};
  std::vector<OneByOne> one_by_one_;
  std::unique_ptr<CoverTimes[]> sorted_;
  std::array<ByteCover, 256> by_byte_ = {};
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_PENDING_COVERS_H_
