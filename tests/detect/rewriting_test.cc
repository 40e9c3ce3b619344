// How readings of a text are made comparable: segments, characters, rewriting, priors.
#include "lib/detect/rewriting.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/detect/alphabet.h"
#include "lib/detect/characters.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/focus.h"
#include "lib/detect/placement.h"
#include "lib/detect/priors.h"

namespace {

const orva::Alphabet& alphabet(const char* name) {
  return orva::alphabet_of(orva::find_charset_index(name));
}

// What `text`, in the charset `from`, is in `home`, UTF-8 when that is null.
struct Rewritten {
  std::string text;
  uint64_t missing;
};

Rewritten rewrite(const char* from, const char* home, const std::string& text) {
  const uint16_t* table =
      home == nullptr ? nullptr : orva::single_byte_table(orva::find_charset_index(home));
  const orva::HomeAlphabet homes(table);
  const orva::Rewriting rewriting(alphabet(from), homes);
  return {rewriting.apply(text), rewriting.missing(orva::ByteCounts({text}))};
}

orva::Placement placement(const char* charset, const std::string& text) {
  return {alphabet(charset), orva::ByteCounts({text})};
}

double cost(const char* charset, const std::string& text) {
  return placement(charset, text).cost(text, 0, text.size());
}

TEST(Focus, NormalisedTextIsWhatModelsWereTrainedOn) {
  EXPECT_EQ(orva::normalised("ab cc\t\n dddddd"), "ab cc\tddd");
}

TEST(Focus, NormalisedTextKeepsCapitalsAndThatThereWasANumber) {
  EXPECT_EQ(orva::normalised("AB127 c"), "AB0 c");
}

using Segments = std::vector<std::string>;

Segments high_segments(const std::string& text) {
  const std::string framed = std::string(orva::kFront) + text;
  std::vector<std::string_view> segments;
  orva::find_high_segments(framed, &segments);
  return {segments.begin(), segments.end()};
}

TEST(Focus, SegmentsHoldEveryTrigramWithAHighByteAndNoOther) {
  EXPECT_EQ(high_segments("plain"), Segments{});
  EXPECT_EQ(high_segments("caf\xE9 noir"), Segments{"af\xE9 n"});
  EXPECT_EQ(high_segments("\xE9t\xE9"), Segments{"\n\n\xE9t\xE9"});
  EXPECT_EQ(high_segments("a\xE9 bcdefg \xE9"), (Segments{"\na\xE9 b", "g \xE9"}));
}

TEST(Focus, DigitsDoNotCountAsContext) {
  EXPECT_EQ(high_segments("abc0\xE9"
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
  EXPECT_EQ(rewrite("KOI8-R", "windows-1251", "\xF0\xD2").text, "\xEF\xF0");
  EXPECT_EQ(rewrite("IBM850", nullptr, "\x82").text, "é");
}

TEST(Rewriting, SignsAreTakenOut) {
  EXPECT_EQ(rewrite("windows-1252", "windows-1252", "\xA9").text, " ");
}

TEST(Rewriting, QuotationMarksAreBlanksAndApostrophesAreNot) {
  const std::string quoted =
      "\x91se\x92, l\x92"
      "eau";
  EXPECT_EQ(rewrite("windows-1252", "windows-1252", quoted).text, " se , l'eau");
  const std::string dashed = "a \x97 b\x85 c";
  EXPECT_EQ(rewrite("windows-1252", "windows-1252", dashed).text, "a b c");
}

TEST(Rewriting, RomanianLettersWithACommaGoAsThoseWithACedilla) {
  EXPECT_EQ(rewrite("ISO-8859-16", "ISO-8859-2", "\xBA\xFE").text, "\xBA\xFE");
  EXPECT_EQ(rewrite("ISO-8859-16", "ISO-8859-2", "\xBA\xFE").missing, 0U);
}

TEST(Rewriting, LettersThatTheHomeLacksAreCounted) {
  EXPECT_EQ(rewrite("KOI8-R", "windows-1252", "\xD2\xD2").missing, 2U);
  EXPECT_EQ(placement("KOI8-R", "\xD2\xD2").letters(), 2U);
}

TEST(Rewriting, VietnameseLettersAreTakenApartForTheirHome) {
  EXPECT_EQ(rewrite("VISCII", "windows-1258", "\xAA").text, "\xEA\xEC");
}

TEST(Placement, SignsHaveAPrice) {
  EXPECT_GT(cost("windows-1252", "\xA9"), 0);
  EXPECT_EQ(placement("windows-1252", "\xA9").odd(), 0U);
  EXPECT_EQ(placement("windows-1252", "\xA4").odd(), 1U);
}

TEST(Placement, WhatStandsInTheWrongPlaceCosts) {
  EXPECT_EQ(cost("windows-1252", "caf\xE9"), 0);
  EXPECT_GT(cost("windows-1252", "caf\xC9"), 0);  // a capital behind a small letter
  EXPECT_GT(cost("windows-1252",
                 "ca\xA9"
                 "fe"),
            cost("windows-1252", "ca \xA9 fe"));  // a sign within a word
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

TEST(Placement, ATextCostsAsMuchAsItsPieces) {
  const std::string text =
      "caf\xC9 \xA9me, \x92so l\x92"
      "eau\xAE !\xE9"
      "7";
  const orva::Placement whole = placement("windows-1252", text);
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    EXPECT_DOUBLE_EQ(whole.cost(text, 0, cut) + whole.cost(text, cut, text.size()),
                     whole.cost(text, 0, text.size()))
        << cut;
  }
}

TEST(Placement, SignsKeepToTheirSideOfWords) {
  EXPECT_GT(cost("windows-1252", "me \xA9me"), 0);
  EXPECT_LT(cost("windows-1252", "(\xA9 me)"), cost("windows-1252", "me\xA9"));
  EXPECT_LT(cost("windows-1252", "Orva\xAE is"), cost("windows-1252", "the \xAEOrva"));
}

TEST(Placement, LinesOfTablesDoNotTouchLetters) {
  EXPECT_LT(cost("IBM850", "\xB3 one \xB3"), cost("IBM850", "\xB3one \xB3"));
}

TEST(Placement, QuotationMarksOpenAndClose) {
  const auto cost_of = [](const std::string& text) {
    return cost("windows-1252", text) + placement("windows-1252", text).whole_cost({text});
  };
  EXPECT_LT(cost_of("as \x91it\x92 is"), cost_of("as \x92it\x91 is"));
  EXPECT_LT(cost_of("as l\x92it is"), cost_of("as \x92it is"));
  EXPECT_LT(cost_of("\x93so\x94"), cost_of("\x93so\x93"));
}

TEST(Placement, LettersOfAScriptThatFormNoWordCost) {
  const auto cost_of = [](const std::string& text) {
    return placement("windows-1251", text).whole_cost({text});
  };
  EXPECT_GT(cost_of("a \xE9 b \xE8"), 0);
  EXPECT_EQ(cost_of("a \xE9\xE8 b"), 0);
  EXPECT_EQ(cost_of("plain"), 0);
}

TEST(Placement, MainframeSignsArePricedByWhatIsAroundThem) {
  const auto cost_of = [](const std::string& text) {
    orva::Conversion bytes;
    EXPECT_EQ(encode_text(*orva::find_charset("IBM037"), text, &bytes), orva::kConverted);
    return cost("IBM037", bytes.bytes);
  };
  EXPECT_LT(cost_of("see [1] there"), cost_of("see ]1[ there"));
  EXPECT_LT(cost_of("stop! here"), cost_of("stop !here"));
  EXPECT_LT(cost_of("a | b"), cost_of("a| b"));
  EXPECT_LT(cost_of("a ^^ b"), cost_of("^ a b ^"));
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
