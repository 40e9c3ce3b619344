#include "lib/eval/numbered_leaves.h"

#include <immintrin.h>

#include <algorithm>
#include <bit>

#include "lib/mgroup/group_format.h"

namespace orva {
namespace {

// After longer runs all blocks are looked at.
constexpr size_t kShortRun = 1500;

// Bit i tells whether times[i], of a block, is more than `most`.
inline uint32_t more_than(const uint16_t* times, uint16_t most) {
  const auto* lanes = reinterpret_cast<const __m128i*>(times);
  const __m128i all = _mm_set1_epi16(static_cast<int16_t>(most));
  // Saturated, what is not more is 0.
  const __m128i low = _mm_cmpeq_epi16(_mm_subs_epu16(_mm_loadu_si128(lanes), all), __m128i());
  const __m128i high = _mm_cmpeq_epi16(_mm_subs_epu16(_mm_loadu_si128(lanes + 1), all), __m128i());
  return static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high))) ^ 0xFFFF;
}

}  // namespace

NumberedLeaves::NumberedLeaves()
    : times_(kMostNumbers), blocks_(kNbBlocks), pending_(kMostNumbers + kInBlock) {
  if (__builtin_cpu_supports("avx512bw") != 0) {
    find_blocks_ = find_blocks_avx512;
    take_blocks_ = take_blocks_avx512;
  }
  clear();
}

void NumberedLeaves::use_plain_vectors() {
  find_blocks_ = find_blocks_plain;
  take_blocks_ = take_blocks_plain;
}

void NumberedLeaves::name(uint32_t number, uint32_t place, unsigned char last_byte) {
  const uint32_t above = uint32_t{last_byte} << kPlaceBits;
  blocks_[number / kInBlock].named[number % kInBlock] = place | above;
}

void NumberedLeaves::clear() {
  next_.fill(0);
  ways_.fill(LeafTable::kNone);
  // The numbers of the first block are not given out, of which one is none's.
  for (uint32_t b = 0; b < kNbBytes; ++b) {
    const auto byte = static_cast<unsigned char>(b);
    name(without_leaf(byte), 0, byte);
  }
  nb_blocks_ = 1 + kNbBytes / kInBlock;
}

uint16_t NumberedLeaves::add(Leaf leaf, unsigned char last_byte) {
  uint32_t& next = next_[leaf.way()];
  if (next % kInBlock == 0) {
    if (nb_blocks_ == kNbBlocks) return kNone;
    ways_[nb_blocks_] = leaf.way();
    next = static_cast<uint32_t>(nb_blocks_++ * kInBlock);
  }
  name(next, leaf.place(), last_byte);
  return static_cast<uint16_t>(next++);
}

void NumberedLeaves::count(const uint16_t* numbers, size_t n) {
  uint16_t* const times = times_.data();
#pragma GCC unroll 4
  for (size_t i = 0; i < n; ++i) ++times[numbers[i]];
  nb_counted_ += n;
  if (nb_counted_ > kShortRun) return;
  for (size_t i = 0; i < n; ++i) {
    const size_t block = numbers[i] / kInBlock;
    touched_[block / 64] |= uint64_t{1} << block % 64;
  }
}

void NumberedLeaves::take_run(CreditLists* lists) {
  uint16_t blocks[kNbBlocks];
  const size_t n = find_touched(blocks);
  take_blocks_(this, blocks, n, lists);
}

// Stores the blocks in which trigrams were counted.
size_t NumberedLeaves::find_touched(uint16_t* blocks) {
  size_t n = 0;
  if (nb_counted_ > kShortRun) {
    n = find_blocks_(times_.data(), nb_blocks_, blocks);
  } else {
    for (size_t w = 0; w < touched_.size(); ++w) {
      for (uint64_t bits = touched_[w]; bits != 0; bits &= bits - 1) {
        blocks[n++] = static_cast<uint16_t>(w * 64 + static_cast<size_t>(std::countr_zero(bits)));
      }
    }
  }
  touched_.fill(0);
  nb_counted_ = 0;
  return n;
}

size_t NumberedLeaves::find_blocks_plain(const uint16_t* times, size_t nb_blocks,
                                         uint16_t* blocks) {
  size_t n = 0;
  for (size_t b = 0; b < nb_blocks; ++b) {
    blocks[n] = static_cast<uint16_t>(b);
    n += more_than(times + b * kInBlock, 0) != 0 ? 1 : 0;
  }
  return n;
}

// Two blocks at once.
__attribute__((target("avx512bw"))) size_t NumberedLeaves::find_blocks_avx512(const uint16_t* times,
                                                                              size_t nb_blocks,
                                                                              uint16_t* blocks) {
  size_t n = 0;
  for (size_t b = 0; b < nb_blocks; b += 2) {
    const __m512i lanes = _mm512_loadu_si512(times + b * kInBlock);
    const uint32_t there = _mm512_test_epi16_mask(lanes, lanes);
    blocks[n] = static_cast<uint16_t>(b);
    n += (there & 0xFFFF) != 0 ? 1 : 0;
    blocks[n] = static_cast<uint16_t>(b + 1);
    n += there >> kInBlock != 0 ? 1 : 0;
  }
  return n;
}

