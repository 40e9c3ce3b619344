#include "lib/util/text.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/streams.h"

using orva::Ended;
using orva::run_to_end;

namespace {

// The tokens of a line.
std::vector<std::string> tokens(std::string line) {
  std::array<char*, 16> table = {};
  const int count = quick_tokenize(line.data(), table.data());
  std::vector<std::string> result;
  for (int i = 0; i < count; ++i) result.emplace_back(table[static_cast<size_t>(i)]);
  return result;
}

int find(const char* s, int count) {
  static char un[] = "un";
  static char deux[] = "deux";
  char* table[] = {un, deux, un};
  return find_string(s, table, count);
}

}  // namespace

TEST(Printff, PrintsToStandardOutputAndFlushesIt) {
  const Ended ended = run_to_end([] {
    printff("%s %d\n", "modele", 3);
    _exit(7);  // without another flush
  });
  EXPECT_EQ(ended.status, 7);
  EXPECT_EQ(ended.out, "modele 3\n");
  EXPECT_EQ(ended.err, "");
}

TEST(ErrPrintf, PrintsToStandardError) {
  const Ended ended = run_to_end([] { err_printf("%s %d\n", "modele", 3); });
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, "modele 3\n");
}

TEST(OsdSprintf, FormatsIntoTheDestinationAndReturnsIt) {
  char text[32];
  EXPECT_EQ(osd_sprintf(text, "%s-%03d", "fr", 7), text);
  EXPECT_STREQ(text, "fr-007");
}

TEST(OsdPwrite, EndsTheProcessWithStatusZero) {
  const Ended ended = run_to_end([] { osd_pwrite(); });
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, "** PWrite: Pas implante sous OS courant\n");
  EXPECT_EQ(ended.err, "");
}

TEST(StrTime, HoursTakeTwoPlacesAndEverythingElseLeadingZeros) {
  EXPECT_STREQ(str_time(3723456), " 1:02:03.456");
  EXPECT_STREQ(str_time(12 * 3600000 + 34 * 60000 + 56789), "12:34:56.789");
  EXPECT_STREQ(str_time(3600000), " 1:00:00.000");
}

TEST(StrTime, WithoutHoursItBeginsWithTheMinutes) {
  EXPECT_STREQ(str_time(65000), "01:05.000");
  EXPECT_STREQ(str_time(59 * 60000 + 59999), "59:59.999");
}

TEST(StrTime, WithoutMinutesSecondsHaveNoLeadingZero) {
  EXPECT_STREQ(str_time(5250), "5.250");
  EXPECT_STREQ(str_time(59999), "59.999");
  EXPECT_STREQ(str_time(0), "0.000");
  EXPECT_STREQ(str_time(7), "0.007");
}

TEST(StrTime, TheNextCallOverwritesTheBuffer) {
  char* const first = str_time(5250);
  EXPECT_EQ(str_time(65000), first);
  EXPECT_STREQ(first, "01:05.000");
}

TEST(StrTime, TheLongestTimeFitsItsBuffer) { EXPECT_STREQ(str_time(INT_MAX), "596:31:23.647"); }

TEST(FindString, IsTheFirstEqualEntry) {
  EXPECT_EQ(find("un", 3), 0);
  EXPECT_EQ(find("deux", 3), 1);
}

TEST(FindString, IsMinusOneWhereNoneIsEqual) {
  EXPECT_EQ(find("trois", 3), -1);
  EXPECT_EQ(find("deux", 1), -1);
  EXPECT_EQ(find("deu", 3), -1);
}

TEST(FindString, ACountOfZeroHoldsNothing) { EXPECT_EQ(find("un", 0), -1); }

TEST(FindString, ANegativeCountAnswersZero) {
  EXPECT_EQ(find("trois", -3), 0);
  EXPECT_EQ(find_string("un", nullptr, -1), 0);
}

TEST(QuickTokenize, CutsAtSpaceTabAndNewline) {
  EXPECT_EQ(tokens("un deux\ttrois\n"), (std::vector<std::string>{"un", "deux", "trois"}));
}

