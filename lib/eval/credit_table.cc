#include "lib/eval/credit_table.h"

#include <cstring>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"

namespace orva {
namespace {

// In the accounts the rows stand as a table of 4-byte references and one 1024-byte row an index.
constexpr int kAccountedPerIndex = 4 + 1024;
// From so many distinct leaves on, gathering them by last byte costs less than it saves.
constexpr size_t kGatherFrom = 1000;

// A value q credited once: it adds q to the sum and 1 to the number.
constexpr uint64_t packed(uint16_t value) { return (uint64_t{1} << 32) | value_cost(value); }

}  // namespace

CreditTable::CreditTable(int index_count) : index_count_(index_count) {
  const size_t nb_bytes = static_cast<size_t>(index_count) * kNbBytes * sizeof(uint32_t);
  rows_ = static_cast<uint32_t*>(malloc_chk_as(index_count * kAccountedPerIndex, nb_bytes));
  if (rows_ != nullptr) memset(rows_, 0, nb_bytes);
}

CreditTable::~CreditTable() {
  if (rows_ != nullptr) free_chk(rows_, index_count_ * kAccountedPerIndex);
}

void CreditTable::clear_row(int byte) {
  memset(rows_ + byte * index_count_, 0, static_cast<size_t>(index_count_) * sizeof(uint32_t));
}

void CreditTable::take_sums() { memset(sums_, 0, sizeof sums_); }

int CreditTable::add(const CLidMGroup& group, uint32_t leaf_word, int byte) {
  // Kept: the number of values is a signed byte, so a leaf with 128 or more of them credits none.
  const int count = leaf_count(leaf_word);
  if (count <= 0) return 0;
  const uint16_t* values = group.lstates_vals + leaf_first(leaf_word);
  uint32_t* row = rows_ + byte * index_count_;
  for (int v = 0; v < count; ++v) {
    const int index = value_index(values[v]);
    ++row[index];
    sums_[index] += packed(values[v]);
  }
  return count;
}

uint32_t CreditTable::add(const CLidMGroup& group, const TrigramIndex& index,
                          const std::vector<LeafCount>& leaves) {
  if (leaves.size() < kGatherFrom) {
    for (const LeafCount& leaf : leaves) add_plain(group, index, leaf);
  } else {
    add_by_byte(group, index, leaves);
  }
  uint32_t total = 0;
  for (const LeafCount& leaf : leaves) {
    const int count = leaf_count(group.lstates[leaf.id - 1]);
    if (count > 0) total += static_cast<uint32_t>(count) * leaf.count;
  }
  return total;
}

void CreditTable::add_plain(const CLidMGroup& group, const TrigramIndex& index,
                            const LeafCount& leaf) {
  const uint32_t word = group.lstates[leaf.id - 1];
  const uint16_t* values = group.lstates_vals + leaf_first(word);
  uint32_t* row = rows_ + index.leaf_byte(leaf.id) * index_count_;
  for (int v = 0; v < leaf_count(word); ++v) {
    const int i = value_index(values[v]);
    row[i] += leaf.count;
    sums_[i] += leaf.count * packed(values[v]);
  }
}

// Sorts the leaves by their last byte, so that one small array takes all that a byte's row gets.
void CreditTable::add_by_byte(const CLidMGroup& group, const TrigramIndex& index,
                              const std::vector<LeafCount>& leaves) {
  size_t ends[kNbBytes] = {};
  for (const LeafCount& leaf : leaves) ++ends[index.leaf_byte(leaf.id)];
  size_t end = 0;
  for (size_t& e : ends) {
    const size_t count = e;
    e = end;
    end += count;
  }
  by_byte_.resize(leaves.size());
  for (const LeafCount& leaf : leaves) by_byte_[ends[index.leaf_byte(leaf.id)]++] = leaf;

  uint64_t gathered[kNbBytes] = {};
  size_t at = 0;
  for (int byte = 0; byte < kNbBytes; ++byte) {
    if (at == ends[byte]) continue;
    for (; at < ends[byte]; ++at) {
      const uint32_t word = group.lstates[by_byte_[at].id - 1];
      const uint64_t times = by_byte_[at].count;
      const uint16_t* values = group.lstates_vals + leaf_first(word);
      for (int v = 0; v < leaf_count(word); ++v) {
        gathered[value_index(values[v])] += times * packed(values[v]);
      }
    }
    flush(byte, gathered);
  }
}

void CreditTable::flush(int byte, uint64_t* gathered) {
  uint32_t* row = rows_ + byte * index_count_;
  for (int i = 0; i < index_count_; ++i) {
    row[i] += static_cast<uint32_t>(gathered[i] >> 32);
    sums_[i] += gathered[i];
    gathered[i] = 0;
  }
}

}  // namespace orva
