// Whether probabilities come true on documents that nothing here was fitted on. The folder that
// ORVA_EVAL names holds them; without it there is nothing to measure.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "lib/accuracy/manifest.h"
#include "lib/accuracy/tally.h"
#include "lib/detect/builtin_models.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/detector.h"
#include "tests/support/temp_dir.h"

namespace orva {
namespace {

constexpr double kMostError = 0.03;

// Every `step`-th document of the folder, in the pieces that `column` gives.
Tally measured(const std::string& folder, const std::string& column, size_t step) {
  std::vector<LabelledDocument> documents;
  std::string error;
  EXPECT_TRUE(read_manifest(bytes_of(folder + "/manifest.tsv"), column, &documents, &error))
      << error;
  Detector detector(builtin_models());
  Tally tally;
  for (size_t i = 0; i < documents.size(); i += step) {
    const LabelledDocument& document = documents[i];
    std::string bytes = bytes_of(folder + "/" + document.path);
    EXPECT_TRUE(cut_piece(document, &bytes)) << document.path;
    detector.reset();
    detector.feed(bytes);
    const Decision& decision = detector.finish();
    Outcome outcome;
    outcome.charset = document.charsets.front();
    if (!decision.candidates.empty()) {
      outcome.answered_charset = kCharsets[decision.candidates.front().charset].iana;
      outcome.probability = decision.candidates.front().probability;
      outcome.judgement = judge(document.charsets, bytes, outcome.answered_charset);
    }
    tally.add(outcome);
  }
  return tally;
}

class Calibration : public testing::TestWithParam<std::pair<const char*, size_t>> {};

TEST_P(Calibration, ProbabilitiesComeTrue) {
  const char* folder = std::getenv("ORVA_EVAL");
  if (folder == nullptr) GTEST_SKIP() << "ORVA_EVAL is not set";
  const auto [column, step] = GetParam();
  const Tally tally = measured(folder, column, step);
  ASSERT_GE(tally.all().documents, 100U);
  EXPECT_LE(tally.calibration_error(), kMostError);
  // Nothing but doubt would be true as well; what answers say must tell them apart.
  EXPECT_GT(tally.bins().back().answers, tally.all().documents * 3 / 4);
}

TEST(CalibrationOfNoText, BytesAtRandomAreNeverConfidentText) {
  Detector detector(builtin_models());
  std::mt19937 random(7);
  for (const size_t length : {16U, 64U, 256U, 1024U, 4096U, 65536U}) {
    for (int round = 0; round < 5; ++round) {
      std::string bytes;
      // Without controls, which would tell.
      while (bytes.size() < length) bytes.push_back(static_cast<char>(32 + random() % 224));
      detector.reset();
      detector.feed(bytes);
      const Decision& decision = detector.finish();
      if (decision.candidates.empty()) continue;
      EXPECT_LT(decision.candidates.front().probability, 0.5)
          << length << ' ' << kCharsets[decision.candidates.front().charset].iana;
    }
  }
}

TEST(CalibrationOfAscii, AnAnswerHasAProbabilityWhereAsciiIsNotAllowed) {
  Detector detector(builtin_models());
  Restrictions allowed;
  allowed.charsets.assign(static_cast<size_t>(kCharsetCount), 0);
  for (const char* charset : {"windows-1252", "windows-1251"}) {
    allowed.charsets[static_cast<size_t>(find_charset_index(charset))] = 1;
    detector.restrict(allowed);
    detector.reset();
    detector.feed("The ferry leaves at nine and is back by noon.");
    const Decision& decision = detector.finish();
    ASSERT_FALSE(decision.candidates.empty());
    for (const Candidate& candidate : decision.candidates) {
      EXPECT_GE(candidate.probability, 0) << charset;
      EXPECT_LE(candidate.probability, 1) << charset;
      EXPECT_LT(candidate.cost, kNoCost) << charset;
    }
  }
}

TEST(CalibrationOfOneCharset, IsLikelyOnlyWhereItFits) {
  const auto probability = [](const char* allowed, const char* utf8) {
    Detector detector(builtin_models());
    Restrictions one;
    one.charsets.assign(static_cast<size_t>(kCharsetCount), 0);
    one.charsets[static_cast<size_t>(find_charset_index(allowed))] = 1;
    detector.restrict(one);
    Conversion bytes;
    encode_text(*find_charset("KOI8-R"), utf8, &bytes);
    detector.feed(bytes.bytes);
    const Decision& decision = detector.finish();
    return decision.candidates.empty() ? 0 : decision.candidates.front().probability;
  };
  const char text[] = "Паром уходит в девять часов утра и к полудню возвращается с почтой.";
  EXPECT_GT(probability("KOI8-R", text), 0.9);
  EXPECT_LT(probability("windows-1252", text), 0.5);
}

INSTANTIATE_TEST_SUITE_P(Evaluation, Calibration,
                         testing::Values(std::make_pair("full", size_t{4}),
                                         std::make_pair("w64", size_t{1})),
                         [](const auto& info) { return std::string(info.param.first); });

}  // namespace
}  // namespace orva