TEST(QuickTokenize, RunsOfBlanksCountOnce) {
  EXPECT_EQ(tokens(" \t\nun \t \n deux  "), (std::vector<std::string>{"un", "deux"}));
}

TEST(QuickTokenize, ALineWithoutTokensGivesNone) {
  EXPECT_TRUE(tokens("").empty());
  EXPECT_TRUE(tokens(" \t\n").empty());
}

TEST(QuickTokenize, ACarriageReturnBelongsToItsToken) {
  EXPECT_EQ(tokens("un\r\n"), (std::vector<std::string>{"un\r"}));
}

TEST(ScanInt, StoresTheValueAndReturnsTheTextAfterItsBlanks) {
  char text[] = " -12 \t rest";
  int value = 0;
  EXPECT_EQ(scan_int(text, &value), text + 7);
  EXPECT_EQ(value, -12);
}

TEST(ScanInt, AtTheEndItStoresMinusOneAndReturnsNull) {
  char text[] = "  ";
  int value = 5;
  EXPECT_EQ(scan_int(text, &value), nullptr);
  EXPECT_EQ(value, -1);
}

TEST(ScanInt, TextThatIsNoNumberGivesNull) {
  char text[] = "abc";
  int value = 5;
  EXPECT_EQ(scan_int(text, &value), nullptr);
  EXPECT_EQ(value, 5);
}

TEST(ScanInt, AValueAtTheVeryEndReturnsTheTerminator) {
  char text[] = "12";
  int value = 0;
  EXPECT_EQ(scan_int(text, &value), text + 2);
  EXPECT_EQ(value, 12);
}

TEST(ScanInt, ANumberBeyondTheRangeIsTheNearestOneOnEveryWidth) {
  char large[] = "4294967297";
  char small[] = "-99999999999999999999";
  int value = 0;
  EXPECT_EQ(scan_int(large, &value), large + 10);
  EXPECT_EQ(value, INT_MAX);
  EXPECT_EQ(scan_int(small, &value), small + 21);
  EXPECT_EQ(value, INT_MIN);
}

TEST(ScanStr, StoresAWordAndReturnsTheTextAfterItsBlanks) {
  char text[] = " frUTF-8  14";
  char word[16];
  EXPECT_EQ(scan_str(text, word), text + 10);
  EXPECT_STREQ(word, "frUTF-8");
}

TEST(ScanStr, AtTheEndItStoresAnEmptyStringAndReturnsNull) {
  char text[] = " ";
  char word[] = "abc";
  EXPECT_EQ(scan_str(text, word), nullptr);
  EXPECT_STREQ(word, "");
}

TEST(ScanFloat, StoresTheValueAndReturnsTheTextAfterItsBlanks) {
  char text[] = "0.25 9";
  float value = 0;
  EXPECT_EQ(scan_float(text, &value), text + 5);
  EXPECT_EQ(value, 0.25F);
}

TEST(ScanFloat, AtTheEndItStoresZeroAndReturnsNull) {
  char text[] = "";
  float value = 5;
  EXPECT_EQ(scan_float(text, &value), nullptr);
  EXPECT_EQ(value, 0.0F);
}

TEST(ScanFloat, TextThatIsNoNumberGivesNull) {
  char text[] = "abc";
  float value = 5;
  EXPECT_EQ(scan_float(text, &value), nullptr);
  EXPECT_EQ(value, 5.0F);
}

TEST(TableRevertBytes, ReversesTheBytesOfEachWord) {
  alignas(4) unsigned char bytes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  table_revert_bytes(reinterpret_cast<uint32_t*>(bytes), 2);
  const unsigned char expected[] = {4, 3, 2, 1, 8, 7, 6, 5, 9, 10, 11, 12};
  EXPECT_EQ(memcmp(bytes, expected, sizeof bytes), 0);
}

TEST(TableRevertBytes, NoWordsAreLeftAlone) { table_revert_bytes(nullptr, 0); }
