// NumberedLeaves: the leaves of the trigrams that have come, by their numbers, and how often.
//
// Numbers are given out in blocks, each of leaves that are credited the same way.
//
//   orva::NumberedLeaves leaves;
//   const uint16_t number = leaves.add(leaf, set, last_byte);  // kNone when none is left
//   leaves.count(numbers, n);                                  // any number of times
//   leaves.take_run(&lists);                                   // what came since then
//   leaves.take_pending(&covers);                              // of all runs since then
//
// Life cycle: numbers stay until clear.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_NUMBERED_LEAVES_H_
#define ORVA_LIB_EVAL_NUMBERED_LEAVES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "lib/eval/credit_lists.h"
#include "lib/eval/leaf_table.h"
#include "lib/eval/pending_covers.h"

namespace orva {

class NumberedLeaves {
 public:
  static constexpr size_t kMostNumbers = 1 << 16;
  static constexpr uint16_t kNone = 0;
  static constexpr size_t kInBlock = CreditLists::kMostAdded;
  static constexpr size_t kNbBlocks = kMostNumbers / kInBlock;
  static constexpr size_t kNbGiven = 1 + 256 / kInBlock;  // blocks, to none and to those without
  // One block of each way may lack all but one.
  static constexpr size_t kMostAfterClear = (kNbBlocks - kNbGiven - LeafTable::kNbWays) * kInBlock;

  NumberedLeaves();
  void use_plain_vectors();

  // The number of a new trigram, which leads to a decided leaf that covers a set of models; kNone
  // when none is left.
  uint16_t add(Leaf leaf, uint32_t set, unsigned char last_byte);
  // That of all trigrams without a leaf that end with a byte.
  static uint16_t without_leaf(unsigned char last_byte) {
    return static_cast<uint16_t>(kInBlock + last_byte);
  }
  // Takes all numbers back, after which kMostAfterClear are left whatever the ways. REQUIRES:
  // nothing is counted or pending.
  void clear();

  // Counts trigrams of a run by their numbers. REQUIRES: at most 65535 in a run.
  void count(const uint16_t* numbers, size_t n);
  // Whether kNone was among those counted, which is as if it were not after that.
  bool take_none() { return std::exchange(times_[kNone], uint16_t{0}) != 0; }
  // Adds those counted to lists to be credited, and to the pending ones.
  void take_run(CreditLists* lists);

  // Moves those pending to `covers`.
  void take_pending(PendingCovers* covers);
  void forget_pending();

 private:
  static constexpr size_t kFoundAtOnce = 16;

  // The place of a leaf in the low bits, above it the last byte.
  static constexpr unsigned kPlaceBits = 24;
  static constexpr uint32_t kPlaceMask = (1U << kPlaceBits) - 1;
  struct alignas(64) Block {
    uint32_t named[kInBlock] = {};
    uint32_t pending[kInBlock] = {};  // occurrences
    uint32_t sets[kInBlock] = {};     // what leaves cover
  };
  // Blocks, each once.
  class BlockList {
   public:
    // Adds blocks[i] / divisor for each i.
    template <uint16_t divisor>
    void add(std::span<const uint16_t> blocks) {
      size_t count = count_;
      for (const uint16_t b : blocks) {
        const uint16_t block = b / divisor;
        // So that no branch depends on whether it is there.
        blocks_[count] = block;
        count += is_there_[block] ? 0 : 1;
        is_there_[block] = true;
      }
      count_ = count;
    }
    std::span<const uint16_t> blocks() const { return {blocks_.data(), count_}; }
    void clear() {
      for (const uint16_t block : blocks()) is_there_[block] = false;
      count_ = 0;
    }

   private:
    std::array<uint16_t, kNbBlocks + 1> blocks_;
    std::array<bool, kNbBlocks> is_there_ = {};
    size_t count_ = 0;
  };

  // Stores those of the first `nb_blocks` blocks in which a number has come. There is room for
  // kFoundAtOnce more than there are blocks.
  using FindBlocks = size_t (*)(const uint16_t* times, size_t nb_blocks, uint16_t* blocks);
  using TakeBlocks = void (*)(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                              CreditLists* lists);
  using MoveBlocks = void (*)(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                              PendingCovers* covers);

  void name(uint32_t number, uint32_t place, uint32_t set, unsigned char last_byte);
  void take_blocks(std::span<const uint16_t> blocks, CreditLists* lists);
  void take_slowly(size_t block, CreditLists* lists);
  void make_pending(size_t number);
  void move_slowly(size_t block, PendingCovers* covers);
  static size_t find_blocks_plain(const uint16_t* times, size_t nb_blocks, uint16_t* blocks);
  static size_t find_blocks_avx512(const uint16_t* times, size_t nb_blocks, uint16_t* blocks);
  static void take_blocks_plain(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                                CreditLists* lists);
  static void take_blocks_avx512(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                                 CreditLists* lists);
  static void move_blocks_plain(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                                PendingCovers* covers);
  static void move_blocks_avx512(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                                 PendingCovers* covers);

  std::vector<uint16_t> times_;  // in this run, by number
  std::vector<Block> blocks_;
  std::array<uint8_t, kNbBlocks> ways_ = {};            // by block
  std::array<uint32_t, LeafTable::kNbWays> next_ = {};  // number of each way; 0: in a new block
  size_t nb_blocks_ = 0;
  size_t nb_counted_ = 0;
  BlockList touched_;  // in this run, if it is short
  BlockList pending_;
  FindBlocks find_blocks_;
  TakeBlocks take_blocks_;
  MoveBlocks move_blocks_;
  size_t short_run_;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_NUMBERED_LEAVES_H_
