// Merge sort of tables that lie in pages, without ever holding them in one block.
//
//   TCExpTSortImm<WordFreq> sorter(&table, offsetof(WordFreq, freq), kIntKey);
//   sorter.sort(0, nb_words);        // positions 0 to nb_words - 1, ascending
//
// Each page (a row) is sorted on its own with one spare page; the sorted rows are then merged,
// earlier rows always as first runs. The head of a first run is taken only when its key is strictly
// lower: among equal keys, what stands later in the table comes first, whatever the table's size.
//
// Life cycle: construct over a table, sort as often as wanted.
// Ownership:  nothing; the table is the caller's. Spare pages live within one sort.
// Results:    sort throws where it cannot have its spare pages (tc_alloc.h); the table then holds
//             all its records in some order.
#ifndef ORVA_LIB_TC_EXPT_SORT_H_
#define ORVA_LIB_TC_EXPT_SORT_H_

#include <cstdint>
#include <cstring>

#include "lib/tc/tc_expnd_table.h"

enum TCExpTSortKeyKind { kIntKey = 0, kFloatKey = 1 };

template <typename T>
class TCExpTSortBase {
 public:
  explicit TCExpTSortBase(TCExpndTable<T>* t) : table(t) {}
  TCExpTSortBase(const TCExpTSortBase&) = delete;
  TCExpTSortBase& operator=(const TCExpTSortBase&) = delete;

  // Merges runs of length 1 into sorted runs of length 2, over n elements (n even).
  virtual void merge_seqlen1(T* src, T* dst, int n) = 0;
  // Merges the runs src[0 .. len1) and src[len1 .. total) into dst.
  virtual void merge_seq(T* src, T* dst, int len1, int total) = 0;
  // Writes n elements merged from `a` and `b`, neither of which runs out, and adds what was taken
  // from each.
  virtual void merge_rows_while(T* a, T* b, T* out, int n, int* taken_a, int* taken_b) = 0;
  virtual ~TCExpTSortBase() = default;

  // Sorts positions `from` to `to` - 1; -1 or a `to` beyond the table means its capacity. Nothing
  // happens when `to` is below `from` or `from` is negative.
  void sort(int from, int to);

  // Sorts positions `begin` to `end` - 1 of one row. 0 when the result lies in `spare`, else it
  // lies in `row`.
  int row_sort(T* row, T* spare, int begin, int end);

  // Merges sorted rows, from position `first_pos` of the first to before `last_pos` of the last.
  void merge_rows(int first_row, int first_pos, int last_row, int last_pos);

  TCExpndTable<T>* table;

 private:
  static constexpr int kRow = static_cast<int>(TCExpndTable<T>::kPageSize);
  void merge_run_pair(T** src, T** dst, int begin, int middle, int end);
};

// The merge primitives over a comparison `lower(a, b)`.
namespace orva {

template <typename T, typename Lower>
void merge_until_full(const T* a, const T* b, T* out, int n, int* taken_a, int* taken_b,
                      Lower lower) {
  const T* const a0 = a;
  const T* const b0 = b;
  for (int i = 0; i < n; ++i) out[i] = lower(*a, *b) ? *a++ : *b++;
  *taken_a += static_cast<int>(a - a0);
  *taken_b += static_cast<int>(b - b0);
}

template <typename T, typename Lower>
void merge_two_runs(const T* src, T* dst, int len1, int total, Lower lower) {
  int a = 0;
  int b = len1;
  while (a < len1 && b < total) *dst++ = lower(src[a], src[b]) ? src[a++] : src[b++];
  while (a < len1) *dst++ = src[a++];
  while (b < total) *dst++ = src[b++];
}

template <typename T, typename Lower>
void merge_pairs(const T* src, T* dst, int n, Lower lower) {
  for (int i = 0; i + 1 < n; i += 2) merge_two_runs(src + i, dst + i, 1, 2, lower);
}

}  // namespace orva

// Orders by a key inside the record: a signed 32-bit int or a float at `key_off`.
template <typename T>
class TCExpTSortImm : public TCExpTSortBase<T> {
 public:
  TCExpTSortImm(TCExpndTable<T>* t, int offset, int kind)
      : TCExpTSortBase<T>(t), key_off(offset), key_kind(kind) {}

  void merge_seqlen1(T* src, T* dst, int n) override {
    with_lower([&](auto lower) { orva::merge_pairs(src, dst, n, lower); });
  }
  void merge_seq(T* src, T* dst, int len1, int total) override {
    with_lower([&](auto lower) { orva::merge_two_runs(src, dst, len1, total, lower); });
  }
  void merge_rows_while(T* a, T* b, T* out, int n, int* taken_a, int* taken_b) override {
    with_lower([&](auto lower) { orva::merge_until_full(a, b, out, n, taken_a, taken_b, lower); });
  }

  int key_off;
  int key_kind;

 private:
  template <typename Key>
  static Key key_of(const T& record, int offset) {
    Key key;
    memcpy(&key, reinterpret_cast<const char*>(&record) + offset, sizeof key);
    return key;
  }
  template <typename Merge>
  void with_lower(Merge merge) const {
    const int at = key_off;
    if (key_kind == kFloatKey) {
      merge([at](const T& a, const T& b) { return key_of<float>(a, at) < key_of<float>(b, at); });
    } else {
      merge(
          [at](const T& a, const T& b) { return key_of<int32_t>(a, at) < key_of<int32_t>(b, at); });
    }
  }
};

// Orders by a comparison of two records.
template <typename T>
class TCExpTSort : public TCExpTSortBase<T> {
 public:
  using Lower = bool (*)(const T&, const T&);
  TCExpTSort(TCExpndTable<T>* t, Lower order) : TCExpTSortBase<T>(t), lower(order) {}

  void merge_seqlen1(T* src, T* dst, int n) override { orva::merge_pairs(src, dst, n, lower); }
  void merge_seq(T* src, T* dst, int len1, int total) override {
    orva::merge_two_runs(src, dst, len1, total, lower);
  }
  void merge_rows_while(T* a, T* b, T* out, int n, int* taken_a, int* taken_b) override {
    orva::merge_until_full(a, b, out, n, taken_a, taken_b, lower);
  }

  Lower lower;
};

#endif  // ORVA_LIB_TC_EXPT_SORT_H_
