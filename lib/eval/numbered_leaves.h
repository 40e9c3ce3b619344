// NumberedLeaves: the leaves of the trigrams that have come, by their numbers, and how often.
//
// Numbers are given out in blocks, each of leaves that are credited the same way.
//
//   orva::NumberedLeaves leaves;
//   const uint16_t number = leaves.add(leaf, last_byte);  // kNone when none is left
//   leaves.count(numbers, n);                             // any number of times
//   leaves.take_run(&lists);                              // what came since then
//   for (const uint16_t number : leaves.pending()) use(leaves.leaf(number), leaves.times(number));
//   leaves.forget_pending();
//
// Life cycle: numbers stay until clear.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_NUMBERED_LEAVES_H_
#define ORVA_LIB_EVAL_NUMBERED_LEAVES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "lib/eval/credit_lists.h"
#include "lib/eval/leaf_table.h"

namespace orva {

class NumberedLeaves {
 public:
  static constexpr size_t kMostNumbers = 1 << 16;
  static constexpr uint16_t kNone = 0;

  NumberedLeaves();
  void use_plain_vectors();

  // The number of a new trigram, which leads to a decided leaf; kNone when none is left.
  uint16_t add(Leaf leaf, unsigned char last_byte);
  // That of all trigrams without a leaf that end with a byte.
  static uint16_t without_leaf(unsigned char last_byte) {
    return static_cast<uint16_t>(kInBlock + last_byte);
  }
  // REQUIRES: nothing is counted or pending.
  void clear();

  // Counts trigrams of a run by their numbers. REQUIRES: at most 65535 in a run.
  void count(const uint16_t* numbers, size_t n);
  // Adds those counted to lists to be credited, and to the pending ones.
  void take_run(CreditLists* lists);

  // The numbers of trigrams that are pending, and how often each is.
  std::span<const uint32_t> pending() const { return {pending_.data(), nb_pending_}; }
  uint32_t nb_pending_of(uint32_t number) const {
    return blocks_[number / kInBlock].pending[number % kInBlock];
  }
  Leaf leaf(uint32_t number) const {
    return Leaf(ways_[number / kInBlock], named(number) & kPlaceMask);
  }
  unsigned char last_byte(uint32_t number) const {
    return static_cast<unsigned char>(named(number) >> kPlaceBits);
  }
  void forget_pending();

 private:
  static constexpr size_t kInBlock = CreditLists::kMostAdded;
  static constexpr size_t kNbBlocks = kMostNumbers / kInBlock;

  // The place of a leaf in the low bits, above it the last byte.
  static constexpr unsigned kPlaceBits = 24;
  static constexpr uint32_t kPlaceMask = (1U << kPlaceBits) - 1;
  struct alignas(128) Block {
    uint32_t named[kInBlock] = {};
    uint32_t pending[kInBlock] = {};  // occurrences
  };
  // Stores those of the first `nb_blocks` blocks in which a number has come.
  using FindBlocks = size_t (*)(const uint16_t* times, size_t nb_blocks, uint16_t* blocks);
  using TakeBlocks = void (*)(NumberedLeaves* leaves, const uint16_t* blocks, size_t n,
                              CreditLists* lists);

  uint32_t named(uint32_t number) const {
    return blocks_[number / kInBlock].named[number % kInBlock];
  }
  void name(uint32_t number, uint32_t place, unsigned char last_byte);
  size_t find_touched(uint16_t* blocks);
  void take_slowly(size_t block, CreditLists* lists);
  void add_pending(size_t block, size_t lane);
  static size_t find_blocks_plain(const uint16_t* times, size_t nb_blocks, uint16_t* blocks);
  static size_t find_blocks_avx512(const uint16_t* times, size_t nb_blocks, uint16_t* blocks);
  static void take_blocks_plain(NumberedLeaves* leaves, const uint16_t* blocks, size_t n,
                                CreditLists* lists);
  static void take_blocks_avx512(NumberedLeaves* leaves, const uint16_t* blocks, size_t n,
                                 CreditLists* lists);

  std::vector<uint16_t> times_;  // in this run, by number
  std::vector<Block> blocks_;
  std::array<uint8_t, kNbBlocks> ways_ = {};            // by block
  std::array<uint32_t, LeafTable::kNbWays> next_ = {};  // number of each way; 0: in a new block
  size_t nb_blocks_ = 0;
  size_t nb_counted_ = 0;
  std::array<uint64_t, kNbBlocks / 64> touched_ = {};  // blocks of this run, if it is short
  std::vector<uint32_t> pending_;
  size_t nb_pending_ = 0;
  FindBlocks find_blocks_ = find_blocks_plain;
  TakeBlocks take_blocks_ = take_blocks_plain;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_NUMBERED_LEAVES_H_
