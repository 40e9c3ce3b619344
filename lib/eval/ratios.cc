// Confidence ratios: soft-max shares of a score against its competitors.
#include <cmath>
#include <vector>

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

float best_member(const CLidMGLang& lang, const float* scores, int g) {
  float lowest = kWorstMember;
  for (int k = 0; k < lang.member_counts[g]; ++k) {
    const float score = scores[lang.member_lists[g][k]];
    if (score < lowest) lowest = score;
  }
  return lowest;
}

float mean_member(const CLidMGLang& lang, const float* scores, int g) {
  float sum = 0;
  for (int k = 0; k < lang.member_counts[g]; ++k) sum += scores[lang.member_lists[g][k]];
  return sum / static_cast<float>(lang.member_counts[g]);
}

template <typename GroupScore>
float language_ratio(const CLidMGLang* lang, const float* scores, int k, GroupScore group_score) {
  if (k < 0 || k >= lang->nb_models) return kNoWinner;
  // Without labels there are no languages to sum over.
  if (lang->ready == 0) return HUGE_VALF;
  std::vector<float> values;
  for (int g = 0; g < lang->nb_groups; ++g) values.push_back(group_score(*lang, scores, g));
  const float reference = values[static_cast<size_t>(lang->model_group[k])];
  return soft_max(reference, values.data(), lang->nb_groups);
}

}  // namespace

// The sum is rounded to 24 bits, so that 53 bits of the exponential nearly always tell it.
float orva::add_exponential(float sum, float reference, float value) {
  // Both the argument, where it is small, and the function err by less than this share.
  constexpr long double kMostOff = 0x1p-45L;
  constexpr double kSmall = 64;
  const double x = static_cast<double>(reference) - static_cast<double>(value);
  if (std::fabs(x) < kSmall) {
    const long double term = exp(x);
    const auto low = static_cast<float>(sum + term * (1 - kMostOff));
    const auto high = static_cast<float>(sum + term * (1 + kMostOff));
    if (low == high) return low;
  }
  return static_cast<float>(sum + expl(static_cast<long double>(reference) - value));
}

float calcul_ratio_model(const CLidMGroup* group, const float* scores, int k) {
  if (k < 0 || k >= group->nb_models) return kNoWinner;
  return soft_max(scores[k], scores, group->nb_models);
}

float calcul_ratio_lng_max(const CLidMGLang* lang, const float* scores, int k) {
  return language_ratio(lang, scores, k, best_member);
}

float calcul_ratio_lng_avg(const CLidMGLang* lang, const float* scores, int k) {
  return language_ratio(lang, scores, k, mean_member);
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
