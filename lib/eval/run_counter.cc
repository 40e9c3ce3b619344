#include "lib/eval/run_counter.h"

#include <algorithm>
#include <cstring>

namespace orva {
namespace {

// 32 KB, and less for texts that the time to clear a table tells on.
constexpr unsigned kSlotBits = 13;
constexpr size_t kSomeBytes = 5000;
constexpr unsigned kSomeSlotBits = 12;
constexpr size_t kFewBytes = 600;
constexpr unsigned kFewSlotBits = 10;

// The golden ratio as a fraction of 2^32, which spreads trigrams that differ in any of their bytes.
template <unsigned kBits>
constexpr uint32_t slot_of(uint32_t trigram) {
  return (trigram * 0x9E3779B1U) >> (32 - kBits);
}

// An empty slot holds its number as a trigram that belongs elsewhere and has come 0 times. The mark
// is the first for which that is so, as the assertions below prove.
constexpr uint32_t kEmptyMark = 0x3B400000;
constexpr unsigned kNumberShift = 8;

template <unsigned kBits>
constexpr bool empty_ones_belong_elsewhere() {
  for (uint32_t slot = 0; slot < 1U << kBits; ++slot) {
    if (slot_of<kBits>(kEmptyMark | slot << kNumberShift) == slot) return false;
  }
  return true;
}
static_assert(empty_ones_belong_elsewhere<kSlotBits>());
static_assert(empty_ones_belong_elsewhere<kSomeSlotBits>());
static_assert(empty_ones_belong_elsewhere<kFewSlotBits>());

std::vector<uint32_t> empty_slots(unsigned bits) {
  std::vector<uint32_t> slots(size_t{1} << bits);
  for (uint32_t s = 0; s < slots.size(); ++s) slots[s] = kEmptyMark | s << kNumberShift;
  return slots;
}

// With a count of 0.
uint32_t trigram_of(unsigned a, unsigned b, unsigned c) { return a << 8 | b << 16 | c << 24; }

// What a slot holds on, or when that is another trigram or has come too often the trigram itself;
// these are counted in *nb_replaced. In assembly, for compilers branch here, which every other byte
// would prove wrong.
inline uint32_t keep_or_replace(uint32_t held, uint32_t trigram, size_t* nb_replaced) {
  asm("cmp %[most], %[difference]\n\t"
      "cmovae %[trigram], %[held]\n\t"
      "sbb $-1, %[replaced]"
      : [held] "+r"(held), [replaced] "+r"(*nb_replaced)
      : [difference] "r"(held ^ trigram), [trigram] "r"(trigram), [most] "i"(RunCounter::kMostTimes)
      : "cc");
  return held;
}

}  // namespace

RunCounter::RunCounter()
    : empty_(empty_slots(kSlotBits)),
      empty_some_(empty_slots(kSomeSlotBits)),
      empty_few_(empty_slots(kFewSlotBits)),
      slots_(empty_.size()),
      counted_(kMostCounted + 1) {}

std::span<const CountedTrigram> RunCounter::count(unsigned pair, const unsigned char* buf,
                                                  size_t n) {
  if (n <= kFewBytes) return count_in<kFewSlotBits>(empty_few_, pair, buf, n);
  if (n <= kSomeBytes) return count_in<kSomeSlotBits>(empty_some_, pair, buf, n);
  return count_in<kSlotBits>(empty_, pair, buf, n);
}

template <unsigned kBits>
std::span<const CountedTrigram> RunCounter::count_in(const std::vector<uint32_t>& empty,
                                                     unsigned pair, const unsigned char* buf,
                                                     size_t n) {
  uint32_t* const slots = slots_.data();
  std::copy(empty.begin(), empty.end(), slots);
  uint32_t* const driven_out = &counted_.data()->bits;
  size_t nb_driven_out = 0;
  const auto count_one = [&](uint32_t trigram) {
    uint32_t& slot = slots[slot_of<kBits>(trigram)];
    driven_out[nb_driven_out] = slot;
    slot = keep_or_replace(slot, trigram, &nb_driven_out) + 1;
  };
  if (n > 0) count_one(trigram_of(pair >> 8 & 0xFF, pair & 0xFF, buf[0]));
  if (n > 1) count_one(trigram_of(pair & 0xFF, buf[0], buf[1]));
  const unsigned char* const end = buf + n;
#pragma GCC unroll 4
  for (; end - buf >= 4; ++buf) {
    uint32_t bytes = 0;
    memcpy(&bytes, buf, sizeof bytes);
    // One byte too many, which falls off.
    count_one(bytes << 8);
  }
  if (end - buf == 3) count_one(trigram_of(buf[0], buf[1], buf[2]));
  // Each that was driven out of a slot, a count of 0 with the first, leaves room for another.
  for (size_t i = 0; i < nb_driven_out; ++i) {
    const uint32_t out = driven_out[i];
    const uint32_t left = slots[out >> kNumberShift & ((1U << kBits) - 1)];
    const uint32_t is_empty = ((out & 0xFF) - 1) >> 31;
    driven_out[i] = out ^ ((out ^ left) & (0 - is_empty));
  }
  return {counted_.data(), nb_driven_out};
}

}  // namespace orva
