// How readings of a text are made comparable: segments, characters, rewriting, priors.
#include "lib/detect/rewriting.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/detect/characters.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/focus.h"
#include "lib/detect/priors.h"

namespace {

const uint16_t* table(const char* name) {
  return orva::single_byte_table(orva::find_charset_index(name));
}

orva::Rewriting rewriting(const char* from, const char* home, const std::string& text) {
  return {table(from), home == nullptr ? nullptr : table(home), orva::ByteCounts({text}), false};
}

TEST(Focus, NormalisedTextIsWhatModelsWereTrainedOn) {
  EXPECT_EQ(orva::normalised("ab cc\t\n dddddd"), "ab cc\tddd");
}

TEST(Focus, NormalisedTextKeepsCapitalsAndThatThereWasANumber) {
  EXPECT_EQ(orva::normalised("AB127 c"), "AB0 c");
}

TEST(Focus, SegmentsHoldEveryTrigramWithAHighByteAndNoOther) {
  using Segments = std::vector<std::string>;
  EXPECT_EQ(orva::high_segments("plain"), Segments{});
  EXPECT_EQ(orva::high_segments("caf\xE9 noir"), Segments{"af\xE9 n"});
  EXPECT_EQ(orva::high_segments("\xE9t\xE9"), Segments{"\n\n\xE9t\xE9"});
  EXPECT_EQ(orva::high_segments("a\xE9 bcdefg \xE9"), (Segments{"\na\xE9 b", "g \xE9"}));
}

TEST(Focus, DigitsDoNotCountAsContext) {
  using Segments = std::vector<std::string>;
  EXPECT_EQ(orva::high_segments("abc0\xE9"
                                "0def"),
            Segments{"bc0\xE9"
                     "0de"});
}

TEST(Focus, ASampleIsCutBeforeTheHighByteThatIsTooMany) {
  EXPECT_EQ(orva::with_few_high("a\xE9z\xE9z", 1), "a\xE9z");
  EXPECT_EQ(orva::with_few_high("a\xE9z", 1), "a\xE9z");
}

TEST(Characters, CapitalsHaveTheirSmallLetters) {
  EXPECT_EQ(orva::small_letter(0xC9), 0xE9U);
  EXPECT_EQ(orva::small_letter(0xD7), 0xD7U);
  EXPECT_EQ(orva::small_letter(0x160), 0x161U);
  EXPECT_EQ(orva::small_letter(0x17D), 0x17EU);
  EXPECT_EQ(orva::small_letter(0x17E), 0x17EU);
  EXPECT_EQ(orva::small_letter(0x386), 0x3ACU);
  EXPECT_EQ(orva::small_letter(0x410), 0x430U);
  EXPECT_EQ(orva::small_letter(0x401), 0x451U);
  EXPECT_FALSE(orva::is_capital(0x451));
}

TEST(Rewriting, LettersMoveToTheHomeInTheirSmallForm) {
  EXPECT_EQ(rewriting("KOI8-R", "windows-1251", "\xF0\xD2").apply("\xF0\xD2"), "\xEF\xF0");
  EXPECT_EQ(rewriting("IBM850", nullptr, "\x82").apply("\x82"), "é");
}

TEST(Rewriting, SignsAreTakenOutAtAPrice) {
  const orva::Rewriting common = rewriting("windows-1252", "windows-1252", "\xA9");
  EXPECT_EQ(common.apply("\xA9"), " ");
  EXPECT_GT(common.sign_cost(), 0);
  EXPECT_EQ(common.odd(), 0U);
  EXPECT_EQ(rewriting("windows-1252", "windows-1252", "\xA4").odd(), 1U);
}

TEST(Rewriting, QuotationMarksAreBlanksAndApostrophesAreNot) {
  const std::string quoted =
      "\x91se\x92, l\x92"
      "eau";
  EXPECT_EQ(rewriting("windows-1252", "windows-1252", quoted).apply(quoted), " se , l'eau");
  const std::string dashed = "a \x97 b\x85 c";
  EXPECT_EQ(rewriting("windows-1252", "windows-1252", dashed).apply(dashed), "a b c");
}

TEST(Rewriting, RomanianLettersWithACommaGoAsThoseWithACedilla) {
  EXPECT_EQ(rewriting("ISO-8859-16", "ISO-8859-2", "\xBA\xFE").apply("\xBA\xFE"), "\xBA\xFE");
  EXPECT_EQ(rewriting("ISO-8859-16", "ISO-8859-2", "\xBA\xFE").missing(), 0U);
}

TEST(Rewriting, LettersThatTheHomeLacksAreCounted) {
  const orva::Rewriting r = rewriting("KOI8-R", "windows-1252", "\xD2\xD2");
  EXPECT_EQ(r.missing(), 2U);
  EXPECT_EQ(r.letters(), 2U);
}

TEST(Rewriting, VietnameseLettersAreTakenApartForTheirHome) {
  EXPECT_EQ(rewriting("VISCII", "windows-1258", "\xAA").apply("\xAA"), "\xEA\xEC");
}

TEST(Rewriting, WhatStandsInTheWrongPlaceCosts) {
  const auto cost = [](const char* from, const std::string& text) {
    return rewriting(from, nullptr, text).place_cost(text);
  };
  EXPECT_EQ(cost("windows-1252", "caf\xE9"), 0);
  EXPECT_GT(cost("windows-1252", "caf\xC9"), 0);  // a capital behind a small letter
  EXPECT_GT(cost("windows-1252",
                 "ca\xA9"
                 "fe"),
            0);  // a sign within a word
  EXPECT_EQ(cost("windows-1252", "ca \xA9 fe"), 0);
  EXPECT_GT(cost("windows-1251", "caf\xE9"), 0);  // two scripts in one word
  EXPECT_GT(cost("windows-1252", "CAF\xE9"), 0);  // a small letter behind capitals
  EXPECT_GT(cost("windows-1252",
                 "a \xE9"
                 "7"),
            0);  // a letter by itself at a digit
  EXPECT_EQ(cost("windows-1252",
                 "a b\xE9"
                 "7"),
            0);
}

TEST(Rewriting, SignsKeepToTheirSideOfWords) {
  const auto cost = [](const std::string& text) {
    return rewriting("windows-1252", nullptr, text).place_cost(text);
  };
  EXPECT_EQ(cost("(\xA9 me)"), 0);
  EXPECT_GT(cost("me\xA9"), 0);       // a copyright sign stands before a name
  EXPECT_EQ(cost("Orva\xAE is"), 0);  // and a trade mark behind it
  EXPECT_GT(cost("the \xAEOrva"), 0);
}

TEST(Rewriting, LinesOfTablesDoNotTouchLetters) {
  const auto cost = [](const std::string& text) {
    return rewriting("IBM850", nullptr, text).place_cost(text);
  };
  EXPECT_EQ(cost("\xB3 one \xB3"), 0);
  EXPECT_GT(cost("\xB3one \xB3"), 0);
}

TEST(Rewriting, QuotationMarksOpenAndClose) {
  const auto cost = [](const std::string& text) {
    const orva::Rewriting r = rewriting("windows-1252", nullptr, text);
    return r.sign_cost() + r.place_cost(text);
  };
  EXPECT_LT(cost("as \x91it\x92 is"), cost("as \x92it\x91 is"));
  EXPECT_LT(cost("as l\x92"
                 "it is"),
            cost("as \x92"
                 "it is"));
  EXPECT_LT(cost("\x93so\x94"), cost("\x93so\x93"));
}

TEST(Rewriting, LettersOfAScriptThatFormNoWordCost) {
  const auto cost = [](const std::string& text) {
    return rewriting("windows-1251", nullptr, text).lone_letters_cost({text});
  };
  EXPECT_GT(cost("a \xE9 b \xE8"), 0);
  EXPECT_EQ(cost("a \xE9\xE8 b"), 0);
  EXPECT_EQ(cost("plain"), 0);
}

TEST(Rewriting, MainframeSignsArePricedByWhatIsAroundThem) {
  const auto cost = [](const std::string& text) {
    orva::Conversion bytes;
    EXPECT_EQ(encode_text(*orva::find_charset("IBM037"), text, &bytes), orva::kConverted);
    const orva::Rewriting r(table("IBM037"), nullptr, orva::ByteCounts({bytes.bytes}), true);
    return r.sign_cost() + r.place_cost(bytes.bytes);
  };
  EXPECT_LT(cost("see [1] there"), cost("see ]1[ there"));
  EXPECT_LT(cost("stop! here"), cost("stop !here"));
  EXPECT_LT(cost("a | b"), cost("a| b"));
  EXPECT_LT(cost("a ^^ b"), cost("^ a b ^"));
}

double prior(const char* name) { return orva::prior_cost(orva::find_charset_index(name)); }

TEST(Priors, CharsetsOfTheWebComeFirst) {
  for (const char* other : {"IBM437", "IBM850", "macintosh", "IBM037", "hp-roman8", "Johab"}) {
    EXPECT_GT(prior(other), prior("windows-1252") + 5) << other;
  }
}

TEST(Priors, LanguagesThatAreMoreUsedCostLess) {
  EXPECT_LT(orva::language_prior("en"), orva::language_prior("de"));
  EXPECT_LT(orva::language_prior("de"), orva::language_prior("ca"));
  EXPECT_LT(orva::language_prior("ca"), orva::language_prior("br"));
}

TEST(Priors, LatinTextIsHardlyInACharsetOfAnotherScript) {
  EXPECT_GT(orva::mismatch_cost(orva::find_charset_index("IBM855"), "en"), 0);
  EXPECT_EQ(orva::mismatch_cost(orva::find_charset_index("IBM855"), "ru"), 0);
  EXPECT_EQ(orva::mismatch_cost(orva::find_charset_index("IBM850"), "en"), 0);
}

TEST(Priors, CharsetsMadeForALanguageHardlyHoldOthers) {
  const auto cost = [](const char* charset, const char* language) {
    return orva::mismatch_cost(orva::find_charset_index(charset), language);
  };
  EXPECT_EQ(cost("KOI8-T", "tg"), 0);
  EXPECT_GT(cost("KOI8-T", "ru"), 0);
  EXPECT_EQ(cost("IBM861", "is"), 0);
  EXPECT_GT(cost("IBM861", "de"), 0);
  EXPECT_EQ(cost("windows-1252", "de"), 0);
}

}  // namespace
