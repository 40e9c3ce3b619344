// Which languages a charset or a text can be in, by their letters.
#include "lib/detect/scripts.h"

#include <gtest/gtest.h>

#include "lib/detect/charset_table.h"

namespace {

bool writes(const char* charset, const char* language) {
  return orva::can_write(orva::find_charset_index(charset), orva::script_of_language(language));
}

TEST(Scripts, ALanguageIsNotReadInACharsetWithoutItsLetters) {
  EXPECT_TRUE(writes("windows-1251", "ru"));
  EXPECT_TRUE(writes("windows-1251", "en"));
  EXPECT_FALSE(writes("windows-1252", "ru"));
  EXPECT_FALSE(writes("IBM437", "el"));  // a few Greek letters for formulas
  EXPECT_TRUE(writes("Shift_JIS", "ja"));
  EXPECT_FALSE(writes("Shift_JIS", "ru"));
  EXPECT_FALSE(writes("EUC-KR", "zh"));
  EXPECT_TRUE(writes("UTF-8", "ka"));
}

TEST(Scripts, LanguagesOfAUsersOwnModelsAreReadInAnyCharset) {
  EXPECT_TRUE(writes("windows-1252", "x1"));
  EXPECT_TRUE(writes("windows-1251", ""));
}

TEST(Scripts, AForeignWordDoesNotMakeItsLanguagePossible) {
  orva::ScriptCounts counts;
  for (int i = 0; i < 99; ++i) counts.add('a');
  counts.add(0x3B1);
  EXPECT_TRUE(counts.can_be(orva::kLatin));
  EXPECT_FALSE(counts.can_be(orva::kGreek));
  EXPECT_TRUE(counts.can_be(orva::kAnyScript));
  for (int i = 0; i < 10; ++i) counts.add(0x3B1);
  EXPECT_TRUE(counts.can_be(orva::kGreek));
}

TEST(Scripts, ChineseCharactersMayBeJapanese) {
  orva::ScriptCounts counts;
  counts.add(0x4E00);
  EXPECT_TRUE(counts.can_be(orva::kChinese));
  EXPECT_TRUE(counts.can_be(orva::kJapanese));
  EXPECT_FALSE(counts.can_be(orva::kKorean));
}

TEST(Scripts, ALetterOfAScriptIsMissedUnlessItIsLatin) {
  orva::ScriptCounts counts;
  counts.add(0x3B1);
  EXPECT_TRUE(counts.has(orva::kGreek));
  EXPECT_FALSE(counts.has(orva::kHebrew));
  EXPECT_TRUE(counts.has(orva::kLatin));
  EXPECT_TRUE(counts.has(orva::kAnyScript));
}

}  // namespace
