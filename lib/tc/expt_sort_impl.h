// The algorithm of the sorter family; included where its instances are made (tc_instances.cc).
#ifndef ORVA_LIB_TC_EXPT_SORT_IMPL_H_
#define ORVA_LIB_TC_EXPT_SORT_IMPL_H_

#include <algorithm>
#include <utility>

#include "lib/tc/expt_sort.h"

namespace orva {

// A page of records for the time of a sort.
template <typename T>
class SparePage {
 public:
  SparePage()
      : page(static_cast<T*>(
            new_block(TCExpndTable<T>::kPageSize, sizeof(T), CountedSize<T>::value))) {}
  ~SparePage() {
    free_chk(page, static_cast<int>(TCExpndTable<T>::kPageSize) * CountedSize<T>::value);
  }
  SparePage(const SparePage&) = delete;
  SparePage& operator=(const SparePage&) = delete;

  T* page;
};

}  // namespace orva

template <typename T>
void TCExpTSortBase<T>::sort(int from, int to) {
  const auto capacity = static_cast<int>(table->tsize);
  if (to == -1 || to > capacity) to = capacity;
  if (from < 0 || to <= from) return;
  const int first_row = from / kRow;
  const int first_pos = from % kRow;
  const int last_row = (to - 1) / kRow;
  const int last_pos = (to - 1) % kRow + 1;
  {
    orva::SparePage<T> spare;
    for (int row = first_row; row <= last_row; ++row) {
      T*& page = table->pages[row];
      const int begin = row == first_row ? first_pos : 0;
      const int end = row == last_row ? last_pos : kRow;
      if (row_sort(page, spare.page, begin, end) == 0) std::swap(page, spare.page);
    }
  }
  if (first_row != last_row) merge_rows(first_row, first_pos, last_row, last_pos);
}

template <typename T>
int TCExpTSortBase<T>::row_sort(T* row, T* spare, int begin, int end) {
  const int n = end - begin;
  const int even = n - n % 2;
  const bool whole = begin == 0 && n == kRow;
  if (even != n) spare[end - 1] = row[end - 1];
  merge_seqlen1(row + begin, spare + begin, even);
  T* src = spare;
  T* dst = row;
  for (int run = 2; run < n; run *= 2) {
    for (int at = 0; at < n; at += 2 * run) {
      const int total = std::min(2 * run, n - at);
      merge_seq(src + begin + at, dst + begin + at, std::min(run, total), total);
    }
    std::swap(src, dst);
  }
  if (src == row) return 1;
  if (whole) return 0;
  std::copy(spare + begin, spare + end, row + begin);
  return 1;
}

// Runs of rows are merged in pairs, from the table's pages to spare ones and back, each pass
// halving the number of runs; positions are counted from the start of the first row.
template <typename T>
void TCExpTSortBase<T>::merge_rows(int first_row, int first_pos, int last_row, int last_pos) {
  const int nb_rows = last_row - first_row + 1;
  const int end = (nb_rows - 1) * kRow + last_pos;
  TCExpndTable<T> spare;
  spare.expand(static_cast<unsigned>(nb_rows * kRow));
  T** src = table->pages + first_row;
  T** dst = spare.pages;
  // What the first and the last row hold outside of the range stays where it is.
  std::copy(src[0], src[0] + first_pos, dst[0]);
  std::copy(src[nb_rows - 1] + last_pos, src[nb_rows - 1] + kRow, dst[nb_rows - 1] + last_pos);

  for (int width = kRow; width < nb_rows * kRow; width *= 2) {
    for (int at = 0; at < nb_rows * kRow; at += 2 * width) {
      merge_run_pair(src, dst, std::max(at, first_pos), std::min(at + width, end),
                     std::min(at + 2 * width, end));
    }
    std::swap(src, dst);
  }
  if (src == spare.pages) {
    for (int row = 0; row < nb_rows; ++row) std::swap(src[row], dst[row]);
  }
}

// Merges the positions [begin, middle) and [middle, end) of the rows `src` into the same positions
// of `dst`, as many at a time as stay within one row of each.
template <typename T>
void TCExpTSortBase<T>::merge_run_pair(T** src, T** dst, int begin, int middle, int end) {
  int a = begin;
  int b = middle;
  int out = begin;
  const auto left_in_row = [](int at, int limit) { return std::min(limit - at, kRow - at % kRow); };
  while (a < middle && b < end) {
    const int n = std::min({left_in_row(a, middle), left_in_row(b, end), kRow - out % kRow});
    int taken_a = 0;
    int taken_b = 0;
    merge_rows_while(src[a / kRow] + a % kRow, src[b / kRow] + b % kRow,
                     dst[out / kRow] + out % kRow, n, &taken_a, &taken_b);
    a += taken_a;
    b += taken_b;
    out += n;
  }
  int& rest = a < middle ? a : b;
  const int rest_end = a < middle ? middle : end;
  while (rest < rest_end) {
    const int n = std::min(left_in_row(rest, rest_end), kRow - out % kRow);
    std::copy_n(src[rest / kRow] + rest % kRow, n, dst[out / kRow] + out % kRow);
    rest += n;
    out += n;
  }
}

#endif  // ORVA_LIB_TC_EXPT_SORT_IMPL_H_
