#include "lib/detect/confidence.h"

#include <cmath>

#include "lib/detect/confidence_table.h"

namespace orva {

namespace {

long double log_of_more(double value) { return std::log1p(static_cast<long double>(value)); }

// Extended precision, so that the last digit does not depend on the width of the machine.
double confidence(const ConfidenceWeights& weights, double margin, const Grounds& grounds) {
  const long double score =
      weights.constant + weights.margin * log_of_more(margin) / (1 + grounds.misfit) +
      weights.shortness / (1 + grounds.length) + weights.length * log_of_more(grounds.length) +
      weights.high * log_of_more(grounds.high) + weights.misfit * grounds.misfit;
  return static_cast<double>(1 / (1 + std::exp(-score)));
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
