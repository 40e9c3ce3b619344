// Costs out of sums of quantised values, in extended precision and rounded once.
#ifndef ORVA_LIB_EVAL_COSTS_H_
#define ORVA_LIB_EVAL_COSTS_H_

#include <cstddef>
#include <cstdint>
#include <span>

namespace orva {

// By model: what was there before, quantised values and how many they are, what these mean, and the
// bytes that nothing explains, of which there may be none for all. Values whose number is 0 count
// for nothing.
struct CostTerms {
  const float* before;
  const uint32_t* sums;
  const int* counts;
  const float* grads;
  const float* lpmins;
  const int* unexplained;  // or null
};

// Stores the costs of `n` models in `costs`, which may be terms.before.
using AddCosts = void (*)(const CostTerms& terms, size_t n, float* costs);

// Divides the costs of `n` models by a number of bytes.
using DivideCosts = void (*)(float* costs, size_t n, int total);

struct CostAdders {
  AddCosts add;
  DivideCosts divide;
};

// All that this machine can run, the plain ones first and the fastest last.
std::span<const CostAdders> cost_adders();

}  // namespace orva

#endif  // ORVA_LIB_EVAL_COSTS_H_
