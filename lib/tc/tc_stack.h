// TCMemStack<T>: keeps blocks in rows of memory and never moves them.
//
//   TCMemStack<unsigned char> strings;
//   const unsigned char* copy = strings.push(text, length);
//   strings.free_all();     // forgets every block, keeps the rows for the next ones
//
// Rows hold at least 4096 elements; a larger block gets a row of its own size. Each push leaves a
// mark, the row's fill before it, negated when the block opened a new row, so that a pop could walk
// back.
//
// Life cycle: construct, push, free_all to start over, destroy.
// Ownership:  the rows; pushed blocks are copies.
// Results:    a row that cannot be allocated ends the process at the push, with a report; marks and
//             row arrays that cannot grow throw (tc_alloc.h).
#ifndef ORVA_LIB_TC_TC_STACK_H_
#define ORVA_LIB_TC_TC_STACK_H_

#include "lib/tc/tc_expnd_table.h"

template <typename T>
class TCMemStack {
 public:
  static constexpr int kMinRow = 4096;

  TCMemStack();
  ~TCMemStack();
  TCMemStack(const TCMemStack&) = delete;
  TCMemStack& operator=(const TCMemStack&) = delete;

  // Copies a block of `len` elements and returns the copy.
  T* push(const T* block, int len);
  // Goes on to the next row and gives it room for `min_size` elements.
  void row_incr(int min_size);
  void free_all();
  // Bytes in use, by the sizes of the 32-bit reference platform.
  int size_of() const;

  TCExpndTable<int> marks;
  int sz_stack_top = 0;  // marks in use
  int rows_tsize = 0;
  T** rows = nullptr;
  int* row_tsz = nullptr;  // size of each row, 0 where there is none
  int curr_row_idx = -1;
  int curr_row_cnt = 0;

 private:
  void grow_rows(int slots);
  [[noreturn]] void report_null_row(int len) const;
};

extern template class TCMemStack<unsigned char>;

#endif  // ORVA_LIB_TC_TC_STACK_H_
