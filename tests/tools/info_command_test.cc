#include <gtest/gtest.h>

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

TEST(InfoCommand, AFileOfNoKindIsStatusTwo) {
  const TempDir dir;
  for (const std::string& path :
       {dir.file("text", "just some words"), dir.file("empty", ""), dir.path(), dir / "missing"}) {
    EXPECT_EQ(run_orva({"info", path}).status, 2) << path;
  }
}

}  // namespace
}  // namespace orva
