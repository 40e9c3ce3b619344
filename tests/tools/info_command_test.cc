#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>

#include "tests/reference/tiny_group.h"
#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

TEST(InfoCommand, TellsWhatAGroupHolds) {
  const Ended run = run_orva({"info", models_dir() + "/Model.grp"});
  EXPECT_EQ(run.status, 0) << run.err;
  for (const char* part : {"model group", "switches: ", "automaton: ", "fact sets: ", "models: "}) {
    EXPECT_NE(run.out.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(run.out.find("warning"), std::string::npos) << run.out;
}

TEST(InfoCommand, ListsCharsetNames) {
  const TempDir dir;
  const std::string stc =
      dir.file("Model.stc", std::string("\2\0\0\0\7\0\0\0\0\0UTF-8\2\0\0\0\0\0", 21));
  const Ended run = run_orva({"info", stc});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("charset names of 2 models"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("0  UTF-8\n"), std::string::npos) << run.out;
}

TEST(InfoCommand, SaysWhichRuleARefusedGroupBreaks) {
  const TempDir dir;
  const std::string group = bytes_of(models_dir() + "/Model.grp");
  std::string other_platform = group;
  other_platform.replace(other_platform.find("LINUX"), 5, "LYNUX");
  std::string other_version = group;
  other_version.replace(other_version.find("2.25a"), 5, "2.26a");
  const struct {
    std::string bytes;
    const char* reason;
  } cases[] = {
      {other_platform, "second line names another platform"},
      {other_version, "first line names another version"},
      {group.substr(0, group.find('\n') + 1), "no second line"},
      {group.substr(0, 90), "missing word of the group's sizes (at byte "},
      {group.substr(0, group.size() - 1), "sizes of the unigram section do not fit the file"},
  };
  for (const auto& c : cases) {
    const Ended run = run_orva({"info", dir.file("g", c.bytes)});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find(c.reason), std::string::npos) << run.err;
  }
}

// For the three models of the tiny group, whose charsets no table has.
const std::string kThreeNames("\3\0\0\0\3\0\0\0\0\0A\3\0\0\0\0\0A\3\0\0\0\0\0B", 25);

// The digits behind the word in what `orva info` prints.
std::string fingerprint(const std::string& path) {
  std::vector<std::string> arguments = {"info"};
  if (!path.empty()) arguments.push_back(path);
  const Ended run = run_orva(arguments);
  EXPECT_EQ(run.status, 0) << run.err;
  const size_t at = run.out.find("fingerprint ");
  return at == std::string::npos ? "" : run.out.substr(at + 12, 16);
}

TEST(InfoCommand, OneFingerprintTiesTheFilesOfAPairTogether) {
  const TempDir dir;
  const std::string group = dir.file("Model.grp", TinyGroup().bytes());
  EXPECT_EQ(fingerprint(group), "");
  const std::string names = dir.file("Model.stc", kThreeNames);
  const std::string print = fingerprint(dir.path());
  // FNV-1a over both files, computed apart from this program.
  uint64_t hash = 0xCBF29CE484222325;
  const std::string length(1, static_cast<char>(TinyGroup().bytes().size() & 0xFF));
  const std::string high(1, static_cast<char>(TinyGroup().bytes().size() >> 8));
  for (const char c :
       TinyGroup().bytes() + length + high + std::string(6, '\0') + bytes_of(names)) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  }
  char digits[17];
  snprintf(digits, sizeof digits, "%016" PRIx64, hash);
  EXPECT_EQ(print, digits);
  EXPECT_EQ(fingerprint(group), print);
  EXPECT_EQ(fingerprint(names), print);
  dir.file("Model.stc", kThreeNames + "behind");
  EXPECT_NE(fingerprint(dir.path()), print);
}

TEST(InfoCommand, TheBuiltInModelsHaveTheFingerprintOfTheFilesTheyWereMadeOf) {
  EXPECT_EQ(fingerprint(""), fingerprint(models_dir()));
  EXPECT_EQ(fingerprint("").size(), 16U);
}

TEST(InfoCommand, FilesThatAreNoPairAreTold) {
  const TempDir dir;
  dir.file("Model.grp", bytes_of(models_dir() + "/Model.grp"));
  std::string names = bytes_of(models_dir() + "/Model.stc");
  const size_t at = names.find("UTF-8");
  ASSERT_NE(at, std::string::npos);
  names.replace(at, 5, "IBM37");
  const struct {
    std::string names;
    const char* reason;
  } cases[] = {
      {std::string("\1\0\0\0\3\0\0\0\0\0A", 11), "not a pair: 1 charset names for "},
      {names, "but its charset name is IBM37"},
      {"\1", "Model.stc: "},
  };
  for (const auto& c : cases) {
    dir.file("Model.stc", c.names);
    for (const std::string& path : {dir.path(), dir / "Model.grp"}) {
      const Ended run = run_orva({"info", path});
      EXPECT_EQ(run.status, 2);
      EXPECT_NE(run.err.find(c.reason), std::string::npos) << run.err;
    }
  }
}

TEST(InfoCommand, AFileOfNoKindIsStatusTwo) {
  const TempDir dir;
  for (const std::string& path :
       {dir.file("text", "just some words"), dir.file("empty", ""), dir.path(), dir / "missing"}) {
    EXPECT_EQ(run_orva({"info", path}).status, 2) << path;
  }
}

}  // namespace
}  // namespace orva
