#include "lib/eval/numbered_leaves.h"

#include <immintrin.h>

#include <algorithm>
#include <bit>

namespace orva {
namespace {

// After longer runs all blocks are looked at, which takes vectors less time.
constexpr size_t kShortRun = 600;
constexpr size_t kShortRunPlain = 5000;

// Bit i tells whether times[i], of a block, is more than `most`.
inline uint32_t more_than(const uint16_t* times, uint16_t most) {
  const auto* lanes = reinterpret_cast<const __m128i*>(times);
  const __m128i all = _mm_set1_epi16(static_cast<int16_t>(most));
  // Saturated, what is not more is 0.
  const __m128i low = _mm_cmpeq_epi16(_mm_subs_epu16(_mm_loadu_si128(lanes), all), __m128i());
  const __m128i high = _mm_cmpeq_epi16(_mm_subs_epu16(_mm_loadu_si128(lanes + 1), all), __m128i());
  return static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high))) ^ 0xFFFF;
}

// Bit i tells whether numbers[i], of a block, is not 0.
uint32_t not_zero(const uint32_t* numbers) {
  const auto* lanes = reinterpret_cast<const __m128i*>(numbers);
  const auto zeros_in = [&](size_t i) {
    return _mm_cmpeq_epi32(_mm_loadu_si128(lanes + i), __m128i());
  };
  const __m128i low = _mm_packs_epi32(zeros_in(0), zeros_in(1));
  const __m128i high = _mm_packs_epi32(zeros_in(2), zeros_in(3));
  return static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high))) ^ 0xFFFF;
}

bool covers_sets(uint8_t way) { return way != LeafTable::kNone && way != LeafTable::kOneByOne; }

}  // namespace

NumberedLeaves::NumberedLeaves() : times_(kMostNumbers), blocks_(kNbBlocks) {
  use_plain_vectors();
  if (__builtin_cpu_supports("avx512bw") != 0 && __builtin_cpu_supports("bmi2") != 0 &&
      __builtin_cpu_supports("popcnt") != 0) {
    find_blocks_ = find_blocks_avx512;
    take_blocks_ = take_blocks_avx512;
    move_blocks_ = move_blocks_avx512;
    short_run_ = kShortRun;
  }
  clear();
}

void NumberedLeaves::use_plain_vectors() {
  find_blocks_ = find_blocks_plain;
  take_blocks_ = take_blocks_plain;
  move_blocks_ = move_blocks_plain;
  short_run_ = kShortRunPlain;
}

void NumberedLeaves::name(uint32_t number, uint32_t place, uint32_t set, unsigned char last_byte) {
  Block& block = blocks_[number / kInBlock];
  block.named[number % kInBlock] = place | uint32_t{last_byte} << kPlaceBits;
  block.sets[number % kInBlock] = set;
}

void NumberedLeaves::clear() {
  next_.fill(0);
  ways_.fill(LeafTable::kNone);
  // The numbers of the first block are not given out, of which one is none's.
  for (uint32_t b = 0; b < 256; ++b) {
    const auto byte = static_cast<unsigned char>(b);
    name(without_leaf(byte), 0, 0, byte);
  }
  nb_blocks_ = kNbGiven;
}

uint16_t NumberedLeaves::add(Leaf leaf, uint32_t set, unsigned char last_byte) {
  uint32_t& next = next_[leaf.way()];
  if (next % kInBlock == 0) {
    if (nb_blocks_ == kNbBlocks) return kNone;
    ways_[nb_blocks_] = leaf.way();
    next = static_cast<uint32_t>(nb_blocks_++ * kInBlock);
  }
  name(next, leaf.place(), set, last_byte);
  return static_cast<uint16_t>(next++);
}

void NumberedLeaves::count(const uint16_t* numbers, size_t n) {
  uint16_t* const times = times_.data();
#pragma GCC unroll 4
  for (size_t i = 0; i < n; ++i) ++times[numbers[i]];
  nb_counted_ += n;
  if (nb_counted_ > short_run_) return;
  touched_.add<kInBlock>({numbers, n});
}

