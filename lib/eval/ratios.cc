// Confidence ratios: soft-max shares of a score against its competitors.
#include <algorithm>
#include <cmath>

#include "lib/eval/lid_mgroup_eval.h"

namespace {

constexpr float kNoWinner = -1.0F;
// Scores at or above these never win: among all models, and within a language.
constexpr float kWorstScore = 10000000.0F;
constexpr float kWorstMember = 1000000.0F;

// 1 over the sum of e^(reference - value) over all values.
float soft_max(float reference, const float* values, int n) {
  float sum = 0;
  for (int i = 0; i < n; ++i) sum = orva::add_exponential(sum, reference, values[i]);
  return 1.0F / sum;
}

// Values of the languages, from those of their models.
using Values = float[CLidMGGrouping::kMaxModels];

void best_members(const CLidMGLang& lang, const float* scores, Values values) {
  std::fill_n(values, lang.nb_groups, kWorstMember);
  for (int m = 0; m < lang.nb_models; ++m) {
    float& lowest = values[lang.model_group[m]];
    lowest = scores[m] < lowest ? scores[m] : lowest;
  }
}

void mean_members(const CLidMGLang& lang, const float* scores, Values values) {
  for (int g = 0; g < lang.nb_groups; ++g) {
    float sum = 0;
    for (int k = 0; k < lang.member_counts[g]; ++k) sum += scores[lang.member_lists[g][k]];
    values[g] = sum / static_cast<float>(lang.member_counts[g]);
  }
}

template <typename ValuesOf>
float language_ratio(const CLidMGLang* lang, const float* scores, int k, ValuesOf values_of) {
  if (k < 0 || k >= lang->nb_models) return kNoWinner;
  // Without labels there are no languages to sum over.
  if (lang->ready == 0) return HUGE_VALF;
  Values values;
  values_of(*lang, scores, values);
  return soft_max(values[lang->model_group[k]], values, lang->nb_groups);
}

}  // namespace

// The sum is rounded to 24 bits, so that 53 bits of the exponential nearly always tell it.
float orva::add_exponential(float sum, float reference, float value) {
  // The argument, where it is small, the function and the sum err by less than this share.
  constexpr double kMostOff = 0x1p-44;
  constexpr double kSmall = 64;
  const double x = static_cast<double>(reference) - static_cast<double>(value);
  if (std::fabs(x) < kSmall) {
    const double total = static_cast<double>(sum) + exp(x);
    const auto low = static_cast<float>(total * (1 - kMostOff));
    const auto high = static_cast<float>(total * (1 + kMostOff));
    if (low == high) return low;
  }
  return static_cast<float>(sum + expl(static_cast<long double>(reference) - value));
}

float calcul_ratio_model(const CLidMGroup* group, const float* scores, int k) {
  if (k < 0 || k >= group->nb_models) return kNoWinner;
  return soft_max(scores[k], scores, group->nb_models);
}

float calcul_ratio_lng_max(const CLidMGLang* lang, const float* scores, int k) {
  return language_ratio(lang, scores, k, best_members);
}

float calcul_ratio_lng_avg(const CLidMGLang* lang, const float* scores, int k) {
  return language_ratio(lang, scores, k, mean_members);
}

float CLidMGroupEval::calcul_ratio(const float* scores, int* best) const {
  if (scores == nullptr) return kNoWinner;
  float lowest = kWorstScore;
  int winner = -1;
  for (int m = 0; m < nb_models_; ++m) {
    if (scores[m] < lowest) {
      lowest = scores[m];
      winner = m;
    }
  }
  *best = winner;
  return calcul_ratio_lng_max(languages_, scores, winner);
}
