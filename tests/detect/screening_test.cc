// What letters cost by how often they occur, and that no text is misread because of it.
#include "lib/detect/screening.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "lib/detect/builtin_models.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/detector.h"
#include "lib/detect/homes.h"

namespace orva {
namespace {

constexpr char kRussian[] =
    "Утром мы пошли на реку ловить рыбу, но вода была такой холодной, что никто не захотел "
    "остаться, и к обеду все вернулись домой пить чай.";
constexpr char kVietnamese[] =
    "Sáng nay chúng tôi ra bờ sông câu cá, nhưng nước lạnh quá nên không ai muốn ở lại lâu. "
    "Buổi chiều mọi người về nhà uống trà và kể chuyện cho trẻ con nghe.";
constexpr char kTurkish[] =
    "Sabah erkenden balık tutmak için ırmağa gittik, ama su çok soğuktu ve kimse uzun süre "
    "kalmak istemedi. Öğleden sonra eve dönüp çay içtik, çocuklara masallar anlattık.";
constexpr char kPolish[] =
    "Rano poszliśmy nad rzekę łowić ryby, ale woda była tak zimna, że nikt nie chciał zostać "
    "dłużej. Później jedliśmy świeży chleb, piliśmy gorącą herbatę i słuchaliśmy śpiewu ptaków.";

std::string in(const char* charset, const std::string& text) {
  Conversion out;
  EXPECT_EQ(encode_text(*find_charset(charset), text, &out), kConverted) << charset;
  return out.bytes;
}

class ScreeningTest : public testing::Test {
 protected:
  void SetUp() override {
    tables_ = builtin_models();
    if (tables_ == nullptr) GTEST_SKIP() << "no models are built in";
  }

  double cost(const std::string& bytes, const char* charset) {
    screening_.start({bytes}, tables_->homes().letters());
    return screening_.cost(find_charset_index(charset));
  }

  LetterCost letter(const char* charset, unsigned char byte) const {
    return tables_->homes().letters().of(find_charset_index(charset), byte);
  }

  // What a detector answers.
  std::string answer(const std::string& bytes) const {
    Detector detector(tables_);
    detector.feed(bytes);
    const Decision& decision = detector.finish();
    if (decision.candidates.empty()) return "";
    return kCharsets[decision.candidates.front().charset].iana;
  }

  std::shared_ptr<const ModelTables> tables_;
  Screening screening_;
};

TEST_F(ScreeningTest, FrequentLettersCostLessThanSeldomOnes) {
  EXPECT_LT(letter("KOI8-R", 0xCF).alone, letter("KOI8-R", 0xC6).alone);              // o, f
  EXPECT_LT(letter("windows-1252", 0xE9).alone, letter("windows-1252", 0xFF).alone);  // e', y"
  // Capitals cost what small letters do.
  EXPECT_EQ(letter("windows-1251", 0xEE).alone, letter("windows-1251", 0xCE).alone);
}

TEST_F(ScreeningTest, LettersCostMoreWhereTheyHardlyStand) {
  EXPECT_GT(letter("windows-1252", 0xC9).within, 0);  // a capital behind a small letter
  EXPECT_EQ(letter("windows-1252", 0xE9).within, 0);
  EXPECT_GT(letter("windows-1251", 0xE9).beside, 0);  // another script
  EXPECT_EQ(letter("windows-1252", 0xE9).beside, 0);
  EXPECT_GT(letter("windows-1252", 0xB1).between, 0);  // a sign within a word
  EXPECT_LT(cost("\xC9t\xC9", "windows-1252"), cost("t\xC9t\xC9", "windows-1252"));
}

TEST_F(ScreeningTest, TheRightReadingCostsLessThanOneOfOtherLetters) {
  const std::string koi8 = in("KOI8-R", kRussian);
  const double right = cost(koi8, "KOI8-R");
  for (const char* wrong : {"windows-1251", "ISO-8859-5", "ISO-8859-7"}) {
    EXPECT_GT(cost(koi8, wrong), right) << wrong;
  }
  EXPECT_GT(cost(koi8, "windows-1252"), right + screening_.margin());
}

TEST_F(ScreeningTest, AByteThatComesAgainAndAgainCountsAFewTimes) {
  const double some = cost(std::string(8, '\xE9'), "windows-1252");
  EXPECT_EQ(cost(std::string(100, '\xE9'), "windows-1252"), some);
  EXPECT_EQ(screening_.seen(), 100U);
}

TEST_F(ScreeningTest, ALongTextIsLookedAtInPart) {
  std::string varied;
  for (int i = 0; i < 5000; ++i) varied.push_back(static_cast<char>(0x80 + i % 128));
  screening_.start({varied, varied}, tables_->homes().letters());
  EXPECT_EQ(screening_.seen(), Screening::kMostSeen);
}

TEST_F(ScreeningTest, VectorsAddUpWhatPlainLoopsDo) {
  const std::string texts[] = {in("KOI8-R", kRussian), in("VISCII", kVietnamese), "a\xE9z \xFF",
                               ""};
  Screening plain(Screening::plain_adder());
  for (const std::string& text : texts) {
    plain.start({text}, tables_->homes().letters());
    for (const char* charset : {"ISO-8859-1", "windows-1252", "KOI8-R", "VISCII", "IBM866"}) {
      EXPECT_EQ(cost(text, charset), plain.cost(find_charset_index(charset))) << charset;
    }
  }
}

TEST_F(ScreeningTest, ItMayBeginAgain) {
  const double first = cost(in("KOI8-R", kRussian), "KOI8-R");
  cost(in("VISCII", kVietnamese), "VISCII");
  EXPECT_EQ(cost(in("KOI8-R", kRussian), "KOI8-R"), first);
}

// Signs and letters that others have more of make these look like other charsets.
TEST_F(ScreeningTest, TextsWhoseLettersMisleadAreReadRight) {
  for (const char* charset : {"VISCII", "TCVN", "windows-1258"}) {
    EXPECT_EQ(answer(in(charset, kVietnamese)), charset);
  }
  for (const char* charset : {"IBM857", "x-mac-turkish"}) {
    EXPECT_EQ(answer(in(charset, kTurkish)), charset);
  }
  for (const char* charset : {"IBM852", "x-mac-ce"}) {
    EXPECT_EQ(answer(in(charset, kPolish)), charset);
  }
  EXPECT_EQ(answer(in("IBM866", kRussian)), "IBM866");
  EXPECT_EQ(answer(in("IBM855", kRussian)), "IBM855");
}

}  // namespace
}  // namespace orva
