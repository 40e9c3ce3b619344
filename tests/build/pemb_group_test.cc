#include <gtest/gtest.h>

#include "lib/api/pemb.h"
#include "lib/util/accounting.h"
#include "tests/build/build_fixture.h"

namespace {

using orva::ModelFiles;

struct Grouping {
  ModelFiles files;
  std::vector<std::string> given;  // names as passed in
  const char* dir = nullptr;
  const char* facts = nullptr;

  Grouping() {
    files.add("enASCII", {{"abc", 1.0f}, {"abd", 2.0f}});
    files.add("frASCII", {{"abc", 1.0f}, {"abd", 2.0f}});
    given = {"enASCII.tri", "frASCII.tri"};
    dir = files.dir().path().c_str();
  }
  std::string out() const { return files.dir() / "out.grp"; }
  int run(int count) {
    std::vector<char*> names;
    for (std::string& name : given) names.push_back(name.data());
    return pemb_group(dir, names.data(), count, facts, out().c_str());
  }
  int run() { return run(static_cast<int>(given.size())); }
  std::string name(int model) const {
    CLidMGroup group;
    return group.load(out().c_str()) == kGroupOk ? group.models_part.models[model].name : "";
  }
};

}  // namespace

TEST(PembGroup, CountOutsideOneTo199ReadsNoFile) {
  Grouping g;
  g.facts = "/nonexistent/facts";
  EXPECT_EQ(g.run(0), -1);
  EXPECT_EQ(g.run(200), -1);
  EXPECT_EQ(pemb_group(nullptr, nullptr, -1, nullptr, nullptr), -1);
}

TEST(PembGroup, WritesAGroupThatLoads) {
  Grouping g;
  ASSERT_EQ(g.run(), 0);
  EXPECT_EQ(g.name(0), "enASCII");
  EXPECT_EQ(g.name(1), "frASCII");
  PembHandle* handle = pemb_init(g.out().c_str());
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(pemb_nb_models(handle), 2);
  pemb_dispose(handle);
}

TEST(PembGroup, BuildsWithDirectStatesFrom128Children) {
  Grouping g;
  ASSERT_EQ(g.run(), 0);
  CLidMGroup group;
  ASSERT_EQ(group.load(g.out().c_str()), kGroupOk);
  EXPECT_EQ(group.min_for_direct, 128);
}

TEST(PembGroup, SwitchesTheProcessToReturningFailures) {
  Grouping g;
  _MallocChkExitOnErr = 1;
  EXPECT_EQ(g.run(0), -1);
  EXPECT_EQ(_MallocChkExitOnErr, 0);
}

TEST(PembGroup, NullFactFileMeansNoSetsAndAMissingOneIsMinusTwo) {
  Grouping g;
  ASSERT_EQ(g.run(), 0);
  CLidMGroup group;
  ASSERT_EQ(group.load(g.out().c_str()), kGroupOk);
  EXPECT_EQ(group.models_part.models[0].fact_no, -1);
  g.facts = "/nonexistent/facts";
  EXPECT_EQ(g.run(), -2);
}

TEST(PembGroup, FactFileMatchesTheNamesAsPassedIn) {
  Grouping g;
  const std::string facts = g.files.dir().file("facts", "enASCII.tri\tfrASC\n");
  g.facts = facts.c_str();
  ASSERT_EQ(g.run(), 0);
  CLidMGroup group;
  ASSERT_EQ(group.load(g.out().c_str()), kGroupOk);
  EXPECT_EQ(group.models_part.models[0].fact_no, 2);
  EXPECT_EQ(group.models_part.models[1].fact_no, 2);
}

TEST(PembGroup, NamesThatBeginWithASlashOrADotAreNotPrefixed) {
  Grouping g;
  g.given = {g.files.dir() / "enASCII.tri"};
  g.dir = "/nonexistent";
  EXPECT_EQ(g.run(), 0);
  EXPECT_EQ(g.name(0), g.files.dir() / "enASCII");
  g.given = {"./enASCII.tri"};
  g.dir = g.files.dir().path().c_str();
  EXPECT_EQ(g.run(), -3);
}

TEST(PembGroup, WithoutADirectoryNoNameIsPrefixed) {
  Grouping g;
  g.dir = nullptr;
  EXPECT_EQ(g.run(), -3);
  g.given = {g.files.dir() / "enASCII.tri"};
  EXPECT_EQ(g.run(), 0);
}

TEST(PembGroup, MissingModelIsMinusThreeAndUnwritableOutputMinusFour) {
  Grouping g;
  g.given[1] = "xxNone.tri";
  EXPECT_EQ(g.run(), -3);
  char name[] = "enASCII.tri";
  char* names[] = {name};
  EXPECT_EQ(pemb_group(g.dir, names, 1, nullptr, "/nonexistent/out.grp"), -4);
  EXPECT_EQ(pemb_group(g.dir, names, 1, nullptr, nullptr), -4);
}

TEST(PembGroup, NamesThatCannotBeCutAreMinusFive) {
  Grouping g;
  g.given = {"abc"};
  EXPECT_EQ(g.run(), -5);
  char* names[] = {nullptr};
  EXPECT_EQ(pemb_group(g.dir, names, 1, nullptr, "x"), -5);
  EXPECT_EQ(pemb_group(g.dir, nullptr, 1, nullptr, "x"), -5);
}

TEST(PembGroup, MoreSetsThanAByteHoldsAreMinusThree) {
  ModelFiles files;
  std::string facts;
  std::vector<std::string> given;
  for (int m = 0; m < 130; ++m) {
    // Names of one length, so that none begins another.
    const std::string name = "m" + std::to_string(1000 + m);
    files.add(name, {{"abc", 1.0f}});
    given.push_back(name + ".tri");
    facts += name + "\n";
  }
  std::vector<char*> names;
  for (std::string& name : given) names.push_back(name.data());
  const std::string path = files.dir().file("facts", facts);
  const std::string out = files.dir() / "out.grp";
  const char* dir = files.dir().path().c_str();
  EXPECT_EQ(pemb_group(dir, names.data(), 130, path.c_str(), out.c_str()), -3);
  EXPECT_EQ(pemb_group(dir, names.data(), 128, path.c_str(), out.c_str()), 0);
  // 300 lines that all name the first model: its set number is beyond what a group holds.
  std::string many;
  for (int i = 0; i < 300; ++i) many += "m1000\n";
  const std::string many_path = files.dir().file("many", many);
  EXPECT_EQ(pemb_group(dir, names.data(), 1, many_path.c_str(), out.c_str()), -3);
}

TEST(PembGroup, TrigramOfMoreThan127ValuesIsStillBuilt) {
  ModelFiles files;
  std::vector<std::string> given;
  for (int m = 0; m < 199; ++m) {
    const std::string name = "m" + std::to_string(1000 + m);
    files.add(name, {{"abc", 1.0f}});
    given.push_back(name + ".tri");
  }
  std::vector<char*> names;
  for (std::string& name : given) names.push_back(name.data());
  const std::string out = files.dir() / "out.grp";
  EXPECT_EQ(pemb_group(files.dir().path().c_str(), names.data(), 199, nullptr, out.c_str()), 0);
}
