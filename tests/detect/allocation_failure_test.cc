// Every allocation behind orva.h fails once, and once for ever: the result is a refusal or the
// right answer, the handle stays usable, and nothing is left behind.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "lib/detect/orva.h"
#include "tests/support/failing_allocations.h"

using orva::FailingAllocations;

namespace {

const std::string kModels = std::string(ORVA_SOURCE_DIR) + "/tests/host/models/";
const std::string kDocuments = std::string(ORVA_SOURCE_DIR) + "/examples/documents/";

std::string contents(const std::string& path) {
  std::string bytes;
  FILE* file = fopen(path.c_str(), "rb");
  EXPECT_NE(file, nullptr) << path;
  for (int c = file == nullptr ? EOF : getc(file); c != EOF; c = getc(file)) {
    bytes.push_back(static_cast<char>(c));
  }
  if (file != nullptr) fclose(file);
  return bytes.substr(0, 600);
}

// What was answered, kept without allocating.
struct Answer {
  int code = 0;
  char charset[40] = "";
  double probability = 0;

  bool operator==(const Answer& other) const {
    return strcmp(charset, other.charset) == 0 && probability == other.probability;
  }
};

Answer answer(OrvaDetector* detector, const char* bytes, size_t length) {
  Answer out;
  OrvaResult result;
  out.code = orva_detect(detector, bytes, length, &result);
  if (out.code != ORVA_OK) return out;
  if (result.charset != nullptr) strncpy(out.charset, result.charset, sizeof out.charset - 1);
  out.probability = result.probability;
  OrvaCandidate candidate;
  for (int i = 0; i < result.nb_candidates; ++i) {
    if (orva_candidate(detector, i, &candidate) != ORVA_OK) out.code = ORVA_BAD_ARGUMENT;
  }
  return out;
}

class AllocationFailure : public testing::TestWithParam<FailingAllocations::Mode> {
 protected:
  static OrvaModels* open(char** error) {
    return orva_open_models((kModels + "Model.grp").c_str(), (kModels + "Model.stc").c_str(),
                            error);
  }
};

TEST_P(AllocationFailure, OfADocumentIsARefusalAndTheNextOneIsRight) {
  OrvaModels* const models = open(nullptr);
  ASSERT_NE(models, nullptr);
  for (const char* name :
       {"fr-utf-8.txt", "ru-koi8-r.txt", "ja-shift_jis.txt", "de-iso-8859-1.txt", "zh-big5.txt"}) {
    const std::string document = contents(kDocuments + name);
    OrvaDetector* detector = orva_new(models);
    const Answer right = answer(detector, document.data(), document.size());
    ASSERT_EQ(right.code, ORVA_OK) << name;
    orva_free(detector);
    int refused = 0;
    bool failed = true;
    // Not each one: a detector's first document takes hundreds of them.
    for (long n = 0; failed; n += 1 + n / 40) {
      detector = orva_new(models);
      ASSERT_NE(detector, nullptr);
      Answer got;
      {
        const FailingAllocations failing(n, GetParam());
        got = answer(detector, document.data(), document.size());
        failed = failing.has_failed();
      }
      if (got.code == ORVA_OK) {
        EXPECT_TRUE(got == right) << name << " " << n;
      } else {
        EXPECT_EQ(got.code, ORVA_NO_MEMORY) << name << " " << n;
        ++refused;
      }
      EXPECT_TRUE(answer(detector, document.data(), document.size()) == right) << name << " " << n;
      orva_free(detector);
    }
    EXPECT_GT(refused, 10) << name;
  }
  orva_close_models(models);
}

TEST_P(AllocationFailure, OfOpeningIsNullAndLeavesNothing) {
  bool failed = true;
  int refused = 0;
  for (long n = 0; failed; n += 1 + n / 40) {
    char* error = nullptr;
    OrvaModels* models = nullptr;
    OrvaDetector* detector = nullptr;
    // Paths that need no memory of their own.
    static const std::string group = kModels + "Model.grp";
    static const std::string names = kModels + "Model.stc";
    {
      const FailingAllocations failing(n, GetParam());
      models = orva_open_models(group.c_str(), names.c_str(), &error);
      if (models != nullptr) detector = orva_new(models);
      failed = failing.has_failed();
    }
    if (detector == nullptr) ++refused;
    EXPECT_TRUE(models == nullptr || error == nullptr) << n;
    orva_free(detector);
    orva_close_models(models);
    orva_free_text(error);
  }
  EXPECT_GT(refused, 10);
}

TEST_P(AllocationFailure, OfAListLeavesADetectorThatWorks) {
  OrvaModels* const models = open(nullptr);
  OrvaDetector* const detector = orva_new(models);
  const std::string document = contents(kDocuments + "ru-koi8-r.txt");
  const char* const charsets[] = {"koi8-r", "windows-1251", "GB2312", "UTF-16"};
  const char* const languages[] = {"ru", "en-GB"};
  bool failed = true;
  for (long n = 0; failed; ++n) {
    int first = 0;
    int second = 0;
    {
      const FailingAllocations failing(n, GetParam());
      first = orva_allow_charsets(detector, charsets, 4);
      second = orva_allow_languages(detector, languages, 2);
      failed = failing.has_failed();
    }
    EXPECT_TRUE(first == ORVA_OK || first == ORVA_NO_MEMORY) << n;
    EXPECT_TRUE(second == ORVA_OK || second == ORVA_NO_MEMORY) << n;
    EXPECT_EQ(answer(detector, document.data(), document.size()).code, ORVA_OK);
  }
  EXPECT_STREQ(answer(detector, document.data(), document.size()).charset, "koi8-r");
  orva_free(detector);
  orva_close_models(models);
}

INSTANTIATE_TEST_SUITE_P(Modes, AllocationFailure,
                         testing::Values(FailingAllocations::kOnce, FailingAllocations::kForEver));

}  // namespace
