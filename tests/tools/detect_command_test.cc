#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

// "The cat sat by the door and waited for the rain to stop" and the like, long enough to be told.
constexpr char kEnglish[] =
    "The old fisherman walked down to the harbour before the sun was up. He had done so every "
    "morning for forty years, and nothing in the world could have kept him from it.\n";
// Windows-1251 would write this otherwise; these are KOI8-R bytes of a Russian sentence.
constexpr char kRussianKoi8[] =
    "\xF3\xD4\xC1\xD2\xD9\xCA \xD2\xD9\xC2\xC1\xCB \xD7\xD9\xDB\xC5\xCC \xCB "
    "\xCD\xCF\xD2\xC0 \xC9 \xC4\xCF\xCC\xC7\xCF \xD3\xCD\xCF\xD4\xD2\xC5\xCC "
    "\xCE\xC1 \xD7\xCF\xC4\xD5, \xCB\xCF\xD4\xCF\xD2\xC1\xD1 \xC2\xD9\xCC\xC1 "
    "\xD3\xD0\xCF\xCB\xCF\xCA\xCE\xCF\xCA.\n";

TEST(DetectCommand, NamesCharsetAndLanguageOfEachFile) {
  const TempDir dir;
  const std::string russian = dir.file("r", kRussianKoi8);
  const Ended run = run_orva({"detect", "--models", models_dir(), russian});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, russian + ": KOI8-R ru\n");
}

TEST(DetectCommand, AnswersForEveryFileThatItCanRead) {
  const TempDir dir;
  const std::string good = dir.file("good", kRussianKoi8);
  const Ended run = run_orva({"detect", "--models", models_dir(), dir / "missing", good});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, good + ": KOI8-R ru\n");
  EXPECT_NE(run.err.find("missing: No such file or directory"), std::string::npos) << run.err;
}

TEST(DetectCommand, AnEmptyFileHasNoAnswerAndStatusOne) {
  const TempDir dir;
  const std::string empty = dir.file("empty", "");
  const Ended run = run_orva({"detect", "--models", models_dir(), empty});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, empty + ": - -\n");
}

TEST(DetectCommand, ReadsStandardInputForADashAndForNoFileAtAll) {
  const TempDir dir;
  const std::string text = dir.file("text", kRussianKoi8);
  for (const std::vector<std::string>& files : {std::vector<std::string>{"-"}, {}}) {
    std::vector<std::string> arguments = {"detect", "--models", models_dir()};
    arguments.insert(arguments.end(), files.begin(), files.end());
    const Ended run = run_orva(arguments, text);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "-: KOI8-R ru\n");
  }
}

TEST(DetectCommand, GivesBytesOfANameThatAreNotUtf8InHexadecimal) {
  const TempDir dir;
  const std::string odd = dir.file("\xFFx", kRussianKoi8);
  const Ended run = run_orva({"detect", "--json", "--models", models_dir(), odd});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\xEF\xBF\xBDx\""), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("ff78\""), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\"charset\":\"KOI8-R\""), std::string::npos) << run.out;
}

TEST(DetectCommand, JsonCharsetIsNullWhenNothingWon) {
  const TempDir dir;
  const Ended run = run_orva({"detect", "--json", "--models", models_dir(), dir.file("empty", "")});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("\"charset\":null"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\"bytes\":0"), std::string::npos) << run.out;
}

TEST(DetectCommand, NamesOnlyWhatIsAllowed) {
  const TempDir dir;
  const std::string text = dir.file("t", kRussianKoi8);
  const Ended only = run_orva({"detect", "--charsets", "windows-1251,ISO-8859-5", text});
  EXPECT_EQ(only.out.find("KOI8"), std::string::npos) << only.out;
  const Ended without = run_orva({"detect", "--not", "KOI8-R,KOI8-U", text});
  EXPECT_EQ(without.out.find(": KOI8-R"), std::string::npos) << without.out;
  const Ended unknown = run_orva({"detect", "--charsets", "no-such", text});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_NE(unknown.err.find("--charsets: unknown charset: \"no-such\""), std::string::npos);
}

