#include "lib/detect/confidence.h"

#include <gtest/gtest.h>

#include <cmath>

#include "lib/detect/confidence_table.h"

namespace orva {
namespace {

constexpr Ground kEvery[] = {Ground::kMark,      Ground::kEscapes, Ground::kAscii,
                             Ground::kUtf8,      Ground::kAlone,   Ground::kSingleByte,
                             Ground::kMultiByte, Ground::kWide};
static_assert(sizeof(kEvery) / sizeof(kEvery[0]) == kGrounds);

Grounds grounds(Ground ground, double margin, double length) {
  return {ground, margin, margin, length, length / 2};
}

TEST(Confidence, NeverFallsWhenTheNextAnswerIsFartherOff) {
  for (const Ground ground : kEvery) {
    double charset = 0;
    double language = 0;
    for (double margin = 0; margin < 1e6; margin = 2 * margin + 1) {
      const Grounds g = grounds(ground, margin, 300);
      EXPECT_GE(charset_confidence(g), charset) << static_cast<int>(ground) << ' ' << margin;
      EXPECT_GE(language_confidence(g), language) << static_cast<int>(ground) << ' ' << margin;
      charset = charset_confidence(g);
      language = language_confidence(g);
    }
  }
}

TEST(Confidence, NeverRisesWhenTheBestModelFitsWorse) {
  for (const Ground ground : kEvery) {
    double charset = 1;
    for (double misfit = 0; misfit < 20; misfit += 0.5) {
      Grounds g = grounds(ground, 100, 300);
      g.misfit = misfit;
      EXPECT_LE(charset_confidence(g), charset) << static_cast<int>(ground) << ' ' << misfit;
      charset = charset_confidence(g);
    }
  }
}

TEST(Confidence, StaysBetweenNoneAndCertainty) {
  for (const Ground ground : kEvery) {
    for (const double margin : {0.0, 1.0, 1e6}) {
      for (const double length : {1.0, 16.0, 32768.0}) {
        const Grounds g = grounds(ground, margin, length);
        for (const double p : {charset_confidence(g), language_confidence(g)}) {
          EXPECT_GT(p, 0) << static_cast<int>(ground) << ' ' << margin << ' ' << length;
          EXPECT_LT(p, 1) << static_cast<int>(ground) << ' ' << margin << ' ' << length;
        }
      }
    }
  }
}

// The C libraries' doubles differ in the last digit between widths, extended precision does not.
TEST(Confidence, IsThatOfExtendedPrecision) {
  for (int i = 0; i < 20000; ++i) {
    const size_t ground = static_cast<size_t>(i) % kGrounds;
    const Grounds g = grounds(kEvery[ground], 0.37 * i, 1.0 + 3 * i);
    const ConfidenceWeights& w = kCharsetWeights[ground];
    const long double score = w.constant + w.margin * log1pl(g.margin) +
                              w.shortness / (1 + g.length) + w.length * log1pl(g.length) +
                              w.high * log1pl(g.high);
    ASSERT_EQ(charset_confidence(g), static_cast<double>(1 / (1 + expl(-score)))) << i;
  }
}

TEST(Confidence, ATieBetweenSingleByteReadingsIsDoubtful) {
  EXPECT_LT(charset_confidence(grounds(Ground::kSingleByte, 0, 100)), 0.7);
  EXPECT_GT(charset_confidence(grounds(Ground::kSingleByte, 100, 100)), 0.95);
}

TEST(Confidence, AByteOrderMarkAndValidUtf8AreNearCertain) {
  EXPECT_GT(charset_confidence(grounds(Ground::kMark, 0, 100)), 0.98);
  EXPECT_GT(charset_confidence(grounds(Ground::kUtf8, 0, 100)), 0.98);
}

}  // namespace
}  // namespace orva
