#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

// "The old harbour town lies between two hills", in Russian, as KOI8-R has it.
constexpr char kRussian[] =
    "\xF3\xD4\xC1\xD2\xD9\xCA \xD0\xCF\xD2\xD4\xCF\xD7\xD9\xCA \xC7\xCF\xD2\xCF\xC4 "
    "\xCC\xC5\xD6\xC9\xD4 \xCD\xC5\xD6\xC4\xD5 \xC4\xD7\xD5\xCD\xD1 "
    "\xC8\xCF\xCC\xCD\xC1\xCD\xC9.\n";
constexpr char kFrench[] =
    "Le vieux port s'\xE9tend entre deux collines, et la for\xEAt commence juste derri\xE8re.\n";

// A folder of a Russian, a French and an empty document.
class EvalCommand : public testing::Test {
 protected:
  EvalCommand() {
    dir_.file("ru.txt", kRussian);
    dir_.file("fr.txt", kFrench);
    dir_.file("empty.txt", "");
  }

  // Runs `orva eval` on a manifest of these lines.
  Ended eval(const std::string& lines, std::vector<std::string> options = {}) {
    options.insert(options.begin(), "eval");
    options.push_back(dir_.file("manifest.tsv", "path\tcharset\tlanguage\tw\n" + lines));
    return run_orva(options);
  }

  TempDir dir_;
};

TEST_F(EvalCommand, CountsWhatIsRightByCharsetAndLanguage) {
  const Ended run = eval("ru.txt\tKOI8-R\tru\nfr.txt\tcp1252\tfr\n");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("all                        2   100.0"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("KOI8-R                     1   100.0   100.0     100.0"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("expected calibration error 0."), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("answered wrong"), std::string::npos) << run.out;
}

TEST_F(EvalCommand, ShowsWhatWasTakenForWhat) {
  const Ended run = eval("ru.txt\twindows-1251\tbg\n");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("1  windows-1251 -> KOI8-R\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("1  bg -> ru\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("all                        1     0.0     0.0       0.0"),
            std::string::npos)
      << run.out;
}

TEST_F(EvalCommand, PrintsOneJsonObject) {
  const Ended run = eval("ru.txt\tKOI8-R\tru\n", {"--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out.find("{\"all\":{\"documents\":1,\"same_text\":1.0,\"same_name\":1.0,"
                         "\"with_language\":1,\"language\":1.0},"),
            0U)
      << run.out;
  EXPECT_NE(run.out.find("\"calibration\":{\"error\":"), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find('\n'), run.out.size() - 1);
}

TEST_F(EvalCommand, DrawsAPictureOfItsOwn) {
  const Ended run = eval("ru.txt\tKOI8-R\tru\n", {"--svg", dir_ / "p.svg"});
  EXPECT_EQ(run.status, 0) << run.err;
  const std::string picture = bytes_of(dir_ / "p.svg");
  EXPECT_EQ(picture.find("<svg xmlns=\"http://www.w3.org/2000/svg\""), 0U);
  EXPECT_NE(picture.find(">KOI8-R</text>"), std::string::npos);
  EXPECT_NE(picture.find("class=\"dot\""), std::string::npos);
  EXPECT_NE(picture.find("</svg>\n"), std::string::npos);
  EXPECT_EQ(picture.find("href"), std::string::npos) << "needs something outside";
}

TEST_F(EvalCommand, ReadsPiecesAndWindows) {
  // The first five bytes of the French document are ASCII; the whole is not.
  const Ended piece = eval("fr.txt\tUS-ASCII\t\t0:5\nru.txt\tKOI8-R\t\t\n", {"--piece", "w"});
  EXPECT_EQ(piece.status, 0) << piece.err;
  EXPECT_NE(piece.out.find("all                        1   100.0"), std::string::npos) << piece.out;
  const Ended window = eval("ru.txt\tKOI8-R\tru\n", {"--window", "24", "--json"});
  EXPECT_EQ(window.status, 0) << window.err;
  EXPECT_EQ(eval("ru.txt\tKOI8-R\n", {"--window", "9", "--piece", "w"}).status, 2);
}

TEST_F(EvalCommand, ADocumentWithoutAnAnswerGivesStatusOne) {
  const Ended run = eval("empty.txt\tUS-ASCII\n");
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("without an answer          1"), std::string::npos) << run.out;
}

TEST_F(EvalCommand, MissingFilesAreReportedAndTheOthersMeasured) {
  const Ended run = eval("gone.txt\tUTF-8\nru.txt\tKOI8-R\tru\n");
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("/gone.txt: No such file or directory\n"), std::string::npos) << run.err;
  EXPECT_NE(run.out.find("all                        1   100.0"), std::string::npos) << run.out;
}

TEST_F(EvalCommand, AWrongManifestIsReportedWithItsLine) {
  const Ended charset = eval("ru.txt\tKOI-99\n");
  EXPECT_EQ(charset.status, 2);
  EXPECT_EQ(charset.out, "");
  EXPECT_NE(charset.err.find("manifest.tsv: line 2: unknown charset \"KOI-99\"\n"),
            std::string::npos)
      << charset.err;
  EXPECT_NE(eval("").err.find("manifest.tsv: names no documents\n"), std::string::npos);
  const Ended gone = run_orva({"eval", dir_ / "gone.tsv"});
  EXPECT_EQ(gone.status, 2);
  EXPECT_NE(gone.err.find("gone.tsv: No such file or directory\n"), std::string::npos) << gone.err;
  EXPECT_EQ(run_orva({"eval", dir_.path()}).status, 2);
}

TEST_F(EvalCommand, APictureThatCannotBeWrittenIsAnError) {
  const Ended run = eval("ru.txt\tKOI8-R\tru\n", {"--svg", dir_ / "no/such/p.svg"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("p.svg: "), std::string::npos) << run.err;
}

}  // namespace
}  // namespace orva
