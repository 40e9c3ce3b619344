// Many detectors over one copy of the models, each in a thread of its own.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/orva.h"

namespace {

constexpr const char* kTexts[][2] = {
    {"windows-1251", "Утром мы пошли на реку ловить рыбу, но вода была очень холодной."},
    {"ISO-8859-1", "Le matin, nous sommes allés à la rivière, mais l'eau était froide."},
    {"Shift_JIS", "朝、川へ魚を釣りに行ったが、水がとても冷たかった。"},
    {"UTF-16LE", "Rano poszliśmy nad rzekę łowić ryby, ale woda była zimna."},
    {"ISO-8859-7", "Το πρωί πήγαμε στο ποτάμι για ψάρεμα, αλλά το νερό ήταν κρύο."},
    {"UTF-8", "Am Morgen gingen wir zum Fluß, aber das Wasser war zu kalt für Fische."},
    {"US-ASCII", "In the morning we went to the river, but the water was cold."}};

std::vector<std::string> documents() {
  std::vector<std::string> all;
  for (const auto& text : kTexts) {
    orva::Conversion out;
    EXPECT_EQ(encode_text(*orva::find_charset(text[0]), text[1], &out), orva::kConverted);
    all.push_back(out.bytes);
  }
  return all;
}

struct Answer {
  std::string charset;
  std::string language;
  double probability = 0;
  double cost = 0;

  bool operator==(const Answer&) const = default;
};

Answer answer(OrvaDetector* detector, const std::string& bytes) {
  OrvaResult result;
  if (orva_detect(detector, bytes.data(), bytes.size(), &result) != ORVA_OK) return {};
  OrvaCandidate best = {};
  orva_candidate(detector, 0, &best);
  return {result.charset == nullptr ? "" : result.charset,
          result.language == nullptr ? "" : result.language, result.probability, best.cost};
}

TEST(Threads, DetectorsOfTheirOwnGiveTheAnswersOfOneAlone) {
  if (orva_nb_languages(nullptr) == 0) GTEST_SKIP() << "built without models";
  constexpr size_t kThreads = 6;
  constexpr int kRounds = 5;
  const std::vector<std::string> texts = documents();
  std::vector<std::vector<Answer>> got(kThreads);
  std::vector<std::thread> threads;
  // Nothing is made before: the threads race for the tables, too.
  for (size_t t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        OrvaDetector* detector = orva_new(nullptr);
        std::vector<Answer> answers(texts.size());
        // Each thread in another order, so that different documents are under way at once.
        for (size_t i = 0; i < texts.size(); ++i) {
          const size_t at = (i + t) % texts.size();
          answers[at] = answer(detector, texts[at]);
        }
        orva_free(detector);
        if (round > 0 && answers != got[t]) answers.clear();
        got[t] = answers;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  OrvaDetector* detector = orva_new(nullptr);
  std::vector<Answer> alone;
  for (const std::string& text : texts) alone.push_back(answer(detector, text));
  orva_free(detector);
  for (size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(alone[i].charset, kTexts[i][0]);
  for (const std::vector<Answer>& answers : got) EXPECT_TRUE(answers == alone);
}

TEST(Threads, ListsOfOneDetectorAreNotThoseOfAnother) {
  OrvaDetector* one = orva_new(nullptr);
  if (one == nullptr) GTEST_SKIP() << "built without models";
  OrvaDetector* other = orva_new(nullptr);
  const char* const koi = "KOI8-R";
  ASSERT_EQ(orva_allow_charsets(one, &koi, 1), ORVA_OK);
  const std::string text = documents()[0];
  std::string restricted;
  std::string free;
  std::thread first([&] { restricted = answer(one, text).charset; });
  std::thread second([&] { free = answer(other, text).charset; });
  first.join();
  second.join();
  EXPECT_NE(restricted, "windows-1251");
  EXPECT_EQ(free, "windows-1251");
  orva_free(one);
  orva_free(other);
}

}  // namespace
