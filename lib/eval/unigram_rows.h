// UnigramRows: the unigram costs of a group, by byte and model.
//
// A byte costs every model that knows it its unigram cost, once for each time it occurs less those
// that trigrams of the model or of its fact set cover.
//
// Life cycle: build once; clear before each text.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_UNIGRAM_ROWS_H_
#define ORVA_LIB_EVAL_UNIGRAM_ROWS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/eval/lanes.h"
#include "lib/eval/lid_mg_ev_ulp_acs.h"

namespace orva {

class UnigramRows {
 public:
  // `fact_of[m]` is the accumulator index of the fact set of model m, or m itself without one; the
  // entries of byte b are first[b], ..., first[b][count[b] - 1]. False when they name a model twice
  // or with another set, as those of built groups do not.
  bool build(const std::vector<int>& fact_of, const UlpEntry* const* first, const int* count);
  // Ways to add that this machine can run, the plain one first, and the fastest, which is taken
  // unless another is to be used, last.
  static size_t nb_adders() { return adders().size(); }
  void use_adder(size_t number) { add_ = adders()[number]; }

  // Adds, by model, what `count` occurrences of a byte cost, of which covered[m] are covered for
  // model m. REQUIRES: covered[m] <= count, or count == 0: this byte's others come in another call.
  void add(int byte, uint32_t count, const uint16_t* covered);

  // What was added since clear.
  const LaneSums& sums();
  void clear();

 private:
  // Costs are added up with their numbers in the same words of 32 bits, the number in the upper 12
  // and the sum in the lower 20, as long as no more than kMostCounted are.
  static constexpr unsigned kCountShift = 20;
  static constexpr uint32_t kSumMask = (1U << kCountShift) - 1;
  static constexpr uint32_t kMostCounted = 4095;
  static_assert(kMostCounted * 255 <= kSumMask);
  struct Value {
    uint8_t cost;
    uint8_t there;  // kThere, or 0 without a value
  };
  // The number's lowest bit, once both bytes are words of 16 bits.
  static constexpr uint8_t kThere = 1U << (kCountShift - 16);
  struct alignas(64) Row {
    Value models[kLanes] = {};
  };
  using Add = void (*)(const Row& row, uint32_t count, const uint16_t* covered, size_t nb_models,
                       uint32_t* sums);

  template <typename Bytes, typename Shorts, typename Words, typename Longs>
  static void add_row(const Row& row, uint32_t count, const uint16_t* covered, size_t nb_models,
                      uint32_t* sums);
  static void add_plain(const Row& row, uint32_t count, const uint16_t* covered, size_t nb_models,
                        uint32_t* sums);
  static void add_avx2(const Row& row, uint32_t count, const uint16_t* covered, size_t nb_models,
                       uint32_t* sums);
  static void add_avx512(const Row& row, uint32_t count, const uint16_t* covered, size_t nb_models,
                         uint32_t* sums);
  static std::vector<Add> adders();
  void drain();

  std::vector<Row> rows_;
  Add add_ = adders().back();
  size_t nb_models_ = 0;
  LaneSums sums_;
  // Not yet in sums_, with their counts in the same words; at most kMostCounted occurrences.
  alignas(64) uint32_t added_[kLanes] = {};
  uint32_t nb_added_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_UNIGRAM_ROWS_H_
