// The program against figures that an independent implementation made.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

std::vector<std::string> fields_of(const std::string& line, char separator) {
  std::vector<std::string> fields;
  std::istringstream in(line);
  for (std::string field; std::getline(in, field, separator);) fields.push_back(field);
  return fields;
}

// Calls `check` with the fields of every row but the first.
template <typename Check>
void for_each_row(const std::string& path, Check check) {
  std::ifstream in(path);
  ASSERT_TRUE(in) << path;
  std::string line;
  std::getline(in, line);
  int nb_rows = 0;
  for (; std::getline(in, line); ++nb_rows) check(fields_of(line, '\t'));
  EXPECT_GT(nb_rows, 0);
}

// What `orva score` should print for a row of scores.
std::string expected_scores(const std::vector<std::string>& row,
                            const std::vector<std::string>& names) {
  if (row[2] == "-") return "no score\n";
  std::string text;
  const std::vector<std::string> scores = fields_of(row[4], ' ');
  for (size_t m = 0; m < scores.size(); ++m) text += names[m] + "\t" + scores[m] + "\n";
  return text + "best\t" + row[2] + "\t" + row[3] + "\n";
}

const std::vector<std::string> kNames = {
    "enISO-8859-1", "frISO-8859-1",   "frUTF-8",        "deISO-8859-1",   "deUTF-8",
    "esISO-8859-1", "plISO-8859-2",   "plwindows-1250", "plUTF-8",        "csISO-8859-2",
    "ruKOI8-R",     "ruwindows-1251", "ruISO-8859-5",   "ruUTF-8",        "elISO-8859-7",
    "elUTF-8",      "trISO-8859-9",   "hewindows-1255", "arwindows-1256", "thTIS-620",
    "jaShift_JIS",  "jaEUC-JP",       "jaUTF-8",        "zhGB18030",      "zhBig5",
    "koEUC-KR"};

TEST(Vectors, EveryScoreAgreesToNineDigits) {
  const std::string dir = vectors_dir();
  if (dir.empty()) GTEST_SKIP() << "ORVA_VECTORS names no folder of test vectors";
  for_each_row(dir + "/scores.tsv", [&](const std::vector<std::string>& row) {
    const Ended run = run_orva({"score", "--group", dir + "/" + row[0], dir + "/docs/" + row[1]});
    EXPECT_EQ(run.out, expected_scores(row, kNames)) << row[0] << " " << row[1];
  });
}

TEST(Vectors, TheLastNotificationOfEveryDocumentIsTheAnswer) {
  const std::string dir = vectors_dir();
  if (dir.empty()) GTEST_SKIP() << "ORVA_VECTORS names no folder of test vectors";
  const TempDir models;
  models.file("Model.grp", bytes_of(dir + "/group.grp"));
  models.file("Model.stc", bytes_of(dir + "/Model.stc"));
  for_each_row(dir + "/detect.tsv", [&](const std::vector<std::string>& row) {
    const std::string path = dir + "/docs/" + row[0];
    const Ended run = run_orva({"detect", "--models", models.path(), "--block", row[1], path});
    const std::string last = fields_of(row[3], ' ').back();
    const std::string charset = last.substr(0, last.rfind('x'));
    EXPECT_EQ(run.out.rfind(path + ": " + charset + " ", 0), 0U) << run.out << row[1];
  });
}

}  // namespace
}  // namespace orva