void NumberedLeaves::take_run(CreditLists* lists) {
  if (nb_counted_ <= short_run_) {
    take_blocks(touched_.blocks(), lists);
  } else {
    uint16_t blocks[kNbBlocks + kFoundAtOnce];
    take_blocks({blocks, find_blocks_(times_.data(), nb_blocks_, blocks)}, lists);
  }
  touched_.clear();
  nb_counted_ = 0;
}

void NumberedLeaves::take_blocks(std::span<const uint16_t> blocks, CreditLists* lists) {
  pending_.add<1>(blocks);
  take_blocks_(this, blocks, lists);
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

// Sixteen blocks at once, each of four words of 64 bits that tell by a bit each.
__attribute__((target("avx512bw,bmi2,popcnt"))) size_t NumberedLeaves::find_blocks_avx512(
    const uint16_t* times, size_t nb_blocks, uint16_t* blocks) {
  static_assert(kInBlock * sizeof(uint16_t) == 32 && kNbBlocks % kFoundAtOnce == 0);
  const __m512i numbers = _mm512_set_epi32(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  size_t n = 0;
  for (size_t b = 0; b < nb_blocks; b += kFoundAtOnce) {
    uint32_t there = 0;
#pragma GCC unroll 2
    for (size_t half = 0; half < 2; ++half) {
      uint32_t bits = 0;
#pragma GCC unroll 4
      for (size_t k = 0; k < 4; ++k) {
        const __m512i lanes = _mm512_loadu_si512(times + (b + 8 * half + 2 * k) * kInBlock);
        bits |= uint32_t{_mm512_test_epi64_mask(lanes, lanes)} << 8 * k;
      }
      bits |= bits >> 1;
      there |= _pext_u32(bits | bits >> 2, 0x11111111) << 8 * half;
    }
    const __m512i first = _mm512_set1_epi32(static_cast<int>(b));
    const __m512i found = _mm512_maskz_compress_epi32(static_cast<__mmask16>(there),
                                                      _mm512_add_epi32(first, numbers));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(blocks + n),
                        _mm512_maskz_cvtepi32_epi16(0xFFFF, found));
    n += static_cast<size_t>(__builtin_popcount(there));
  }
  return n;
}

void NumberedLeaves::make_pending(size_t number) {
  blocks_[number / kInBlock].pending[number % kInBlock] += times_[number];
  times_[number] = 0;
}

// Those of a block of which some come too often for a list, or that are taken value by value.
void NumberedLeaves::take_slowly(size_t block, CreditLists* lists) {
  for (uint32_t bits = more_than(times_.data() + block * kInBlock, 0); bits != 0;
       bits &= bits - 1) {
    const auto lane = static_cast<size_t>(std::countr_zero(bits));
    const uint32_t place = blocks_[block].named[lane] & kPlaceMask;
    lists->add_now(Leaf(ways_[block], place), times_[block * kInBlock + lane]);
    make_pending(block * kInBlock + lane);
  }
}

void NumberedLeaves::take_blocks_plain(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                                       CreditLists* lists) {
  for (const size_t block : blocks) {
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
      leaves->make_pending(block * kInBlock + lane);
    }
    lists->added(way, nb_added);
  }
}

__attribute__((target("avx512bw,popcnt"))) void NumberedLeaves::take_blocks_avx512(
    NumberedLeaves* leaves, std::span<const uint16_t> blocks, CreditLists* lists) {
  static_assert(kInBlock == 16);
  const __m512i place_mask = _mm512_set1_epi32(kPlaceMask);
  for (const size_t block : blocks) {
    const uint8_t way = leaves->ways_[block];
    auto* const lanes = reinterpret_cast<__m256i*>(leaves->times_.data() + block * kInBlock);
    const __m512i times = _mm512_maskz_cvtepu16_epi32(0xFFFF, _mm256_loadu_si256(lanes));
    const __mmask16 heavy =
        _mm512_cmpgt_epu32_mask(times, _mm512_set1_epi32(CreditLists::kMostTimes));
    if (way == LeafTable::kOneByOne || heavy != 0) {
      leaves->take_slowly(block, lists);
      continue;
    }
    Block& b = leaves->blocks_[block];
    const __mmask16 there = _mm512_test_epi32_mask(times, times);
    const CreditLists::End end = lists->end(way);
    const __m512i places = _mm512_and_si512(_mm512_load_si512(b.named), place_mask);
    _mm512_storeu_si512(end.places, _mm512_maskz_compress_epi32(there, places));
    _mm512_storeu_si512(end.times, _mm512_maskz_compress_epi32(there, times));
    lists->added(way, static_cast<size_t>(__builtin_popcount(there)));
    _mm512_store_si512(b.pending, _mm512_add_epi32(_mm512_load_si512(b.pending), times));
    _mm256_storeu_si256(lanes, __m256i());
  }
}

