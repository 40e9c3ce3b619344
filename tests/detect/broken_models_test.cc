// Model files that are damaged: refused with words, or read and usable; never a crash.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "lib/detect/orva.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/temp_dir.h"

namespace {

const std::string kModels = std::string(ORVA_SOURCE_DIR) + "/tests/host/models/";
const std::string kThreeNames("\3\0\0\0\7\0\0\0\0\0UTF-8\6\0\0\0\0\0KOI8\3\0\0\0\0\0A", 32);

class BrokenModels : public testing::Test {
 protected:
  // Whether the pair was opened; when it was, it must answer.
  bool opens(const std::string& group, const std::string& names) {
    const std::string group_path = dir_.file("Model.grp", group);
    const std::string names_path = dir_.file("Model.stc", names);
    char* error = nullptr;
    OrvaModels* models = orva_open_models(group_path.c_str(), names_path.c_str(), &error);
    EXPECT_EQ(models == nullptr, error != nullptr);
    EXPECT_TRUE(error == nullptr || *error != 0);
    orva_free_text(error);
    if (models == nullptr) return false;
    OrvaDetector* detector = orva_new(models);
    for (const char* text : {"abababab", "\xC1\xC2 text", "\xE3\x81\x82 utf-8"}) {
      OrvaResult result;
      EXPECT_EQ(orva_detect(detector, text, strlen(text), &result), ORVA_OK);
    }
    orva_free(detector);
    orva_close_models(models);
    return true;
  }

  orva::TempDir dir_;
};

TEST_F(BrokenModels, WholeFilesAreOpened) {
  EXPECT_TRUE(opens(orva::TinyGroup().bytes(), kThreeNames));
  EXPECT_TRUE(opens(orva::bytes_of(kModels + "Model.grp"), orva::bytes_of(kModels + "Model.stc")));
}

TEST_F(BrokenModels, AGroupCutAnywhereIsRefused) {
  const std::string tiny = orva::TinyGroup().bytes();
  for (size_t n = 0; n < tiny.size(); ++n) EXPECT_FALSE(opens(tiny.substr(0, n), kThreeNames)) << n;
}

TEST_F(BrokenModels, ATableCutAnywhereIsRefused) {
  const std::string tiny = orva::TinyGroup().bytes();
  for (size_t n = 0; n < kThreeNames.size(); ++n) {
    EXPECT_FALSE(opens(tiny, kThreeNames.substr(0, n))) << n;
  }
}

TEST_F(BrokenModels, EveryByteOfASmallPairMayBeChanged) {
  const std::string tiny = orva::TinyGroup().bytes();
  int refused = 0;
  for (size_t n = 0; n < tiny.size(); ++n) {
    for (const char bit : {'\x01', '\x80', '\xFF'}) {
      std::string group = tiny;
      group[n] = static_cast<char>(group[n] ^ bit);
      refused += opens(group, kThreeNames) ? 0 : 1;
    }
  }
  EXPECT_GT(refused, 100);
}

TEST_F(BrokenModels, ARealGroupMayBeDamagedAnywhere) {
  const std::string group = orva::bytes_of(kModels + "Model.grp");
  const std::string names = orva::bytes_of(kModels + "Model.stc");
  std::mt19937 random(5);
  for (int i = 0; i < 60; ++i) {
    std::string damaged = group;
    for (int k = 0; k < 1 + i % 5; ++k) {
      damaged[random() % damaged.size()] = static_cast<char>(random());
    }
    if (i % 6 == 5) damaged.resize(random() % damaged.size());
    opens(damaged, names);
  }
}

TEST_F(BrokenModels, FilesThatAreNoModelsAreRefused) {
  const std::string tiny = orva::TinyGroup().bytes();
  EXPECT_FALSE(opens("", kThreeNames));
  EXPECT_FALSE(opens(tiny, ""));
  EXPECT_FALSE(opens(kThreeNames, tiny));
  EXPECT_FALSE(opens(tiny, std::string("\2\0\0\0\3\0\0\0\0\0A\3\0\0\0\0\0A", 18)));
  EXPECT_EQ(orva_open_models("/", "/", nullptr), nullptr);
}

}  // namespace
