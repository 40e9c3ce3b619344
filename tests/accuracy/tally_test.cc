#include "lib/accuracy/tally.h"

#include <gtest/gtest.h>

namespace orva {
namespace {

Outcome outcome(const char* charset, const char* answer, bool right, double probability = 1) {
  Outcome o;
  o.charset = charset;
  o.answered_charset = answer;
  o.judgement = {std::string(charset) == answer, right};
  o.probability = probability;
  return o;
}

Outcome in_language(const char* language, const char* answer) {
  Outcome o = outcome("UTF-8", "UTF-8", true);
  o.language = language;
  o.answered_language = answer;
  return o;
}

TEST(Tally, CountsByCharsetTheMostDocumentsFirst) {
  Tally tally;
  tally.add(outcome("A", "A", true));
  tally.add(outcome("B", "C", true));
  tally.add(outcome("B", "A", false));
  const auto rows = tally.by_charset();
  ASSERT_EQ(rows.size(), 2U);
  const auto& [name, counts] = rows[0];
  EXPECT_EQ(name, "B");
  EXPECT_EQ(counts.documents, 2U);
  EXPECT_EQ(counts.same_text, 1U);
  EXPECT_EQ(counts.same_name, 0U);
  EXPECT_EQ(tally.all().same_text, 2U);
  EXPECT_EQ(tally.all().same_name, 1U);
}

TEST(Tally, UnknownLanguagesDoNotCount) {
  Tally tally;
  tally.add(in_language("", "de"));
  tally.add(in_language("nl", "de"));
  tally.add(in_language("nl", "nl"));
  EXPECT_EQ(tally.all().with_language, 2U);
  EXPECT_EQ(tally.all().right_language, 1U);
  ASSERT_EQ(tally.by_language().size(), 1U);
  ASSERT_EQ(tally.language_confusions().size(), 1U);
  EXPECT_EQ(tally.language_confusions()[0].answer, "de");
}

TEST(Tally, ListsTheCommonestConfusionFirst) {
  Tally tally;
  for (const char* answer : {"X", "Y", "Y", ""}) tally.add(outcome("A", answer, false));
  const std::vector<Confusion> confusions = tally.charset_confusions();
  ASSERT_EQ(confusions.size(), 3U);
  EXPECT_EQ(confusions[0].answer, "Y");
  EXPECT_EQ(confusions[0].documents, 2U);
  EXPECT_EQ(tally.unanswered(), 1U);
}

TEST(Tally, CalibrationErrorIsTheMeanDistanceOfTheBins) {
  Tally tally;
  // Of four answers with probability 0.75 three are right: no error. One more says 0.25 and is
  // right.
  for (const bool right : {true, true, true, false}) tally.add(outcome("A", "B", right, 0.75));
  EXPECT_DOUBLE_EQ(tally.calibration_error(), 0);
  tally.add(outcome("A", "B", true, 0.25));
  EXPECT_DOUBLE_EQ(tally.calibration_error(), 0.75 / 5);
  EXPECT_EQ(tally.bins()[7].answers, 4U);
  EXPECT_EQ(tally.bins()[2].right, 1U);
}

TEST(Tally, CertainAnswersFallIntoTheLastBinAndMissingOnesIntoNone) {
  Tally tally;
  tally.add(outcome("A", "A", true, 1));
  tally.add(outcome("A", "", false, 0));
  EXPECT_EQ(tally.bins()[9].answers, 1U);
  EXPECT_EQ(tally.bins()[0].answers, 0U);
}

TEST(Tally, AnEmptyOneHasNoError) { EXPECT_EQ(Tally().calibration_error(), 0); }

}  // namespace
}  // namespace orva
