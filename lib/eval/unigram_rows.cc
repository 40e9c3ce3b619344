#include "lib/eval/unigram_rows.h"

namespace orva {

namespace {

constexpr int kNbByteValues = 256;

// Whether all models of the fact set have an entry among these, at one cost.
bool is_shared(int fact, const std::vector<int>& facts,
               const std::vector<const UlpEntry*>& by_model) {
  int q = -1;
  for (size_t m = 0; m < facts.size(); ++m) {
    if (facts[m] != fact) continue;
    if (by_model[m] == nullptr || (q >= 0 && by_model[m]->q != q)) return false;
    q = by_model[m]->q;
  }
  return true;
}

}  // namespace

bool UnigramRows::build(const std::vector<int>& facts, const DenseRows& lanes,
                        const UlpEntry* const* first, const int* count) {
  rows_.assign(kNbByteValues, Row());
  mixed_.assign(kNbByteValues, {});
  for (int b = 0; b < kNbByteValues; ++b) {
    if (!add_byte(b, facts, lanes, first[b], count[b])) return false;
  }
  if (__builtin_cpu_supports("avx2") != 0) add_ = add_avx2;
  return true;
}

bool UnigramRows::add_byte(int byte, const std::vector<int>& facts, const DenseRows& lanes,
                           const UlpEntry* first, int count) {
  std::vector<const UlpEntry*> by_model(facts.size(), nullptr);
  for (const UlpEntry* entry = first; entry < first + count; ++entry) {
    if (by_model[entry->model] != nullptr || entry->group != facts[entry->model]) return false;
    by_model[entry->model] = entry;
  }
  Row& row = rows_[static_cast<size_t>(byte)];
  for (size_t m = 0; m < facts.size(); ++m) {
    if (by_model[m] == nullptr) continue;
    const auto q = by_model[m]->q;
    const bool in_set = facts[m] != static_cast<int>(m);
    const auto lane = static_cast<uint8_t>(lanes.lane_of(static_cast<int>(m)));
    const auto fact_lane = static_cast<uint8_t>(lanes.lane_of(facts[m]));
    row.covered_q[lane] = q;
    row.covered_has[lane] = 1;
    if (in_set && is_shared(facts[m], facts, by_model)) {
      row.q[fact_lane] = row.covered_q[fact_lane] = q;
      row.has[fact_lane] = row.covered_has[fact_lane] = 1;
      continue;
    }
    row.q[lane] = q;
    row.has[lane] = 1;
    if (in_set) mixed_[static_cast<size_t>(byte)].push_back({lane, fact_lane, q});
  }
  return true;
}

template <typename Longs>
__attribute__((always_inline)) inline void UnigramRows::add_row(const Row& row, uint32_t count,
                                                                const uint32_t* credited,
                                                                DenseSums* sums) {
  for (size_t k = 0; k < kLanes; k += sizeof(Longs) / sizeof(uint32_t)) {
    const Longs covered = *reinterpret_cast<const Longs*>(credited + k);
    *reinterpret_cast<Longs*>(sums->sums + k) +=
        *reinterpret_cast<const Longs*>(row.q + k) * count -
        *reinterpret_cast<const Longs*>(row.covered_q + k) * covered;
    *reinterpret_cast<Longs*>(sums->counts + k) +=
        *reinterpret_cast<const Longs*>(row.has + k) * count -
        *reinterpret_cast<const Longs*>(row.covered_has + k) * covered;
  }
}

namespace {

using Longs4 = uint32_t __attribute__((vector_size(16), aligned(4), may_alias));
using Longs8 = uint32_t __attribute__((vector_size(32), aligned(4), may_alias));

}  // namespace

void UnigramRows::add_plain(const Row& row, uint32_t count, const uint32_t* credited,
                            DenseSums* sums) {
  add_row<Longs4>(row, count, credited, sums);
}

__attribute__((target("avx2"))) void UnigramRows::add_avx2(const Row& row, uint32_t count,
                                                           const uint32_t* credited,
                                                           DenseSums* sums) {
  add_row<Longs8>(row, count, credited, sums);
}

void UnigramRows::use_plain_vectors() { add_ = add_plain; }

}  // namespace orva