TEST(DetectCommand, NamesTheUnknownOnesOfAList) {
  const TempDir dir;
  const std::string text = dir.file("t", kRussianKoi8);
  const Ended charset = run_orva({"detect", "--not", "KOI8-R,no-such,latin1,nor-this", text});
  EXPECT_EQ(charset.status, 2);
  EXPECT_EQ(charset.err, "orva: --not: unknown charset: \"no-such\": \"nor-this\"\n");
  const Ended language = run_orva({"detect", "--languages", "de,qq", text});
  EXPECT_EQ(language.status, 2);
  EXPECT_EQ(language.err, "orva: --languages: no model for this language: \"qq\"\n");
}

TEST(DetectCommand, GivesTheNamesThatAReaderKnows) {
  const TempDir dir;
  const std::string text = dir.file("t", kRussianKoi8);
  const std::string chinese = dir.file("c", "\xD4\xE7\xC9\xCF\xCE\xD2\xC3\xC7\xC8\xA5\xBA\xD3");
  const struct {
    const char* scheme;
    const char* russian;
    const char* hz;
  } cases[] = {{"iana", "KOI8-R", "HZ-GB-2312"},
               {"iconv", "KOI8-R", "-"},
               {"python", "koi8-r", "hz"},
               {"web", "KOI8-R", "-"}};
  const std::string hz = dir.file("hz", "~{TgIOIRCGH%:S~}\n");
  for (const auto& c : cases) {
    const Ended run = run_orva({"detect", "--names", c.scheme, text, hz});
    EXPECT_EQ(run.out, text + ": " + c.russian + " ru\n" + hz + ": " + c.hz + " zh\n") << run.err;
    EXPECT_EQ(run.status, 0);
    const Ended list = run_orva({"detect", "--list", "--names", c.scheme});
    EXPECT_NE(list.out.find(std::string(" ") + c.russian + " "), std::string::npos) << list.out;
  }
  const Ended asked = run_orva({"detect", "--charsets", "cp936", "--json", chinese});
  EXPECT_NE(asked.out.find("\"charset\":\"cp936\""), std::string::npos) << asked.out;
  const Ended none = run_orva({"detect", "--names", "iconv", "--json", hz});
  EXPECT_NE(none.out.find("\"charset\":null,\"language\":\"zh\""), std::string::npos) << none.out;
  EXPECT_EQ(run_orva({"detect", "--names", "other", text}).status, 2);
  const Ended classic =
      run_orva({"detect", "--classic", "--names", "python", "--models", models_dir(), text});
  EXPECT_EQ(classic.out, text + ": koi8-r ru\n") << classic.err;
}

// The largest memory that a program run from here took so far, in kilobytes.
long peak() {
  rusage usage;
  getrusage(RUSAGE_CHILDREN, &usage);
  return usage.ru_maxrss;
}

TEST(DetectCommand, AHugeFileIsReadWithinItsLimit) {
  const TempDir dir;
  const std::string huge = dir.file("huge", std::string(kRussianKoi8) + kRussianKoi8);
  // A hole takes no room on the disk.
  ASSERT_EQ(truncate(huge.c_str(), 1 << 30), 0);
  const Ended run = run_orva({"detect", "--json", huge});
  EXPECT_NE(run.out.find("\"bytes\":262144,"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\"kind\":\"binary\""), std::string::npos) << run.out;
}

TEST(DetectCommand, MemoryDoesNotGrowWithWhatAllReads) {
  const TempDir dir;
  const std::string text = dir.file("text", kRussianKoi8);
  ASSERT_EQ(run_orva({"detect", "--all", text}).status, 0);
  const long before = peak();
  std::string lines;
  while (lines.size() < 20000000) lines += kRussianKoi8;
  const Ended run = run_orva({"detect", "--all", "--json", dir.file("long", lines)});
  EXPECT_NE(run.out.find("\"bytes\":" + std::to_string(lines.size())), std::string::npos);
  EXPECT_NE(run.out.find("\"charset\":\"KOI8-R\""), std::string::npos) << run.out;
  EXPECT_LT(peak() - before, 8000);
}

