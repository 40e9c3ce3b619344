#include <dirent.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <vector>

#include "tests/trichr/trichr_fixture.h"

namespace {

std::string vectors_dir() {
  const char* dir = getenv("ORVA_VECTORS");
  return dir == nullptr ? "" : dir;
}

std::vector<std::string> names_in(const std::string& dir) {
  std::vector<std::string> names;
  DIR* d = opendir(dir.c_str());
  if (d == nullptr) return names;
  while (const dirent* entry = readdir(d)) {
    if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
  }
  closedir(d);
  return names;
}

}  // namespace

TEST(TrainingVectors, EveryModelIsTheSameFile) {
  const std::string dir = vectors_dir();
  if (dir.empty()) GTEST_SKIP() << "ORVA_VECTORS is not set";
  orva::Options o;
  o.max_tri = 4000;
  o.flags = "DCX";
  int nb_models = 0;
  for (const std::string& text : names_in(dir + "/train")) {
    const std::string name = text.substr(0, text.size() - 4);
    CTrichrModel model;
    orva::train_file(model, dir + "/train/" + text, o);
    const std::string expected = orva::bytes_of(dir + "/models/" + name + ".tri");
    EXPECT_TRUE(orva::saved(model, 0.9f) == expected) << name;
    CTrichrModel back;
    ASSERT_EQ(back.load((dir + "/models/" + name + ".tri").c_str()), kTrichrOk) << name;
    EXPECT_TRUE(orva::saved(back, 0.9f) == expected) << name;
    ++nb_models;
  }
  EXPECT_EQ(nb_models, 26);
}

TEST(TrainingVectors, EveryOptionGivesTheSameFile) {
  const std::string dir = vectors_dir();
  if (dir.empty()) GTEST_SKIP() << "ORVA_VECTORS is not set";
  std::istringstream table(orva::bytes_of(dir + "/train-options/options.tsv"));
  std::string line;
  std::getline(table, line);
  int nb_models = 0;
  while (std::getline(table, line)) {
    std::istringstream row(line);
    std::string model_name, text;
    orva::Options o;
    row >> model_name >> text >> o.max_tri >> o.min_freq >> o.weight >> o.coverage;
    row >> o.flags;
    CTrichrModel model;
    orva::train_file(model, dir + "/" + text, o);
    EXPECT_TRUE(orva::saved(model, o.weight) ==
                orva::bytes_of(dir + "/train-options/" + model_name))
        << model_name;
    ++nb_models;
  }
  EXPECT_EQ(nb_models, 5);
}
