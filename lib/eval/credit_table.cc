#include "lib/eval/credit_table.h"

#include <algorithm>
#include <cstring>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"

namespace orva {
namespace {

// In the accounts the rows stand as a table of 4-byte references and one 1024-byte row an index.
constexpr int kAccountedPerIndex = 4 + 1024;
// A value q credited once: it adds q to the sum and 1 to the number.
constexpr uint64_t packed(uint16_t value) { return (uint64_t{1} << 32) | value_cost(value); }

}  // namespace

CreditTable::CreditTable(int index_count) : index_count_(index_count) {
  constexpr size_t nb_bytes = kLanes * kNbBytes * sizeof(uint32_t);
  rows_ = static_cast<uint32_t*>(malloc_chk_as(index_count * kAccountedPerIndex, nb_bytes));
  if (rows_ != nullptr) memset(rows_, 0, nb_bytes);
}

CreditTable::~CreditTable() {
  if (rows_ != nullptr) free_chk(rows_, index_count_ * kAccountedPerIndex);
}

void CreditTable::clear_row(int byte) { memset(mutable_row(byte), 0, kLanes * sizeof(uint32_t)); }

void CreditTable::take_sums() {
  memset(sums_, 0, sizeof sums_);
  run_ = DenseSums();
}

int CreditTable::add(const CLidMGroup& group, uint32_t leaf_word, int byte) {
  // Kept: the number of values is a signed byte, so a leaf with 128 or more of them credits none.
  const int count = leaf_count(leaf_word);
  if (count <= 0) return 0;
  const uint16_t* values = group.lstates_vals + leaf_first(leaf_word);
  uint32_t* row = mutable_row(byte);
  for (int v = 0; v < count; ++v) {
    const int index = value_index(values[v]);
    ++row[lane_of(index)];
    sums_[index] += packed(values[v]);
  }
  return count;
}

void CreditTable::prepare(const CLidMGroup& group, const TrigramIndex& index) {
  dense_.build(group);
  by_byte_.reserve(RunCounter::kMaxRun);
  leaves_.assign(index.nb_ids(), Leaf());
  for (uint32_t id = 1; id < index.nb_ids(); ++id) {
    const uint32_t word = group.lstates[id - 1];
    const uint32_t number = dense_.number_of(id - 1);
    Leaf& leaf = leaves_[id];
    leaf.first = number != 0 ? number : static_cast<uint32_t>(leaf_first(word));
    leaf.byte = index.leaf_byte(id);
    leaf.count = static_cast<int8_t>(std::max(leaf_count(word), 0));
    leaf.has_row = number != 0;
  }
  dense_.forget_numbers();
}

// Leaves are taken by their last byte, so that one row of the table takes all that they credit.
uint32_t CreditTable::add(const CLidMGroup& group, const std::vector<LeafCount>& leaves) {
  sort_by_byte(leaves);
  uint32_t total = 0;
  size_t at = 0;
  for (int byte = 0; byte < kNbBytes; ++byte) {
    uint32_t* row = mutable_row(byte);
    for (; at < ends_[byte]; ++at) {
      const Reached& reached = by_byte_[at];
      const Leaf& leaf = reached.leaf;
      total += static_cast<uint32_t>(leaf.count) * reached.times;
      if (!leaf.has_row) {
        add_values(group.lstates_vals + leaf.first, reached, row);
      } else {
        add_row(dense_.row(leaf.first), reached.times, row);
      }
    }
    add_batch(true, row);
    add_batch(false, row);
  }
  return total;
}

void CreditTable::sort_by_byte(const std::vector<LeafCount>& leaves) {
  constexpr size_t kAhead = 16;
  memset(ends_, 0, sizeof ends_);
  for (size_t i = 0; i < leaves.size(); ++i) {
    // The leaves are strewn over memory.
    if (i + kAhead < leaves.size()) __builtin_prefetch(&leaves_[leaves[i + kAhead].id]);
    ++ends_[leaves_[leaves[i].id].byte];
  }
  size_t end = 0;
  for (size_t& e : ends_) {
    const size_t count = e;
    e = end;
    end += count;
  }
  by_byte_.resize(leaves.size());
  for (const LeafCount& counted : leaves) {
    const Leaf& leaf = leaves_[counted.id];
    by_byte_[ends_[leaf.byte]++] = {leaf, counted.count};
  }
}

void CreditTable::add_values(const uint16_t* values, const Reached& reached, uint32_t* row) {
  for (int v = 0; v < reached.leaf.count; ++v) {
    const int i = value_index(values[v]);
    row[lane_of(i)] += reached.times;
    sums_[i] += reached.times * packed(values[v]);
  }
}

void CreditTable::add_row(const DenseRows::Row& values, uint32_t times, uint32_t* row) {
  RowBatch& batch = values.is_short ? short_batch_ : long_batch_;
  while (times != 0) {
    times -= batch.add(values.values, times);
    if (batch.is_full()) add_batch(values.is_short, row);
  }
}

void CreditTable::add_batch(bool is_short, uint32_t* row) {
  RowBatch& batch = is_short ? short_batch_ : long_batch_;
  batch.end_group();
  if (batch.nb_groups == 0) return;
  (is_short ? adders_.add_short : adders_.add_long)(batch, row, &run_);
  batch.nb_rows = 0;
  batch.nb_groups = 0;
}

}  // namespace orva
