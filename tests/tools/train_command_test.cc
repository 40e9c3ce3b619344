#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

// A short tale in French, UTF-8; "\xC5\x93" is a ligature that ISO-8859-1 lacks.
constexpr char kTale[] =
    "Le vieux p\xC3\xAA"
    "cheur descendait chaque matin vers le port, bien avant le lever du soleil.\n"
    "Sa s\xC5\x93ur l'attendait pr\xC3\xA8s de la fontaine, une lanterne \xC3\xA0 la main.\n"
    "Ils ne parlaient gu\xC3\xA8re, car tout \xC3\xA9tait dit depuis longtemps.\n";

std::string trained(const TempDir& dir, std::vector<std::string> arguments) {
  const std::string model = dir / "model.tri";
  arguments.insert(arguments.begin(), {"train", "-o", model});
  const Ended run = run_orva(arguments);
  EXPECT_EQ(run.status, 0) << run.err;
  return bytes_of(model);
}

TEST(TrainCommand, SeveralTextsTrainAsTheirConcatenation) {
  const TempDir dir;
  const std::string tale = kTale;
  // Cut within a word and within a character.
  const size_t cut = tale.find("\xC5\x93") + 1;
  const std::string whole = dir.file("whole", tale);
  const std::string first = dir.file("first", tale.substr(0, cut));
  const std::string second = dir.file("second", tale.substr(cut));
  for (const char* charset : {"", "ISO-8859-1", "ISO-2022-JP", "UTF-16LE"}) {
    std::vector<std::string> options;
    if (*charset != '\0') options = {"--charset", charset};
    std::vector<std::string> one = options;
    one.push_back(whole);
    std::vector<std::string> two = options;
    two.insert(two.end(), {first, second});
    EXPECT_EQ(trained(dir, one), trained(dir, two)) << charset;
  }
}

TEST(TrainCommand, ConversionTrainsOnTheConvertedBytes) {
  const TempDir dir;
  std::string latin1 = kTale;
  latin1.erase(latin1.find("\xC5\x93"), 2);
  for (size_t at = 0; (at = latin1.find('\xC3', at)) != std::string::npos;) {
    latin1.erase(at, 1);
    latin1[at] = static_cast<char>(latin1[at] + 0x40);
  }
  const std::string marked = dir.file("utf8", std::string("\xEF\xBB\xBF") + kTale);
  EXPECT_EQ(trained(dir, {"--charset", "ISO-8859-1", marked}),
            trained(dir, {dir.file("latin1", latin1)}));
}

TEST(TrainCommand, CountsWhatACharsetCannotHold) {
  const TempDir dir;
  const Ended run =
      run_orva({"train", "-o", dir / "m.tri", "--charset", "ISO-8859-1", dir.file("tale", kTale)});
  EXPECT_NE(run.out.find("1 characters left out that ISO-8859-1 cannot hold"), std::string::npos)
      << run.out;
}

TEST(TrainCommand, InvalidUtf8IsAnErrorThatNamesTheOffset) {
  const TempDir dir;
  const std::string good = dir.file("good", "good text\n");
  const std::string bad = dir.file("bad", "first line\nsecond \xFF line\n");
  const Ended run = run_orva({"train", "-o", dir / "m.tri", "--charset", "ISO-8859-1", good, bad});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("bad: invalid UTF-8 at byte 18"), std::string::npos) << run.err;
  EXPECT_EQ(bytes_of(dir / "m.tri"), "");
}

TEST(TrainCommand, ReportsWhatItCounted) {
  const TempDir dir;
  const std::string model = dir / "m.tri";
  const Ended run = run_orva({"train", "-o", model, dir.file("t", "ababab")});
  EXPECT_EQ(run.out, model +
                         ": 4 bytes counted, 2 distinct trigrams, 2 bigrams, "
                         "2 trigrams kept\n");
}

TEST(TrainCommand, WrongArgumentsAreStatusTwo) {
  const TempDir dir;
  const std::string text = dir.file("t", "ababab");
  const std::string model = dir / "m.tri";
  const std::vector<std::vector<std::string>> cases = {{"--weight", "1", text},
                                                       {"--weight", "-0.1", text},
                                                       {"--max-tri", "0", text},
                                                       {"--preprocess", "Q", text},
                                                       {"--charset", "no-such", text},
                                                       {dir / "missing"},
                                                       {dir.path()},
                                                       {}};
  for (std::vector<std::string> arguments : cases) {
    arguments.insert(arguments.begin(), {"train", "-o", model});
    EXPECT_EQ(run_orva(arguments).status, 2) << testing::PrintToString(arguments);
  }
  EXPECT_EQ(run_orva({"train", "-o", dir / "no/such/dir.tri", text}).status, 2);
  EXPECT_EQ(bytes_of(model), "");
}

TEST(TrainCommand, AModelIsReplacedOnlyByACompleteOne) {
  const TempDir dir;
  const std::string model = dir.file("m.tri", "what was there");
  const Ended run = run_orva({"train", "-o", model, dir / "missing"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(bytes_of(model), "what was there");
}

}  // namespace
}  // namespace orva
