#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

std::string group_path() { return models_dir() + "/Model.grp"; }

TEST(ScoreCommand, PrintsEveryModelAndThenTheBest) {
  const TempDir dir;
  const Ended run = run_orva({"score", "--group", group_path(), dir.file("t", "some words here")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\t"), std::string::npos);
  EXPECT_NE(run.out.find("\nbest\t"), std::string::npos) << run.out;
}

TEST(ScoreCommand, SaysWhenThereIsNoScore) {
  const TempDir dir;
  const Ended run = run_orva({"score", "--group", group_path(), dir.file("t", "ab")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "no score\n");
}

TEST(ScoreCommand, StripsMarkupOnRequest) {
  const TempDir dir;
  const std::string marked = dir.file("m", "<p>some</p> <b>words  here</b>");
  const std::string plain = dir.file("p", "some words here");
  const Ended stripped = run_orva({"score", "--group", group_path(), "--strip-markup", marked});
  const Ended bare = run_orva({"score", "--group", group_path(), plain});
  EXPECT_EQ(stripped.out, bare.out);
  EXPECT_NE(run_orva({"score", "--group", group_path(), marked}).out, bare.out);
}

TEST(ScoreCommand, AFileThatIsNoGroupIsStatusTwo) {
  const TempDir dir;
  const std::string text = dir.file("t", "some words here");
  const Ended run = run_orva({"score", "--group", text, text});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("first line is not that of a model group"), std::string::npos) << run.err;
}

}  // namespace
}  // namespace orva