void NumberedLeaves::add_pending(size_t block, size_t lane) {
  Block& b = blocks_[block];
  uint16_t& times = times_[block * kInBlock + lane];
  // So that no branch depends on whether it is the first.
  pending_[nb_pending_] = static_cast<uint32_t>(block * kInBlock + lane);
  nb_pending_ += b.pending[lane] == 0 ? 1 : 0;
  b.pending[lane] += times;
  times = 0;
}

// Those of a block of which some come too often for a list, or that are taken value by value.
void NumberedLeaves::take_slowly(size_t block, CreditLists* lists) {
  const uint16_t* const times = times_.data() + block * kInBlock;
  for (uint32_t bits = more_than(times, 0); bits != 0; bits &= bits - 1) {
    const auto lane = static_cast<size_t>(std::countr_zero(bits));
    lists->add_now(leaf(static_cast<uint32_t>(block * kInBlock + lane)), times[lane]);
    add_pending(block, lane);
  }
}

void NumberedLeaves::take_blocks_plain(NumberedLeaves* leaves, const uint16_t* blocks, size_t n,
                                       CreditLists* lists) {
  for (size_t i = 0; i < n; ++i) {
    const size_t block = blocks[i];
    const uint8_t way = leaves->ways_[block];
    const uint16_t* const times = leaves->times_.data() + block * kInBlock;
    if (way == LeafTable::kOneByOne || more_than(times, CreditLists::kMostTimes) != 0) {
      leaves->take_slowly(block, lists);
      continue;
    }
    const CreditLists::End end = lists->end(way);
    size_t nb_added = 0;
    for (uint32_t bits = more_than(times, 0); bits != 0; bits &= bits - 1) {
      const auto lane = static_cast<size_t>(std::countr_zero(bits));
      end.places[nb_added] = leaves->blocks_[block].named[lane] & kPlaceMask;
      end.times[nb_added++] = times[lane];
      leaves->add_pending(block, lane);
    }
    lists->added(way, nb_added);
  }
}

__attribute__((target("avx512bw,popcnt"))) void NumberedLeaves::take_blocks_avx512(
    NumberedLeaves* leaves, const uint16_t* blocks, size_t n, CreditLists* lists) {
  static_assert(kInBlock == 16);
  const __m512i place_mask = _mm512_set1_epi32(kPlaceMask);
  const __m512i numbers = _mm512_set_epi32(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  uint32_t* pending_end = leaves->pending_.data() + leaves->nb_pending_;
  for (size_t i = 0; i < n; ++i) {
    const size_t block = blocks[i];
    const uint8_t way = leaves->ways_[block];
    auto* const lanes = reinterpret_cast<__m256i*>(leaves->times_.data() + block * kInBlock);
    const __m512i times = _mm512_maskz_cvtepu16_epi32(0xFFFF, _mm256_loadu_si256(lanes));
    const __mmask16 heavy =
        _mm512_cmpgt_epu32_mask(times, _mm512_set1_epi32(CreditLists::kMostTimes));
    if (way == LeafTable::kOneByOne || heavy != 0) {
      leaves->nb_pending_ = static_cast<size_t>(pending_end - leaves->pending_.data());
      leaves->take_slowly(block, lists);
      pending_end = leaves->pending_.data() + leaves->nb_pending_;
      continue;
    }
    Block& b = leaves->blocks_[block];
    const __mmask16 there = _mm512_test_epi32_mask(times, times);
    const CreditLists::End end = lists->end(way);
    const __m512i places = _mm512_and_si512(_mm512_load_si512(b.named), place_mask);
    _mm512_storeu_si512(end.places, _mm512_maskz_compress_epi32(there, places));
    _mm512_storeu_si512(end.times, _mm512_maskz_compress_epi32(there, times));
    lists->added(way, static_cast<size_t>(__builtin_popcount(there)));
    const __m512i pending = _mm512_load_si512(b.pending);
    const __mmask16 is_first = _mm512_mask_testn_epi32_mask(there, pending, pending);
    const __m512i first_number = _mm512_set1_epi32(static_cast<int>(block * kInBlock));
    _mm512_storeu_si512(pending_end, _mm512_maskz_compress_epi32(
                                         is_first, _mm512_add_epi32(first_number, numbers)));
    pending_end += __builtin_popcount(is_first);
    _mm512_store_si512(b.pending, _mm512_add_epi32(pending, times));
    _mm256_storeu_si256(lanes, __m256i());
  }
  leaves->nb_pending_ = static_cast<size_t>(pending_end - leaves->pending_.data());
}

void NumberedLeaves::forget_pending() {
  for (const uint32_t n : pending()) blocks_[n / kInBlock].pending[n % kInBlock] = 0;
  nb_pending_ = 0;
}

}  // namespace orva
