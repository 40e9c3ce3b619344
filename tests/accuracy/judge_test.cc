#include "lib/accuracy/judge.h"

#include <gtest/gtest.h>

namespace orva {
namespace {

TEST(Judge, AnAliasIsTheSameName) {
  EXPECT_TRUE(judge({"cp1252"}, "abc", "windows-1252").same_name);
  EXPECT_FALSE(judge({"cp1252"}, "abc", "ISO-8859-1").same_name);
  EXPECT_TRUE(judge({"cp1252", "latin1"}, "abc", "ISO-8859-1").same_name);
}

TEST(Judge, AnotherCharsetIsRightWhenItReadsTheSame) {
  const Judgement same = judge({"windows-1252"}, "caf\xE9", "ISO-8859-1");
  EXPECT_TRUE(same.same_text);
  EXPECT_FALSE(same.same_name);
  EXPECT_FALSE(judge({"windows-1252"}, "caf\xE9 \x80", "ISO-8859-1").same_text);
  EXPECT_FALSE(judge({"windows-1252"}, "caf\xE9", "windows-1251").same_text);
}

TEST(Judge, NoAnswerIsNeverRight) {
  const Judgement none = judge({"US-ASCII"}, "abc", "");
  EXPECT_FALSE(none.same_name);
  EXPECT_FALSE(none.same_text);
}

TEST(Judge, ABrokenCharacterIsPassedOverInBoth) {
  const char broken[] = "caf\xC3\xA9 \xFF caf\xC3\xA9";
  EXPECT_TRUE(judge({"UTF-8"}, broken, "UTF-8").same_text);
  EXPECT_FALSE(judge({"UTF-8"}, broken, "windows-1252").same_text);
  // But what reads less than the label does is wrong.
  EXPECT_FALSE(judge({"windows-1252"}, broken, "UTF-8").same_text);
}

TEST(Judge, ALabelWithoutByteOrderTakesTheOneOfTheMark) {
  const std::string_view big("\xFE\xFF\0a\0b", 6);
  const std::string_view little("a\0b\0", 4);
  EXPECT_TRUE(judge({"UTF-16"}, big, "UTF-16BE").same_text);
  EXPECT_FALSE(judge({"UTF-16"}, big, "UTF-16LE").same_text);
  EXPECT_TRUE(judge({"UTF-16"}, little, "UTF-16LE").same_name);
}

TEST(Judge, EastAsianLabelsAreReadAsTheirSupersets) {
  // The middle dot, which the old table and the new one decode to different signs.
  EXPECT_TRUE(judge({"GB2312"}, "\xC4\xE3\xA1\xA4\xBA\xC3", "GB18030").same_text);
  EXPECT_FALSE(judge({"GB2312"}, "\xC4\xE3\xA1\xA4\xBA\xC3", "Big5").same_text);
}

TEST(Judge, CharsetsOfTheLibraryMayBeLabels) {
  EXPECT_TRUE(is_known_label("hp-roman8"));
  EXPECT_TRUE(is_known_label("UTF-16"));
  EXPECT_FALSE(is_known_label("no-such-charset"));
  EXPECT_FALSE(is_known_label(""));
  EXPECT_TRUE(judge({"hp-roman8"}, "plain", "US-ASCII").same_text);
}

TEST(Window, BeginsALittleBeforeTheFirstCharacterOutsideAscii) {
  const std::string text = std::string(100, 'x') + "caf\xE9" + std::string(100, 'y');
  const std::string window = window_of("ISO-8859-1", text, 16);
  EXPECT_EQ(window, "xcaf\xE9yyyyyyyyyyy");
}

TEST(Window, IsCutBetweenCharactersOfTheCharset) {
  std::string wide;
  for (int i = 0; i < 40; ++i) wide += std::string_view("\x04\x30\0 ", 4);
  const std::string window = window_of("UTF-16BE", wide, 8);
  EXPECT_EQ(window, wide.substr(0, 8));
}

TEST(Window, IsWrittenAnewWithItsEscapeSequences) {
  const std::string text = std::string(50, 'x') + "\x1B$B$3$l$O\x1B(B" + std::string(50, 'y');
  EXPECT_EQ(window_of("ISO-2022-JP", text, 12), "xxx\x1B$B$3$l$O");
}

TEST(Window, IsEmptyWhenTheLabelCannotReadTheDocument) {
  EXPECT_EQ(window_of("UTF-8", "caf\xE9!", 4), "");
}

TEST(PlainLanguage, HasTwoLettersWithoutRegionOrForm) {
  EXPECT_EQ(plain_language("pt-BR"), "pt");
  EXPECT_EQ(plain_language("zh_Hant"), "zh");
  EXPECT_EQ(plain_language("nb"), "no");
  EXPECT_EQ(plain_language("NN"), "no");
  EXPECT_EQ(plain_language("iw"), "he");
  EXPECT_EQ(plain_language(""), "");
}

}  // namespace
}  // namespace orva
