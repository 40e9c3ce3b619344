#include "lib/eval/run_counter.h"

namespace orva {
namespace {

struct PlainCount {
  uint32_t operator()(uint64_t word) const {
    word -= (word >> 1) & 0x5555555555555555U;
    word = (word & 0x3333333333333333U) + ((word >> 2) & 0x3333333333333333U);
    word = (word + (word >> 4)) & 0x0F0F0F0F0F0F0F0FU;
    return static_cast<uint32_t>((word * 0x0101010101010101U) >> 56);
  }
};

}  // namespace

RunCounter::RunCounter(const TrigramIndex* index)
    : index_(index),
      has_popcnt_(__builtin_cpu_supports("popcnt") != 0),
      counts_(index->nb_ids(), 0),
      touched_(kMaxRun + 2) {
  leaves_.reserve(kMaxRun);
}

template <typename Count>
__attribute__((always_inline)) inline void RunCounter::count_with(unsigned pair,
                                                                  const unsigned char* buf, int n,
                                                                  uint32_t* byte_counts,
                                                                  Count count) {
  uint16_t* const counts = counts_.data();
  uint32_t* const touched = touched_.data();
  size_t nb_touched = 0;
  for (int i = 0; i < n; ++i) {
    const unsigned char c = buf[i];
    const uint32_t id = index_->find(pair, c, count);
    pair = (pair << 8 | c) & 0xFFFF;
    // Every byte without a leaf counts for identifier 0, so that no branch depends on the text.
    touched[nb_touched] = id;
    nb_touched += counts[id] == 0 ? 1 : 0;
    ++counts[id];
    ++byte_counts[c];
  }
  leaves_.clear();
  for (size_t t = 0; t < nb_touched; ++t) {
    const uint32_t id = touched[t];
    if (id != TrigramIndex::kNone) leaves_.push_back({id, counts[id]});
    counts[id] = 0;
  }
}

void RunCounter::count_popcnt(unsigned pair, const unsigned char* buf, int n,
                              uint32_t* byte_counts) {
  count_with(
      pair, buf, n, byte_counts, [](uint64_t word) __attribute__((target("popcnt"))) {
        return static_cast<uint32_t>(__builtin_popcountll(word));
      });
}

void RunCounter::count(unsigned pair, const unsigned char* buf, int n, uint32_t* byte_counts) {
  if (has_popcnt_) {
    count_popcnt(pair, buf, n, byte_counts);
  } else {
    count_with(pair, buf, n, byte_counts, PlainCount());
  }
}

}  // namespace orva
