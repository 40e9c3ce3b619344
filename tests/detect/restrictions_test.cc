// Lists of charsets and languages, over the built-in models.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/orva.h"
#include "lib/detect/subset_check.h"

namespace {

constexpr char kChinese[] = "早上我们去河边钓鱼，可是水太冷了，谁也不想在那里待到中午。";
constexpr char kJapanese[] =
    "朝、川へ魚を釣りに行ったが、水がとても冷たくて、誰も昼までいたくなかった。";
constexpr char kKorean[] =
    "아침에 우리는 강으로 낚시를 갔지만 물이 너무 차가워서 아무도 점심까지 있고 싶지 않았다.";
constexpr char kThai[] = "ตอนเช้าเราไปตกปลาที่แม่น้ำ แต่น้ำเย็นมากจนไม่มีใครอยากอยู่ที่นั่นจนถึงเที่ยง";
constexpr char kFrench[] =
    "Le matin, nous sommes allés à la rivière pour pêcher, mais personne n'a voulu rester là. ";
constexpr char kPlain[] = "In the morning we went fishing, but nobody wanted to stay until noon.\n";

std::string in(const char* charset, const std::string& text) {
  orva::Conversion out;
  EXPECT_EQ(encode_text(*orva::find_charset(charset), text, &out), orva::kConverted) << charset;
  return out.bytes;
}

class Restrictions : public testing::Test {
 protected:
  void SetUp() override {
    if (orva_nb_languages(nullptr) == 0) GTEST_SKIP() << "built without models";
    detector_ = orva_new(nullptr);
    ASSERT_NE(detector_, nullptr);
  }
  void TearDown() override { orva_free(detector_); }

  int allow(const std::vector<const char*>& names) {
    return orva_allow_charsets(detector_, names.data(), static_cast<int>(names.size()));
  }
  int deny(const std::vector<const char*>& names) {
    return orva_deny_charsets(detector_, names.data(), static_cast<int>(names.size()));
  }
  std::string charset(const std::string& bytes) {
    EXPECT_EQ(orva_detect(detector_, bytes.data(), bytes.size(), &result_), ORVA_OK);
    EXPECT_TRUE(result_.probability >= 0 && result_.probability <= 1) << result_.probability;
    return result_.charset == nullptr ? "none" : result_.charset;
  }
  // The answer when only `name` is allowed.
  std::string only(const char* name, const std::string& bytes) {
    EXPECT_EQ(allow({name}), ORVA_OK) << name;
    return charset(bytes);
  }

