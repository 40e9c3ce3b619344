// Adding to and leaving out of a compiled group, as a user does it.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

// A language that no shipped model is for, in sentences of our own.
constexpr char kLatin[] =
    "Mane ad flumen ivimus ut pisces caperemus, sed hæc aqua tam frigida erat ut nemo ibi usque ad "
    "meridiem manere vellet. Pater meus in ripa sedebat et librum legebat, quem frater Musæ ei ex "
    "urbe "
    "miserat. Mater cum sororibus panem et caseum parabat, quia omnes post iter longum esuriebant. "
    "Ecce puellæ. Canis noster per herbam currebat et aves terrebat, quæ ex arboribus in cælum "
    "volabant. "
    "Vesperi domum redivimus et senex nobis fabulam narravit de rege qui nihil aliud amabat nisi "
    "gemmæ et "
    "aurum. Tum filius regis, qui melior erat quam pater, puellæ miseræ et pauperibus multa dedit "
    "et ab omnibus "
    "laudatus est. Nox iam erat cum fabula finem habuit, et pueri, quamquam dormire debebant, "
    "plura fabulæ audire volebant. Sed senex ridens eis dixit: cras iterum venite, si licebit.\n";
constexpr char kNewLatin[] =
    "Pueri ex urbe ad ripam venerunt et senex eis librum dedit, quem pater legebat; tum omnes "
    "domum redire debebant, quia nox iam erat.\n";

class GroupChange : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(models_dir() + "/Model.grp")) GTEST_SKIP() << "no models";
  }

  std::string train(const std::string& name, const std::string& switches = "DCX") {
    const std::string path = dir_ / name;
    const std::string charset = name.substr(2, name.rfind('.') - 2);
    const Ended run = run_orva({"train", "-o", path, "--weight", "0.99", "--preprocess", switches,
                                "--charset", charset, dir_.file("text", kLatin)});
    EXPECT_EQ(run.status, 0) << run.err;
    return path;
  }
  Ended change(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"group", "--models", models_dir(), "-o", dir_ / "new"});
    return run_orva(arguments);
  }
  std::string detected(const std::string& text, std::vector<std::string> options) {
    const std::string path = dir_.file("document", text);
    options.insert(options.begin(), "detect");
    options.insert(options.end(), {"--models", dir_ / "new", path});
    const Ended run = run_orva(options);
    EXPECT_EQ(run.err, "");
    return run.out.substr(std::min(run.out.size(), path.size()));
  }
  // The name of a model of the shipped group, counted from the end.
  static std::string last_model(size_t from_end) {
    const Ended info = run_orva({"info", models_dir() + "/Model.grp"});
    std::vector<std::string> names;
    std::istringstream lines(info.out.substr(info.out.find("\nmodels: ")));
    std::string line;
    while (std::getline(lines, line)) {
      std::istringstream words(line);
      std::string number;
      std::string name;
      if (words >> number >> name && number.find_first_not_of("0123456789") == std::string::npos) {
        names.push_back(name);
      }
    }
    return names.at(names.size() - 1 - from_end);
  }

  TempDir dir_;
};

TEST_F(GroupChange, WithoutAnyChangeThePairIsTheSame) {
  const Ended run = change({});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(bytes_of(dir_ / "new/Model.grp") == bytes_of(models_dir() + "/Model.grp"));
  EXPECT_TRUE(bytes_of(dir_ / "new/Model.stc") == bytes_of(models_dir() + "/Model.stc"));
  size_t entries = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir_ / "new")) {
    entries += entry.exists() ? 1 : 0;
  }
  EXPECT_EQ(entries, 2U);  // nothing that was made on the way is left
}

TEST_F(GroupChange, ALanguageOfTheUsersOwnIsFoundBesideTheShippedOnes) {
  const Ended run = change({"--add", train("laUTF-8.tri"), "--add", train("laISO-8859-1.tri"),
                            "--drop", last_model(0), "--drop", last_model(1)});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(detected(kNewLatin, {}), ": US-ASCII la\n");
  EXPECT_EQ(
      detected("Senex puell\xE6 fabulam narravit, qu\xE6 in ripa cum sororibus sedebat.\n", {}),
      ": ISO-8859-1 la\n");
  EXPECT_EQ(detected("Senex puellæ fabulam narravit, quæ in ripa cum sororibus sedebat.\n", {}),
            ": UTF-8 la\n");
  EXPECT_EQ(detected(kNewLatin, {"--classic"}).substr(0, 2), ": ");
  EXPECT_NE(detected(kNewLatin, {"--classic"}).find(" la\n"), std::string::npos);
  EXPECT_EQ(detected("The children came from the town to the river, and the old man gave them the "
                     "book that their father was reading.\n",
                     {}),
            ": US-ASCII en\n");
  const Ended info = run_orva({"info", dir_ / "new/Model.grp"});
  EXPECT_NE(info.out.find("  laUTF-8  "), std::string::npos) << info.out;
  EXPECT_EQ(info.out.find("  " + last_model(0) + "  "), std::string::npos);
}

TEST_F(GroupChange, AFullGroupSaysHowToMakeRoom) {
  const Ended info = run_orva({"info", models_dir() + "/Model.grp"});
  if (info.out.find("models: 199\n") == std::string::npos) GTEST_SKIP() << "there is room";
  const Ended run = change({"--add", train("laUTF-8.tri")});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("200 models, more than 199: make room with --drop NAME"),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(std::filesystem::exists(dir_ / "new/Model.grp"));
}

TEST_F(GroupChange, SaysWhichNameOrModelIsWrong) {
  const std::string last = last_model(0);
  const std::string good = train("laUTF-8.tri");
  const std::string twin = dir_ / (last_model(1) + ".tri");
  std::filesystem::copy_file(good, twin);
  const struct {
    std::vector<std::string> arguments;
    const char* reason;
  } cases[] = {
      {{"--drop", "xxUTF-8"}, "--drop: no model is named \"xxUTF-8\""},
      {{"--drop", last, "--add", twin}, "is already in the group"},
      {{"--drop", last, "--add", dir_ / "missingX.tri"}, "No such file or directory"},
      {{"--drop", last, "--add", train("laKOI8-R.tri", "DC")},
       "trained with the switches \"DC\", but the group with \"DCX\""},
      {{"--drop", last, "--add", dir_.file("laX.tri", "V25a\n")}, "no valid model"},
      {{"--drop", last, good}, "excludes"},
  };
  for (const auto& c : cases) {
    const Ended run = change(c.arguments);
    EXPECT_EQ(run.status, 2) << c.reason;
    EXPECT_NE(run.err.find(c.reason), std::string::npos) << run.err;
  }
  EXPECT_FALSE(std::filesystem::exists(dir_ / "new/Model.grp"));
}

TEST_F(GroupChange, APairWhoseCountsDifferIsRefused) {
  std::filesystem::create_directory(dir_ / "odd");
  std::filesystem::copy_file(models_dir() + "/Model.grp", dir_ / "odd/Model.grp");
  dir_.file("odd/Model.stc", std::string("\1\0\0\0\3\0\0\0\0\0A", 11));
  const Ended run = run_orva({"group", "--models", dir_ / "odd", "-o", dir_ / "new"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("names 1 charsets, but Model.grp holds "), std::string::npos) << run.err;
}

TEST_F(GroupChange, ModelsOrAChangeMustBeGiven) {
  EXPECT_EQ(run_orva({"group", "-o", dir_ / "x"}).status, 2);
}

}  // namespace
}  // namespace orva
