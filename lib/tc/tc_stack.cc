#include "lib/tc/tc_stack.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

// "Null pointer": the stack's address, the block's length, the marks in use.
constexpr char kMsgNull[] = "TCMemStack: ptr NULL. This 0x%x get_len %d  sz_stack_top %d\n";
constexpr char kMsgRow[] = "  curr_row_idx %d curr_row_cnt %d rows_tsize %d row_tsz[r] %d\n";
constexpr char kSource[] = "src_copy/v2.2/tc_stack";
constexpr int kLine = 237;

}  // namespace

template <typename T>
TCMemStack<T>::TCMemStack() {
  row_incr(1);
}

template <typename T>
TCMemStack<T>::~TCMemStack() {
  for (int i = 0; i < rows_tsize; ++i) {
    if (rows[i] != nullptr) free_chk(rows[i], row_tsz[i] * static_cast<int>(sizeof(T)));
  }
  if (rows_tsize != 0) {
    free_chk(rows, rows_tsize * 4);
    free_chk(row_tsz, rows_tsize * 4);
  }
}

template <typename T>
T* TCMemStack<T>::push(const T* block, int len) {
  const bool fits = len <= row_tsz[curr_row_idx] - curr_row_cnt;
  marks.expand(static_cast<unsigned>(sz_stack_top) + 1);
  marks[static_cast<unsigned>(sz_stack_top)] = fits ? curr_row_cnt : -curr_row_cnt;
  ++sz_stack_top;
  if (!fits) row_incr(len);
  // Kept: a row that could not be allocated is reported here and ends the process, even where other
  // failed allocations are returned as results.
  if (rows[curr_row_idx] == nullptr) report_null_row(len);
  T* place = rows[curr_row_idx] + curr_row_cnt;
  memcpy(place, block, static_cast<size_t>(len) * sizeof(T));
  curr_row_cnt += len;
  return place;
}

template <typename T>
void TCMemStack<T>::row_incr(int min_size) {
  if (curr_row_idx + 1 == rows_tsize) grow_rows(curr_row_idx + 1 + 4);
  ++curr_row_idx;
  curr_row_cnt = 0;
  if (min_size <= row_tsz[curr_row_idx]) return;
  T*& row = rows[curr_row_idx];
  if (row != nullptr) free_chk(row, row_tsz[curr_row_idx] * static_cast<int>(sizeof(T)));
  const int size = std::max(min_size, kMinRow);
  row = static_cast<T*>(malloc_chk(size * static_cast<int>(sizeof(T))));
  row_tsz[curr_row_idx] = size;
}

template <typename T>
void TCMemStack<T>::grow_rows(int slots) {
  const auto first_new = static_cast<size_t>(rows_tsize);
  const auto nb_new = static_cast<size_t>(slots - rows_tsize);
  rows = static_cast<T**>(orva::grow_block(rows, rows_tsize, slots, sizeof(T*), 4));
  try {
    row_tsz = static_cast<int*>(orva::grow_block(row_tsz, rows_tsize, slots, sizeof(int), 4));
  } catch (...) {
    // The two arrays have one size: the longer one counts again as the shorter.
    if (rows_tsize == 0) {
      free_chk(rows, slots * 4);
      rows = nullptr;
    } else {
      account_growth(rows, rows_tsize - slots, 4);
    }
    throw;
  }
  std::fill_n(rows + first_new, nb_new, nullptr);
  std::fill_n(row_tsz + first_new, nb_new, 0);
  rows_tsize = slots;
}

template <typename T>
void TCMemStack<T>::free_all() {
  sz_stack_top = 0;
  curr_row_idx = -1;
  row_incr(1);
}

template <typename T>
int TCMemStack<T>::size_of() const {
  int bytes = marks.size_of();
  for (int i = 0; i < rows_tsize; ++i) bytes += row_tsz[i] * static_cast<int>(sizeof(T));
  return bytes + 8 * rows_tsize;
}

template <typename T>
void TCMemStack<T>::report_null_row(int len) const {
  printf(kMsgNull, static_cast<unsigned>(reinterpret_cast<uintptr_t>(this)), len, sz_stack_top);
  printf(kMsgRow, curr_row_idx, curr_row_cnt, rows_tsize, row_tsz[curr_row_idx]);
  orva::requirement_failed(kSource, kLine, "Ptr NULL\n");
}

template class TCMemStack<unsigned char>;