TEST(DetectCommand, BinaryDataHasNoCharset) {
  const TempDir dir;
  std::string bytes(
      "\x7F"
      "ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\x3E\0\1\0\0\0",
      24);
  bytes += std::string(500, '\0');
  const Ended run = run_orva({"detect", "--json", dir.file("b", bytes)});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("\"kind\":\"binary\""), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\"charset\":null"), std::string::npos) << run.out;
}

TEST(DetectCommand, ListsWhatItKnows) {
  const Ended run = run_orva({"detect", "--list"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("charsets: US-ASCII UTF-8 "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\nlanguages: en "), std::string::npos) << run.out;
}

TEST(DetectCommand, GoesIntoADirectoryOnlyWhenAsked) {
  const TempDir dir;
  const std::string one = dir.file("1", kRussianKoi8);
  const std::string two = dir.file("2", kRussianKoi8);
  const Ended refused = run_orva({"detect", "--models", models_dir(), dir.path()});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.err.find("is a directory (use --recursive)"), std::string::npos);
  const Ended run = run_orva({"detect", "--recursive", "--models", models_dir(), dir.path()});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, one + ": KOI8-R ru\n" + two + ": KOI8-R ru\n");
}

TEST(DetectCommand, AWrongArgumentIsStatusTwo) {
  EXPECT_EQ(run_orva({"detect", "--nonsense"}).status, 2);
  EXPECT_EQ(run_orva({"detect", "--block", "-1", "x"}).status, 2);
  EXPECT_EQ(run_orva({}).status, 2);
  EXPECT_EQ(run_orva({"--help"}).status, 0);
  EXPECT_EQ(run_orva({"--version"}).status, 0);
}

TEST(DetectCommand, ADocumentMayBeAPipeButAModelMayNot) {
  const TempDir dir;
  const std::string fifo = dir / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string models = dir / "models";
  ASSERT_EQ(mkdir(models.c_str(), 0700), 0);
  ASSERT_EQ(mkfifo((models + "/Model.stc").c_str(), 0600), 0);
  const Ended run = run_orva({"detect", "--models", models, dir.file("text", kEnglish)});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("Model.stc: is not a regular file"), std::string::npos) << run.err;
}

TEST(DetectCommand, NamesMustBeAsManyAsModels) {
  const TempDir dir;
  dir.file("Model.grp", bytes_of(models_dir() + "/Model.grp"));
  dir.file("Model.stc", std::string("\1\0\0\0\3\0\0\0\0\0A", 11));
  const std::string text = dir.file("text", kEnglish);
  const Ended run = run_orva({"detect", "--models", dir.path(), text});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("the charset names are those of another group"), std::string::npos)
      << run.err;
  const Ended classic = run_orva({"detect", "--classic", "--models", dir.path(), text});
  EXPECT_EQ(classic.status, 2);
  EXPECT_NE(classic.err.find("names 1 charsets, but Model.grp holds"), std::string::npos)
      << classic.err;
}

TEST(DetectCommand, ADamagedGroupIsExplained) {
  const TempDir dir;
  const std::string group = bytes_of(models_dir() + "/Model.grp");
  dir.file("Model.stc", bytes_of(models_dir() + "/Model.stc"));
  dir.file("Model.grp", group.substr(0, group.size() / 2));
  const std::string text = dir.file("text", kEnglish);
  for (const char* path : {"--all", "--classic"}) {
    const Ended run = run_orva({"detect", path, "--models", dir.path(), text});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("arrays are larger than the file"), std::string::npos) << run.err;
  }
}

}  // namespace
}  // namespace orva
