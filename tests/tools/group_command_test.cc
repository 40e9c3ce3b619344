#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

// Trains models on short texts and groups them.
class GroupCommand : public testing::Test {
 protected:
  std::string train(const std::string& name, const std::string& text,
                    const std::string& switches = "DCX") {
    const std::string model = dir_ / name;
    const Ended run =
        run_orva({"train", "-o", model, "--preprocess", switches, dir_.file("text", text)});
    EXPECT_EQ(run.status, 0) << run.err;
    return model;
  }

  Ended group(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"group", "-o", dir_ / "Model.grp"});
    return run_orva(arguments);
  }

  TempDir dir_;
};

TEST_F(GroupCommand, MakesAFolderThatDetectsWhatItWasTrainedOn) {
  const std::string english = train("enUS-ASCII.tri", "the cat and the dog and the old house\n");
  const std::string french = train("frISO-8859-1.tri", "le chat et le chien et la maison \xE9\n");
  const Ended made = group({"--stc", dir_ / "Model.stc", english, french});
  EXPECT_EQ(made.status, 0) << made.err;
  const std::string text = dir_.file("t", "et le chien");
  const Ended run = run_orva({"detect", "--classic", "--models", dir_.path(), text});
  EXPECT_EQ(run.out, text + ": ISO-8859-1 fr\n") << run.err;
}

TEST_F(GroupCommand, RefusesNamesThatAreNoModelNames) {
  const std::string good = train("enUS-ASCII.tri", "the cat and the dog");
  std::filesystem::create_directory(dir_ / "sub");
  const std::string twin = dir_ / "sub/enUS-ASCII.tri";
  std::filesystem::copy_file(good, twin);
  EXPECT_NE(group({good, twin}).err.find("already in the group"), std::string::npos);
  for (const char* name : {"en.tri", "enUS-ASCII", "enUS-ASCII.model"}) {
    const std::string odd = dir_ / name;
    std::filesystem::copy_file(good, odd);
    const Ended run = group({odd});
    EXPECT_EQ(run.status, 2) << name;
    EXPECT_NE(run.err.find("a model is named by two letters of language"), std::string::npos)
        << run.err;
  }
}

TEST_F(GroupCommand, SaysWhichModelAndWhichLineIsWrong) {
  const std::string good = train("enUS-ASCII.tri", "the cat and the dog");
  const std::string bytes = bytes_of(good);
  const std::string cut = dir_.file("frcut.tri", bytes.substr(0, 200));
  const std::string tabless = dir_.file("frnotab.tri", bytes + "1.5 616263\n");
  const std::string other = train("frOTHER.tri", "le chat et le chien", "DC");
  EXPECT_NE(group({good, cut}).err.find("frcut.tri: no valid model: line "), std::string::npos);
  EXPECT_NE(group({good, tabless}).err.find("no tab between cost and key"), std::string::npos);
  EXPECT_NE(group({good, other}).err.find("trained with the switches \"DC\""), std::string::npos);
  EXPECT_EQ(group({good, cut}).status, 2);
  EXPECT_EQ(bytes_of(dir_ / "Model.grp"), "");
}

TEST_F(GroupCommand, WarnsOfFactMembersThatMatchNothing) {
  const std::string good = train("enUS-ASCII.tri", "the cat and the dog");
  const std::string facts = dir_.file("facts", "enUS-ASCII\tfrISO\n\t\n");
  const Ended run = group({"--facts", facts, good});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("line 1: \"frISO\" matches no model"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("line 2: an empty member"), std::string::npos) << run.err;
  EXPECT_EQ(group({"--facts", dir_ / "missing", good}).status, 2);
}

TEST_F(GroupCommand, WarnsOfSetsWhoseModelsDifferInSmallestCostOrStep) {
  const std::string one = train("enUS-ASCII.tri", "the cat and the dog and the old house");
  const std::string two = train("enUTF-8.tri", "the cat and the dog");
  const Ended run = group({"--facts", dir_.file("facts", "enUS\tenUTF\n"), one, two});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("Modele 1 (fact 0) : pas le meme "), std::string::npos) << run.err;
}

TEST_F(GroupCommand, RefusesALeafWithMoreThan127ValuesUnlessForced) {
  const std::string first = train("enA000.tri", "the cat");
  std::vector<std::string> models = {first};
  for (int i = 1; i < 130; ++i) {
    const std::string copy = dir_ / ("enA" + std::to_string(1000 + i).substr(1) + ".tri");
    std::filesystem::copy_file(first, copy);
    models.push_back(copy);
  }
  const Ended refused = group(models);
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.err.find("the worst, 206361, has 130"), std::string::npos) << refused.err;
  EXPECT_NE(refused.err.find("--facts"), std::string::npos) << refused.err;
  EXPECT_EQ(bytes_of(dir_ / "Model.grp"), "");
  models.insert(models.begin(), "--force");
  EXPECT_EQ(group(models).status, 0);
  const Ended info = run_orva({"info", dir_ / "Model.grp"});
  EXPECT_NE(info.out.find("warning: "), std::string::npos) << info.out;
}

TEST_F(GroupCommand, PrintsTheStatisticsOfTheBuildOnRequest) {
  const std::string good = train("enUS-ASCII.tri", "ababab");
  const Ended run = group({"-v", good});
  EXPECT_NE(run.out.find("\nBuildEnd.\n\tIStates     5 X 8 =     40\n"), std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("\tLStates     2 X 4 =      8\n"), std::string::npos) << run.out;
}

TEST_F(GroupCommand, ExportsCTablesIntoAFolder) {
  const std::string good = train("enUS-ASCII.tri", "the cat and the dog");
  ASSERT_EQ(group({good}).status, 0);
  std::filesystem::create_directory(dir_ / "c");
  const Ended run = run_orva({"export", dir_ / "Model.grp", dir_ / "c"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(bytes_of(dir_ / "c/hardcoded_mg.C").find("HC_CLidMGroup_nb_models = 1;"),
            std::string::npos);
  EXPECT_NE(bytes_of(dir_ / "c/hardcoded_mg.H").find("#endif"), std::string::npos);
  int nb_entries = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir_ / "c")) {
    static_cast<void>(entry);
    ++nb_entries;
  }
  EXPECT_EQ(nb_entries, 2);  // nothing temporary is left
  EXPECT_EQ(run_orva({"export", dir_ / "Model.grp", dir_ / "none"}).status, 2);
  EXPECT_EQ(run_orva({"export", good, dir_ / "c"}).status, 2);
}

}  // namespace
}  // namespace orva
