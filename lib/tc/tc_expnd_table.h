// TCExpndTable<T>: an array that grows in pages of 1024 elements.
//
//   TCExpndTable<int> table;
//   table.expand(n);        // room for n elements; new ones are not set
//   table[n - 1] = 7;
//
// Element i lies in page i / 1024 at position i mod 1024. A table of one page holds exactly `tsize`
// elements there, a power of two that doubles as needed; with more pages every page is full-sized
// and stays where it is. The number of elements in use is its owner's affair.
//
// Life cycle: construct empty, expand, release (the destructor's work too).
// Ownership:  the pages and the page table.
// Results:    expand throws where it cannot grow (tc_alloc.h) and leaves the table as it was or
//             larger. More than 65535 pages cannot be had.
#ifndef ORVA_LIB_TC_TC_EXPND_TABLE_H_
#define ORVA_LIB_TC_TC_EXPND_TABLE_H_

#include <climits>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "lib/tc/tc_alloc.h"
#include "lib/util/accounting.h"

template <typename T>
class TCExpndTable {
  static_assert(std::is_trivially_copyable_v<T>, "pages are reallocated as raw memory");

 public:
  static constexpr unsigned kPageSize = 1024;
  static constexpr unsigned kMaxPages = 65535;
  static constexpr int kCounted = orva::CountedSize<T>::value;

  TCExpndTable() = default;
  ~TCExpndTable() { release(); }
  TCExpndTable(const TCExpndTable&) = delete;
  TCExpndTable& operator=(const TCExpndTable&) = delete;

  T& operator[](unsigned i) { return pages[i / kPageSize][i % kPageSize]; }
  const T& operator[](unsigned i) const { return pages[i / kPageSize][i % kPageSize]; }

  // Makes room for `n` elements; nothing happens when there is room already.
  void expand(unsigned n) {
    if (n <= tsize) return;
    const unsigned needed = n / kPageSize + (n % kPageSize != 0 ? 1 : 0);
    if (needed > kMaxPages) orva::growth_failed(INT_MAX);
    if (needed == 1) {
      grow_first_page(n);
    } else {
      grow_pages(needed);
    }
  }

  // Gives everything back; the table is empty afterwards.
  void release() {
    for (unsigned p = 0; p < nb_pages; ++p) {
      free_chk(pages[p], static_cast<int>(nb_pages == 1 ? tsize : kPageSize) * kCounted);
    }
    if (pages_tsize != 0) free_chk(pages, pages_tsize * 4);
    pages = nullptr;
    pages_tsize = 0;
    nb_pages = 0;
    tsize = 0;
  }

  void swap(TCExpndTable& other) {
    std::swap(pages, other.pages);
    std::swap(pages_tsize, other.pages_tsize);
    std::swap(nb_pages, other.nb_pages);
    std::swap(tsize, other.tsize);
  }

  // Bytes in use: the page table and its head, and the pages.
  int size_of() const {
    return pages_tsize * 4 + 8 +
           (nb_pages == 1 ? static_cast<int>(tsize) : nb_pages * static_cast<int>(kPageSize)) *
               kCounted;
  }

  T** pages = nullptr;
  unsigned short pages_tsize = 0;  // slots of the page table
  unsigned short nb_pages = 0;
  unsigned tsize = 0;  // capacity in elements

 private:
  void grow_page_table(unsigned slots) {
    pages = static_cast<T**>(orva::grow_block(pages, pages_tsize, static_cast<int>(slots),
                                              sizeof(T*), orva::CountedSize<T*>::value));
    pages_tsize = static_cast<unsigned short>(slots);
  }

  // One page of at most 1024 elements, its capacity doubled until it covers `n`.
  void grow_first_page(unsigned n) {
    unsigned capacity = tsize == 0 ? 1 : tsize;
    while (capacity < n) capacity *= 2;
    if (pages_tsize == 0) grow_page_table(1);
    T* old = nb_pages == 0 ? nullptr : pages[0];
    pages[0] = static_cast<T*>(orva::grow_block(old, static_cast<int>(tsize),
                                                static_cast<int>(capacity), sizeof(T), kCounted));
    nb_pages = 1;
    tsize = capacity;
  }

  void grow_pages(unsigned needed) {
    if (needed > pages_tsize) {
      const unsigned by_four = pages_tsize + 4u > kMaxPages ? kMaxPages : pages_tsize + 4u;
      grow_page_table(by_four > needed ? by_four : needed);
    }
    if (nb_pages == 1 && tsize < kPageSize) grow_first_page(kPageSize);
    while (nb_pages < needed) {
      pages[nb_pages] = static_cast<T*>(orva::new_block(kPageSize, sizeof(T), kCounted));
      ++nb_pages;
      tsize = nb_pages * kPageSize;
    }
  }
};

extern template class TCExpndTable<int>;
extern template class TCExpndTable<unsigned>;

#endif  // ORVA_LIB_TC_TC_EXPND_TABLE_H_
