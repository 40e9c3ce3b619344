#include "lib/detect/confidence.h"

#include <cmath>

#include "lib/detect/confidence_table.h"

namespace orva {

namespace {

double confidence(const ConfidenceWeights& weights, double margin, const Grounds& grounds) {
  const double score =
      weights.constant + weights.margin * std::log1p(margin) / (1 + grounds.misfit) +
      weights.shortness / (1 + grounds.length) + weights.length * std::log1p(grounds.length) +
      weights.high * std::log1p(grounds.high) + weights.misfit * grounds.misfit;
  return 1 / (1 + std::exp(-score));
}

}  // namespace

double charset_confidence(const Grounds& grounds) {
  return confidence(kCharsetWeights[static_cast<size_t>(grounds.ground)], grounds.margin, grounds);
}

double language_confidence(const Grounds& grounds) {
  return confidence(kLanguageWeights[static_cast<size_t>(grounds.ground)], grounds.language_margin,
                    grounds);
}

}  // namespace orva