void NumberedLeaves::forget_pending() {
  for (const uint16_t block : pending_.blocks()) {
    std::fill_n(blocks_[block].pending, kInBlock, 0);
  }
  pending_.clear();
}

void NumberedLeaves::take_pending(PendingCovers* covers) {
  move_blocks_(this, pending_.blocks(), covers);
  pending_.clear();
}

// Those of a block that cover nothing, or that are taken value by value.
void NumberedLeaves::move_slowly(size_t block, PendingCovers* covers) {
  Block& b = blocks_[block];
  for (uint32_t bits = not_zero(b.pending); bits != 0; bits &= bits - 1) {
    const auto lane = static_cast<size_t>(std::countr_zero(bits));
    const auto last_byte = static_cast<unsigned char>(b.named[lane] >> kPlaceBits);
    covers->add_uncovered(last_byte, b.pending[lane]);
    if (ways_[block] == LeafTable::kOneByOne) {
      covers->add_one_by_one({b.named[lane] & kPlaceMask, b.pending[lane], last_byte});
    }
    b.pending[lane] = 0;
  }
}

void NumberedLeaves::move_blocks_plain(NumberedLeaves* leaves, std::span<const uint16_t> blocks,
                                       PendingCovers* covers) {
  for (const uint16_t block : blocks) {
    if (!covers_sets(leaves->ways_[block])) {
      leaves->move_slowly(block, covers);
      continue;
    }
    Block& b = leaves->blocks_[block];
    const PendingCovers::End end = covers->end();
    size_t nb_added = 0;
    for (uint32_t bits = not_zero(b.pending); bits != 0; bits &= bits - 1) {
      const auto lane = static_cast<size_t>(std::countr_zero(bits));
      end.sets[nb_added] = b.sets[lane];
      end.times[nb_added] = b.pending[lane];
      end.bytes[nb_added++] = static_cast<uint8_t>(b.named[lane] >> kPlaceBits);
      b.pending[lane] = 0;
    }
    covers->added(nb_added);
  }
}

__attribute__((target("avx512bw,popcnt"))) void NumberedLeaves::move_blocks_avx512(
    NumberedLeaves* leaves, std::span<const uint16_t> blocks, PendingCovers* covers) {
  static_assert(kInBlock == 16 && PendingCovers::kMostAdded >= kInBlock);
  for (const uint16_t block : blocks) {
    if (!covers_sets(leaves->ways_[block])) {
      leaves->move_slowly(block, covers);
      continue;
    }
    Block& b = leaves->blocks_[block];
    const __m512i pending = _mm512_load_si512(b.pending);
    const __mmask16 there = _mm512_test_epi32_mask(pending, pending);
    const __m512i sets = _mm512_maskz_compress_epi32(there, _mm512_load_si512(b.sets));
    const __m512i named = _mm512_maskz_compress_epi32(there, _mm512_load_si512(b.named));
    const __m512i last_bytes = _mm512_maskz_srli_epi32(0xFFFF, named, kPlaceBits);
    const PendingCovers::End end = covers->end();
    _mm512_storeu_si512(end.sets, sets);
    _mm512_storeu_si512(end.times, _mm512_maskz_compress_epi32(there, pending));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(end.bytes),
                     _mm512_maskz_cvtepi32_epi8(0xFFFF, last_bytes));
    covers->added(static_cast<size_t>(__builtin_popcount(there)));
    _mm512_store_si512(b.pending, __m512i());
  }
}

}  // namespace orva