  OrvaDetector* detector_ = nullptr;
  OrvaResult result_ = {};
};

TEST_F(Restrictions, APartOfACharsetIsFoundByItsNameWhereTheBytesAreOfThatPart) {
  const std::string old = in("GB2312", kChinese);
  const std::string wider = in("GBK", std::string(kChinese) + "鎔");
  const std::string widest = in("GB18030", std::string(kChinese) + "ɑ́Ǿ㐀");
  for (const char* name : {"GB2312", "gb2312", "EUC-CN", "csGB2312", "chinese"}) {
    EXPECT_EQ(only(name, old), name);
    EXPECT_STREQ(result_.language, "zh");
    EXPECT_EQ(only(name, wider), "none");
    EXPECT_EQ(only(name, widest), "none");
  }
  for (const char* name : {"GBK", "CP936", "windows-936"}) {
    EXPECT_EQ(only(name, old), name);
    EXPECT_EQ(only(name, wider), name);
    EXPECT_EQ(only(name, widest), "none");
  }
  for (const std::string& bytes : {old, wider, widest})
    EXPECT_EQ(only("gb18030", bytes), "gb18030");
}

TEST_F(Restrictions, APartOfACharsetIsNeverNamedUnasked) {
  const std::string old = in("GB2312", kChinese);
  EXPECT_EQ(charset(old), "GB18030");
  ASSERT_EQ(deny({"Big5"}), ORVA_OK);
  EXPECT_EQ(charset(old), "GB18030");
  ASSERT_EQ(allow({"GB18030", "GB2312"}), ORVA_OK);
  EXPECT_EQ(charset(old), "GB18030");
}

TEST_F(Restrictions, AnswersAreCalledWhatTheListCallsThem) {
  const struct {
    const char* name;
    std::string bytes;
  } cases[] = {{"windows-31J", in("Shift_JIS", kJapanese)},
               {"sjis", in("Shift_JIS", kJapanese)},
               {"cp932", in("Shift_JIS", kJapanese)},
               {"eucJP-ms", in("EUC-JP", kJapanese)},
               {"windows-949", in("EUC-KR", kKorean)},
               {"ks_c_5601-1987", in("EUC-KR", kKorean)},
               {"UHC", in("EUC-KR", kKorean)},
               {"EUC-KR", in("EUC-KR", kKorean)},
               {"Big5-HKSCS", in("Big5", "早上我們去河邊釣魚")},
               {"CP950", in("Big5", "早上我們去河邊釣魚")},
               {"TIS-620", in("TIS-620", kThai)},
               {"windows-874", in("TIS-620", kThai)},
               {"ISO-8859-11", in("TIS-620", kThai)},
               {"ISO-8859-1", in("windows-1252", kFrench)},
               {"latin1", in("windows-1252", kFrench)},
               {"windows-1252", in("ISO-8859-1", kFrench)},
               {"CP1252", in("ISO-8859-1", kFrench)},
               {"l9", in("ISO-8859-15", kFrench)},
               {"US-ASCII", kPlain},
               {"646", kPlain},
               {"latin1", kPlain},
               {"utf8", kPlain},
               {"Shift_JIS", kPlain},
               {"GB2312", kPlain},
               {"ISO-2022-JP", kPlain},
               {"hz", kPlain},
               {"utf8", kFrench},
               {"ucs-2le", in("UTF-16LE", kFrench)}};
  for (const auto& c : cases) EXPECT_EQ(only(c.name, c.bytes), c.name);
}

TEST_F(Restrictions, ACharsetThatCannotDecodeTheBytesIsNotNamedEvenWhenItIsTheOnlyOneAllowed) {
  EXPECT_EQ(only("US-ASCII", kFrench), "none");
  EXPECT_EQ(only("UTF-8", in("ISO-8859-1", kFrench)), "none");
  EXPECT_EQ(only("TIS-620", in("windows-874", std::string(kThai) + "“ก”")), "none");
  EXPECT_EQ(only("windows-31J", "\xFF\xFF"), "none");
  EXPECT_EQ(only("ISO-2022-JP", "\x1B(Z" + std::string(kPlain)), "none");
  EXPECT_EQ(only("hz", "~x"), "none");
}

TEST_F(Restrictions, ANameForBothByteOrdersAllowsBothAndNamesOnlyMarkedText) {
  const std::string mark_le = "\xFF\xFE";
  EXPECT_EQ(only("UTF-16", in("UTF-16LE", kFrench)), "UTF-16LE");
  EXPECT_EQ(only("UTF-16", in("UTF-16BE", kFrench)), "UTF-16BE");
  EXPECT_EQ(only("utf-16", mark_le + in("UTF-16LE", kFrench)), "utf-16");
  EXPECT_EQ(only("UTF-32", in("UTF-32BE", kFrench)), "UTF-32BE");
  ASSERT_EQ(allow({"UTF-16", "UTF-16LE"}), ORVA_OK);
  EXPECT_EQ(charset(mark_le + in("UTF-16LE", kFrench)), "UTF-16LE");
}

TEST_F(Restrictions, PlainTextKeepsItsLanguageWhereAnotherCharsetIsWanted) {
  EXPECT_EQ(only("latin1", kPlain), "latin1");
  EXPECT_STREQ(result_.language, "en");
}

TEST_F(Restrictions, TheFirstOfSeveralNamesForOneCharsetCounts) {
  ASSERT_EQ(allow({"cp932", "Shift_JIS"}), ORVA_OK);
  EXPECT_EQ(charset(in("Shift_JIS", kJapanese)), "cp932");
}

TEST_F(Restrictions, CandidatesBearTheNamesOfTheListToo) {
  ASSERT_EQ(allow({"cp1251", "koi8r"}), ORVA_OK);
  EXPECT_NE(charset("\xCB\xC1\xCB \xC4\xC5\xCC\xC1"), "none");
  ASSERT_EQ(result_.nb_candidates, 2);
  for (int i = 0; i < 2; ++i) {
    OrvaCandidate candidate;
    ASSERT_EQ(orva_candidate(detector_, i, &candidate), ORVA_OK);
    const std::string name = candidate.charset;
    EXPECT_TRUE(name == "cp1251" || name == "koi8r") << name;
  }
}

TEST_F(Restrictions, AnUnknownNameIsRefusedAndChangesNothing) {
  ASSERT_EQ(allow({"latin1"}), ORVA_OK);
  for (const char* name : {"latin-99", "", "-", "UTF", "gb", "ISO-8859-12"}) {
    EXPECT_EQ(allow({"UTF-8", name}), ORVA_UNKNOWN_CHARSET) << name;
  }
  EXPECT_EQ(allow({"UTF-8", nullptr}), ORVA_BAD_ARGUMENT);
  EXPECT_EQ(charset(kPlain), "latin1");
  ASSERT_EQ(allow({}), ORVA_OK);
  EXPECT_EQ(charset(kPlain), "US-ASCII");
}

TEST_F(Restrictions, ALanguageMayBeGivenAsPeopleWriteLanguages) {
  for (const char* name : {"fr", "FR", "fr-CA", "fr_FR.UTF-8"}) {
    ASSERT_EQ(orva_allow_languages(detector_, &name, 1), ORVA_OK) << name;
    EXPECT_EQ(charset(kPlain), "US-ASCII");
    EXPECT_STREQ(result_.language, "fr");
  }
  const char* const old_hebrew = "iw";
  EXPECT_EQ(orva_allow_languages(detector_, &old_hebrew, 1), ORVA_OK);
  for (const char* name : {"", "xx", "f", "french"}) {
    EXPECT_EQ(orva_allow_languages(detector_, &name, 1), ORVA_UNKNOWN_LANGUAGE) << name;
  }
}

TEST(SubsetCheck, PairsOfTheOldSetAreThoseThatTheCLibraryHas) {
  const orva::Charset& gb2312 = *orva::find_charset("GB2312");
  orva::Conversion probe;
  if (decode_bytes(gb2312, "\xB0\xA1", &probe) != orva::kConverted) GTEST_SKIP() << "no converter";
  for (int lead = 0x81; lead <= 0xFE; ++lead) {
    for (int trail = 0xA1; trail <= 0xFE; ++trail) {
      const char pair[] = {static_cast<char>(lead), static_cast<char>(trail)};
      orva::Conversion out;
      const bool good = decode_bytes(gb2312, {pair, 2}, &out) == orva::kConverted;
      EXPECT_EQ(
          orva::is_gb2312_pair(static_cast<unsigned char>(lead), static_cast<unsigned char>(trail)),
          good)
          << std::hex << lead << trail;
    }
  }
}

}  // namespace
