// The C interface, over the group of the test vectors.
#include "lib/detect/orva.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/model_tables.h"
#include "lib/eval/lid_mgroup_eval.h"
#include "tests/reference/scorer.h"

extern "C" int orva_c99_use(void);

namespace {

std::string vectors() {
  const char* folder = getenv("ORVA_VECTORS");
  return folder == nullptr ? "" : folder;
}

std::string file(const std::string& name) {
  std::ifstream in(vectors() + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string in(const char* charset, const std::string& text) {
  orva::Conversion out;
  EXPECT_EQ(encode_text(*orva::find_charset(charset), text, &out), orva::kConverted) << charset;
  return out.bytes;
}

constexpr char kRussian[] =
    "Утром мы пошли на реку ловить рыбу, но вода была такой холодной, что никто не захотел "
    "остаться там до обеда. ";
constexpr char kGreek[] =
    "Το πρωί πήγαμε στο ποτάμι για ψάρεμα, αλλά το νερό ήταν τόσο κρύο που κανείς δεν ήθελε να "
    "μείνει εκεί. ";
constexpr char kFrench[] =
    "Le matin, nous sommes allés à la rivière pour pêcher, mais l'eau était si froide que personne "
    "n'a voulu rester là jusqu'au déjeuner. ";

class OrvaTest : public testing::Test {
 protected:
  void SetUp() override {
    if (vectors().empty()) GTEST_SKIP() << "ORVA_VECTORS names no folder";
    models_ = orva_open_models((vectors() + "/group.grp").c_str(),
                               (vectors() + "/Model.stc").c_str(), nullptr);
    ASSERT_NE(models_, nullptr);
    detector_ = orva_new(models_);
    ASSERT_NE(detector_, nullptr);
  }
  void TearDown() override {
    orva_free(detector_);
    orva_close_models(models_);
  }

  OrvaResult detect(const std::string& bytes) {
    OrvaResult result;
    EXPECT_EQ(orva_detect(detector_, bytes.data(), bytes.size(), &result), ORVA_OK);
    return result;
  }
  std::string charset(const std::string& bytes) {
    const OrvaResult result = detect(bytes);
    return result.charset == nullptr ? "none" : result.charset;
  }
  std::string language(const std::string& bytes) {
    const OrvaResult result = detect(bytes);
    return result.language == nullptr ? "none" : result.language;
  }

  OrvaModels* models_ = nullptr;
  OrvaDetector* detector_ = nullptr;
};

TEST_F(OrvaTest, ALanguageIsReadInEveryCharsetThatHoldsIt) {
  for (const char* name : {"windows-1251", "KOI8-R", "ISO-8859-5", "IBM866", "IBM855",
                           "x-mac-cyrillic", "UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE"}) {
    EXPECT_EQ(charset(in(name, kRussian)), name);
    EXPECT_EQ(language(in(name, kRussian)), "ru") << name;
  }
}

TEST_F(OrvaTest, SiblingsAreToldApartByTheBytesThatDiffer) {
  const std::string accented = std::string("Άννα! ") + kGreek;
  EXPECT_EQ(charset(in("ISO-8859-7", accented)), "ISO-8859-7");
  EXPECT_EQ(charset(in("windows-1253", accented)), "windows-1253");
  EXPECT_EQ(charset(in("windows-1252", std::string(kFrench) + "“là”")), "windows-1252");
}

TEST_F(OrvaTest, AByteOrderMarkDecides) {
  const OrvaResult result = detect("\xEF\xBB\xBF" + std::string(kFrench));
  EXPECT_STREQ(result.charset, "UTF-8");
  EXPECT_EQ(result.has_bom, 1);
  EXPECT_STREQ(result.language, "fr");
}

TEST_F(OrvaTest, AMarkBeforeBytesThatItsCharsetCannotDecodeDecidesNothing) {
  EXPECT_NE(charset("\xEF\xBB\xBF" + in("ISO-8859-1", kFrench)), "UTF-8");
}

TEST_F(OrvaTest, AsciiIsAscii) {
  const OrvaResult result = detect("The morning was cold, and nobody wanted to go fishing.");
  EXPECT_STREQ(result.charset, "US-ASCII");
  EXPECT_EQ(result.kind, ORVA_KIND_TEXT);
}

TEST_F(OrvaTest, AWordOfUtf16IsNoBinaryFile) {
  EXPECT_EQ(charset(in("UTF-16LE", "Подсветка")), "UTF-16LE");
  EXPECT_EQ(charset(in("UTF-16BE", "καταθέτεις")), "UTF-16BE");
}

TEST_F(OrvaTest, OneValidSequenceMakesUtf8) {
  EXPECT_EQ(charset("a word: caf\xC3\xA9"), "UTF-8");
  EXPECT_EQ(charset("a word cut: caf\xC3\xA9 na\xC3"), "UTF-8");
}

TEST_F(OrvaTest, EmptyAndBinaryDocumentsHaveNoCharset) {
  EXPECT_EQ(detect("").kind, ORVA_KIND_EMPTY);
  EXPECT_EQ(detect("").charset, nullptr);
  const OrvaResult image = detect(std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0", 24));
  EXPECT_EQ(image.kind, ORVA_KIND_BINARY);
  EXPECT_EQ(image.charset, nullptr);
}

TEST_F(OrvaTest, DigitsAndBlanksHaveNoLanguage) {
  EXPECT_EQ(language("12 345 67\n89 0\n"), "none");
  EXPECT_EQ(charset("12 345 67\n89 0\n"), "US-ASCII");
}

TEST_F(OrvaTest, NoCandidateFailsToDecodeTheBytes) {
  const std::string bytes = in("windows-1251", kRussian);
  const OrvaResult result = detect(bytes);
  ASSERT_GT(result.nb_candidates, 1);
  for (int i = 0; i < result.nb_candidates; ++i) {
    OrvaCandidate candidate;
    ASSERT_EQ(orva_candidate(detector_, i, &candidate), ORVA_OK);
    orva::Conversion out;
    EXPECT_EQ(decode_bytes(*orva::find_charset(candidate.charset), bytes, &out), orva::kConverted)
        << candidate.charset;
  }
}

TEST_F(OrvaTest, CandidatesAreRankedAndTheirProbabilitiesAddUpToNoMoreThanOne) {
  const OrvaResult result = detect(in("KOI8-R", kRussian));
  double sum = 0;
  double last = -1e300;
  double probability = 1;
  for (int i = 0; i < result.nb_candidates; ++i) {
    OrvaCandidate candidate;
    ASSERT_EQ(orva_candidate(detector_, i, &candidate), ORVA_OK);
    EXPECT_GE(candidate.cost, last);
    EXPECT_LE(candidate.probability, probability);
    last = candidate.cost;
    probability = candidate.probability;
    sum += candidate.probability;
  }
  EXPECT_LE(sum, 1 + 1e-9);
  EXPECT_GT(sum, 0.5);
  OrvaCandidate beyond;
  EXPECT_EQ(orva_candidate(detector_, result.nb_candidates, &beyond), ORVA_BAD_ARGUMENT);
}

TEST_F(OrvaTest, TheAnswerDoesNotDependOnTheCuts) {
  const std::string bytes = in("Shift_JIS", "朝、川へ魚を釣りに行ったが、水がとても冷たかった。");
  const OrvaResult whole = detect(bytes);
  for (const size_t size : {size_t{1}, size_t{3}, size_t{7}}) {
    orva_reset(detector_);
    for (size_t i = 0; i < bytes.size(); i += size) {
      orva_feed(detector_, bytes.data() + i, std::min(size, bytes.size() - i));
    }
    OrvaResult pieces;
    ASSERT_EQ(orva_finish(detector_, &pieces), ORVA_OK);
    EXPECT_STREQ(pieces.charset, whole.charset);
    EXPECT_EQ(pieces.probability, whole.probability);
    EXPECT_EQ(pieces.bytes_read, whole.bytes_read);
  }
}

TEST_F(OrvaTest, NoMoreThanTheLimitIsRead) {
  ASSERT_EQ(orva_set_limit(detector_, 100), ORVA_OK);
  const std::string bytes = in("windows-1251", kRussian) + std::string(100, 'x');
  orva_reset(detector_);
  EXPECT_EQ(orva_feed(detector_, bytes.data(), bytes.size()), ORVA_ENOUGH);
  OrvaResult result;
  ASSERT_EQ(orva_finish(detector_, &result), ORVA_OK);
  EXPECT_EQ(result.bytes_read, 100U);
}

TEST_F(OrvaTest, ListsRestrictTheAnswer) {
  const std::string bytes = in("windows-1251", kRussian);
  const char* const denied[] = {"windows-1251"};
  ASSERT_EQ(orva_deny_charsets(detector_, denied, 1), ORVA_OK);
  EXPECT_NE(charset(bytes), "windows-1251");
  ASSERT_EQ(orva_deny_charsets(detector_, nullptr, 0), ORVA_OK);
  EXPECT_EQ(charset(bytes), "windows-1251");
  const char* const allowed[] = {"latin1", "cp1252"};
  ASSERT_EQ(orva_allow_charsets(detector_, allowed, 2), ORVA_OK);
  EXPECT_TRUE(charset(bytes) == "latin1" || charset(bytes) == "cp1252");
  const char* const unknown[] = {"nonsense"};
  EXPECT_EQ(orva_allow_charsets(detector_, unknown, 1), ORVA_UNKNOWN_CHARSET);
  EXPECT_EQ(orva_allow_languages(detector_, unknown, 1), ORVA_UNKNOWN_LANGUAGE);
}

TEST_F(OrvaTest, AGivenLanguageIsTheOneNamed) {
  const char* const german[] = {"de"};
  ASSERT_EQ(orva_allow_languages(detector_, german, 1), ORVA_OK);
  EXPECT_EQ(language(kFrench), "de");
}

TEST_F(OrvaTest, ManyThreadsShareTheModels) {
  const std::string bytes = in("windows-1251", kRussian);
  const double expected = detect(bytes).probability;
  std::vector<std::thread> threads;
  std::vector<double> probabilities(4, -1);
  for (size_t t = 0; t < probabilities.size(); ++t) {
    threads.emplace_back([&, t] {
      OrvaDetector* own = orva_new(models_);
      OrvaResult result;
      for (int i = 0; i < 20; ++i) orva_detect(own, bytes.data(), bytes.size(), &result);
      probabilities[t] = result.probability;
      orva_free(own);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const double p : probabilities) EXPECT_EQ(p, expected);
}

TEST_F(OrvaTest, ScoresAreThoseOfTheAutomatonWalk) {
  std::string why;
  const auto tables =
      orva::ModelTables::load_files(vectors() + "/group.grp", vectors() + "/Model.stc", &why);
  ASSERT_NE(tables, nullptr) << why;
  CLidMGroup group;
  ASSERT_EQ(group.load((vectors() + "/group.grp").c_str()), 0);
  CLidMGroupEval walk(&group);
  orva::Scorer scorer(*tables);
  for (const char* name :
       {"frISO-8859-1.txt", "ruKOI8-R.txt", "jaShift_JIS.txt", "thTIS-620.txt"}) {
    std::string text;
    // Neither side's normalisation has anything left to do on such text.
    for (const char c : file(std::string("docs/") + name)) {
      const bool digit = c >= '0' && c <= '9';
      const bool run = text.size() >= 3 && text.compare(text.size() - 3, 3, std::string(3, c)) == 0;
      if (!digit && !run) text.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c);
    }
    ASSERT_GT(text.size(), 100U) << name;
    scorer.reset();
    scorer.feed(text);
    ASSERT_EQ(walk.init(), 0);
    auto* bytes = reinterpret_cast<unsigned char*>(text.data());
    walk.auto_init(bytes[0], bytes[1]);
    walk.auto_nexts(bytes + 2, static_cast<int>(text.size()) - 2);
    const float* means = walk.get_lprobs();
    const std::vector<double> totals = scorer.totals();
    for (int m = 0; m < group.nb_models; ++m) {
      const double mean = totals[static_cast<size_t>(m)] / static_cast<double>(scorer.scored());
      EXPECT_NEAR(mean, static_cast<double>(means[m]), 1e-4) << name << " model " << m;
    }
  }
}

TEST(OrvaInterface, NullArgumentsAreRefused) {
  OrvaResult result;
  EXPECT_EQ(orva_detect(nullptr, "a", 1, &result), ORVA_BAD_ARGUMENT);
  EXPECT_EQ(orva_feed(nullptr, "a", 1), ORVA_BAD_ARGUMENT);
  EXPECT_EQ(orva_finish(nullptr, &result), ORVA_BAD_ARGUMENT);
  EXPECT_EQ(orva_candidate(nullptr, 0, nullptr), ORVA_BAD_ARGUMENT);
  EXPECT_EQ(orva_open_models(nullptr, nullptr, nullptr), nullptr);
  orva_free(nullptr);
  orva_close_models(nullptr);
}

TEST(OrvaInterface, ACProgramCanUseTheHeader) { EXPECT_EQ(orva_c99_use(), 1); }

TEST(OrvaInterface, ModelsThatCannotBeReadAreExplained) {
  char* error = nullptr;
  EXPECT_EQ(orva_open_models("/nonexistent.grp", "/nonexistent.stc", &error), nullptr);
  ASSERT_NE(error, nullptr);
  EXPECT_NE(std::string(error), "");
  orva_free_text(error);
}

TEST(OrvaInterface, CharsetNamesAreGivenInFourSchemes) {
  EXPECT_STREQ(orva_charset_name("cp1251", ORVA_NAMES_IANA), "windows-1251");
  EXPECT_STREQ(orva_charset_name("cp1251", ORVA_NAMES_ICONV), "CP1251");
  EXPECT_STREQ(orva_charset_name("latin1", ORVA_NAMES_WEB), "windows-1252");
  EXPECT_STREQ(orva_charset_name("EUC-KR", ORVA_NAMES_PYTHON), "cp949");
  EXPECT_EQ(orva_charset_name("nonsense", ORVA_NAMES_IANA), nullptr);
  EXPECT_EQ(orva_charset(-1), nullptr);
  EXPECT_EQ(orva_charset(orva_nb_charsets()), nullptr);
  EXPECT_NE(orva_charset(0), nullptr);
}

}  // namespace
