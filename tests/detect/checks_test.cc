// What the bytes alone say: multi-byte checks, escape sequences, Unicode forms, evidence and
// sample.
#include <gtest/gtest.h>

#include <string>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/evidence.h"
#include "lib/detect/sample.h"

namespace {

using orva::MultiByteCheck;
using orva::MultiByteKind;

std::string in(const char* charset, const std::string& text) {
  orva::Conversion out;
  const orva::ConvertResult result = encode_text(*orva::find_charset(charset), text, &out);
  EXPECT_EQ(result, orva::kConverted) << charset;
  return out.bytes;
}

bool valid(MultiByteKind kind, const std::string& bytes) {
  MultiByteCheck check(kind);
  check.feed(bytes);
  return check.valid();
}

struct Sentence {
  MultiByteKind kind;
  const char* text;
};

constexpr Sentence kSentences[] = {
    {MultiByteKind::kUtf8, "Grüße, 世界, мир"},    {MultiByteKind::kShiftJis, "カタカナと漢字 abc"},
    {MultiByteKind::kEucJp, "カタカナと漢字 abc"}, {MultiByteKind::kGb18030, "简体中文 é 和 abc"},
    {MultiByteKind::kBig5, "繁體中文與 abc"},      {MultiByteKind::kEucTw, "繁體中文與 abc"},
    {MultiByteKind::kEucKr, "한국어 글자 abc"},    {MultiByteKind::kJohab, "한국어 글자 abc"}};

TEST(MultiByteChecks, TextOfTheCharsetIsValidHoweverItIsCut) {
  for (const Sentence& s : kSentences) {
    const std::string bytes = in(multi_byte_name(s.kind), s.text);
    for (size_t cut = 0; cut <= bytes.size(); ++cut) {
      MultiByteCheck check(s.kind);
      check.feed(std::string_view(bytes).substr(0, cut));
      EXPECT_TRUE(check.valid()) << multi_byte_name(s.kind) << " cut at " << cut;
      check.feed(std::string_view(bytes).substr(cut));
      EXPECT_TRUE(check.valid()) << multi_byte_name(s.kind) << " cut at " << cut;
      EXPECT_GT(check.wide(), 0U);
    }
    MultiByteCheck single(s.kind);
    for (const char c : bytes) single.feed(std::string_view(&c, 1));
    EXPECT_TRUE(single.valid()) << multi_byte_name(s.kind);
  }
}

TEST(MultiByteChecks, TheFirstBadByteIsNamedHoweverTheTextIsCut) {
  for (const Sentence& s : kSentences) {
    const std::string good = in(multi_byte_name(s.kind), s.text);
    const std::string bytes = good + "\xFF\xFF" + good;
    for (size_t cut = 0; cut <= bytes.size(); ++cut) {
      MultiByteCheck check(s.kind);
      check.feed(std::string_view(bytes).substr(0, cut));
      check.feed(std::string_view(bytes).substr(cut));
      EXPECT_FALSE(check.valid()) << multi_byte_name(s.kind);
      EXPECT_EQ(check.first_bad(), good.size()) << multi_byte_name(s.kind);
    }
  }
}

TEST(MultiByteChecks, UnassignedPairsAreBad) {
  EXPECT_FALSE(valid(MultiByteKind::kShiftJis, "\x85\x40"));
  EXPECT_FALSE(valid(MultiByteKind::kEucJp, "\xA9\xA1"));
  EXPECT_FALSE(valid(MultiByteKind::kEucKr, "\xC9\xA1"));
  EXPECT_FALSE(valid(MultiByteKind::kGb18030, "\x81\x30\x81\x20"));
}

TEST(MultiByteChecks, VendorRowsThatDocumentsUseAreGood) {
  EXPECT_TRUE(valid(MultiByteKind::kShiftJis, "\x87\x40"));
  EXPECT_TRUE(valid(MultiByteKind::kEucJp, "\xAD\xA1"));
  EXPECT_TRUE(valid(MultiByteKind::kGb18030, "\x81\x30\x81\x30"));
}

std::string escapes(const std::string& bytes) {
  orva::EscapeCheck check;
  check.feed(bytes);
  return check.charset() == nullptr ? "" : check.charset();
}

TEST(Escapes, EachSevenBitCharsetIsToldByItsShifts) {
  EXPECT_EQ(escapes(in("ISO-2022-JP", "日本語 text")), "ISO-2022-JP");
  EXPECT_EQ(escapes(in("ISO-2022-KR", "한국어 text")), "ISO-2022-KR");
  EXPECT_EQ(escapes(in("ISO-2022-CN", "中文 text")), "ISO-2022-CN");
  EXPECT_EQ(escapes(in("HZ-GB-2312", "中文 text")), "HZ-GB-2312");
}

TEST(Escapes, PlainTextAndStrayTildesAreNone) {
  EXPECT_EQ(escapes("plain ~ text, ~/home and a~b"), "");
  EXPECT_EQ(escapes("~{not pairs~}"), "");
  EXPECT_EQ(escapes("\x1B[31mred\x1B[0m"), "");
}

TEST(Escapes, AByteAbove7FRulesThemOut) {
  EXPECT_EQ(escapes(in("ISO-2022-JP", "日本語") + "\xE9"), "");
}

TEST(Escapes, ASequenceCutAtTheEndIsNoError) {
  const std::string whole = in("ISO-2022-JP", "日本語");
  for (size_t cut = 5; cut < whole.size(); ++cut) {
    EXPECT_EQ(escapes(whole.substr(0, cut)), "ISO-2022-JP") << cut;
  }
}

double unicode_cost(int width, bool big, const std::string& bytes) {
  orva::UnicodeCheck check(width, big);
  check.feed(bytes);
  return check.valid() ? check.cost() : 1000;
}

TEST(Unicode, TheRightByteOrderCostsLess) {
  for (const char* text :
       {"Hello world", "Привет, мир", "こんにちは世界", "你好世界", "안녕하세요"}) {
    const std::string little = in("UTF-16LE", text);
    EXPECT_LT(unicode_cost(2, false, little), unicode_cost(2, true, little)) << text;
    EXPECT_LT(unicode_cost(2, false, little), 10) << text;
    EXPECT_EQ(unicode_cost(4, true, in("UTF-32LE", text)), 1000) << text;
  }
}

TEST(Unicode, LoneSurrogatesAndNulsAreNoText) {
  EXPECT_EQ(unicode_cost(2, true, std::string("\xD8\x00\x00\x41", 4)), 1000);
  EXPECT_EQ(unicode_cost(2, true, std::string("\x00\x41\x00\x00", 4)), 1000);
  EXPECT_EQ(unicode_cost(4, true, std::string("\x00\x11\x00\x00", 4)), 1000);
}

orva::Evidence evidence(const std::string& bytes) {
  orva::Evidence out;
  out.feed(bytes);
  return out;
}

TEST(Evidence, LongerMarksGoBeforeTheirBeginnings) {
  EXPECT_STREQ(evidence(std::string("\xFF\xFE\0\0A\0\0\0", 8)).mark(), "UTF-32LE");
  EXPECT_STREQ(evidence(std::string("\xFF\xFE"
                                    "A\0",
                                    4))
                   .mark(),
               "UTF-16LE");
  EXPECT_STREQ(evidence("\xEF\xBB\xBF"
                        "a")
                   .mark(),
               "UTF-8");
  EXPECT_EQ(evidence("\xEF\xBB").mark(), nullptr);
}

TEST(Evidence, AMarkMayArriveAByteAtATime) {
  orva::Evidence out;
  for (const char c : std::string("\xEF\xBB\xBFz")) out.feed(std::string_view(&c, 1));
  EXPECT_STREQ(out.mark(), "UTF-8");
  EXPECT_EQ(out.mark_length(), 3U);
}

TEST(Evidence, CharsetsThatLeaveAByteOpenDoNotDecodeIt) {
  const orva::Evidence e = evidence("caf\xE9 \x81");
  EXPECT_FALSE(e.decodes(orva::find_charset_index("windows-1252"), true));
  EXPECT_TRUE(e.decodes(orva::find_charset_index("IBM850"), false));
  EXPECT_FALSE(e.decodes(orva::find_charset_index("US-ASCII"), true));
}

TEST(Evidence, ControlsAreNotDecodedUnlessAskedFor) {
  const orva::Evidence e = evidence("a\x99z");
  EXPECT_FALSE(e.decodes(orva::find_charset_index("ISO-8859-1"), false));
  EXPECT_TRUE(e.decodes(orva::find_charset_index("ISO-8859-1"), true));
  EXPECT_TRUE(e.decodes(orva::find_charset_index("windows-1252"), false));
}

TEST(Evidence, LinesOfAMainframesTextMayEndAsElsewhere) {
  EXPECT_TRUE(evidence("\xC1\xC2\n\xC3").decodes(orva::find_charset_index("IBM037"), false));
}

TEST(Evidence, SignaturesTellBinaryFiles) {
  EXPECT_TRUE(evidence("\x7F"
                       "ELF\x02\x01")
                  .has_binary_signature());
  EXPECT_FALSE(evidence("ELF").has_binary_signature());
}

TEST(Samples, KeepTheBeginningAndLaterLinesWithHighBytes) {
  orva::Sample sample;
  const std::string head(orva::Sample::kHead, 'x');
  sample.feed(head);
  sample.feed("plain\nna\xEFve\nplain\n");
  EXPECT_EQ(sample.text(), head + "na\xEFve\n");
}

TEST(Samples, DoNotDependOnHowTheDocumentWasCut) {
  std::string document(orva::Sample::kHead - 3, 'x');
  for (int i = 0; i < 4000; ++i) document += i % 3 == 0 ? "caf\xE9 au lait\n" : "plain line\n";
  orva::Sample whole;
  whole.feed(document);
  orva::Sample pieces;
  for (size_t i = 0; i < document.size(); i += 7) {
    pieces.feed(std::string_view(document).substr(i, 7));
  }
  EXPECT_EQ(whole.text(), pieces.text());
  EXPECT_LE(whole.text().size(), orva::Sample::kLimit + 2 * orva::Sample::kLongestLine);
}

TEST(Markup, TagsGoAndOtherAngleBracketsStay) {
  EXPECT_EQ(orva::without_markup("<p>word</p>"), "word");
  EXPECT_EQ(orva::without_markup("a < b > c"), "a < b > c");
  EXPECT_EQ(orva::without_markup("a  \t b<!-- x -->c"), "a bc");
  EXPECT_EQ(orva::without_markup("open <tag"), "open <tag");
}

}  // namespace
