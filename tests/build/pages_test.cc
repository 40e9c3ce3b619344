// The worked examples of the pages are what the library really does.

#include <gtest/gtest.h>

#include <sstream>

#include "lib/build/fact_sets.h"
#include "lib/eval/lid_mgroup_eval.h"
#include "lib/facs/lid_facs.h"
#include "lib/mgroup/hc_writer.h"
#include "lib/trichr/trichr_model.h"
#include "tests/build/build_fixture.h"

namespace {

std::string page(const std::string& name) {
  return orva::bytes_of(std::string(ORVA_SOURCE_DIR) + "/doc/" + name);
}

void expect_on_page(const std::string& name, const std::string& text) {
  EXPECT_NE(page(name).find(text), std::string::npos) << text;
}

// The n-th fenced block of a page, without its fences.
std::string block(const std::string& name, int n) {
  std::istringstream lines(page(name));
  std::string line;
  std::string text;
  for (int fences = 0; std::getline(lines, line);) {
    if (line.rfind("```", 0) == 0) {
      ++fences;
    } else if (fences == 2 * n + 1) {
      text += line + "\n";
    }
  }
  return text;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string joined(const std::vector<std::string>& lines, size_t from, size_t to) {
  std::string text;
  for (size_t i = from; i < to; ++i) text += lines[i] + "\n";
  return text;
}

}  // namespace

TEST(ModelPage, ItsExampleIsWhatTrainingWrites) {
  const orva::TempDir dir;
  CLidFacs facs;
  ASSERT_EQ(facs.init(dir.file("text", "the cat, the hat").c_str(), 0, 0, -1, 0, 0, 0, 0), 1);
  CTrichrModel model;
  model.build(facs, 1000, 0, 0.9f, 0.0f, 0, 0, 0, 0);
  const std::string path = dir / "model.tri";
  ASSERT_EQ(model.save(path.c_str(), 0.9f), 0);
  const std::vector<std::string> lines = lines_of(orva::bytes_of(path));
  ASSERT_GT(lines.size(), 36u);
  EXPECT_EQ(block("V25A_FORMAT.md", 0), joined(lines, 0, 3));
  EXPECT_EQ(block("V25A_FORMAT.md", 1), joined(lines, 34, lines.size()));
}

TEST(FactSetPage, ItsExampleMakesItsSets) {
  const orva::TempDir dir;
  std::vector<std::string> names = {"frISO-8859-1", "frUTF-8", "deISO-8859-1", "deUTF-8",
                                    "elUTF-8"};
  std::vector<char*> pointers;
  for (std::string& name : names) pointers.push_back(name.data());
  int sets[5];
  const std::string facts = dir.file("facts", block("FACT_SETS.md", 0));
  ASSERT_EQ(build_fact_sets(pointers.data(), 5, facts.c_str(), sets), 0);
  std::string table;
  for (size_t i = 0; i < 5; ++i) table += names[i] + " " + std::to_string(sets[i]) + "\n";
  EXPECT_EQ(block("FACT_SETS.md", 1), table);
}

TEST(ExportPage, ItsExampleIsWhatIsExported) {
  orva::ModelFiles files;
  files.add("enASCII", {{"abc", 1.0f}, {"abd", 2.0f}});
  files.add("frASCII", {{"abc", 1.0f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  const orva::TempDir dir;
  const std::string table = dir.file("table", "");
  FILE* c_file = fopen(table.c_str(), "w");
  FILE* h_file = fopen((dir / "header").c_str(), "w");
  EXPECT_EQ(orva::write_export(group, c_file, h_file), 0);
  fclose(c_file);
  fclose(h_file);
  for (const int n : {0, 1}) {
    EXPECT_NE(orva::bytes_of(table).find(block("HARDCODED_EXPORT.md", n)), std::string::npos) << n;
  }
}

TEST(AutomatonPage, ItsStatesLeavesAndScoresAreThoseOfTheGroup) {
  orva::ModelFiles files;
  files.add("enASCII", {{"abc", 1.0f}, {"bcd", 3.0f}}, {{'a', 2.0f}, {'b', 3.0f}});
  files.add("frASCII", {{"abc", 2.0f}, {"abd", 5.0f}}, {{'c', 2.5f}, {'d', 4.0f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  ASSERT_EQ(group.nb_istates, 5);
  const struct {
    int state;
    char byte;
    int next;
  } steps[] = {{0, 'a', 1}, {0, 'b', 2}, {1, 'b', 3}, {2, 'c', 4},
               {3, 'c', 5}, {3, 'd', 6}, {4, 'd', 7}};
  for (const auto& s : steps) {
    EXPECT_EQ(group.child(s.state, static_cast<unsigned char>(s.byte)), s.next);
    expect_on_page("AUTOMATON.md", std::string("`") + s.byte + "` " + std::to_string(s.next));
  }
  EXPECT_EQ(orva::values_of(group, "abc"), (orva::Values{{0, 0}, {1, 0}}));
  EXPECT_EQ(orva::values_of(group, "abd"), (orva::Values{{1, 192}}));
  EXPECT_EQ(orva::values_of(group, "bcd"), (orva::Values{{0, 171}}));
  EXPECT_EQ(orva::default_successor_of(group, "abc"), 4);
  EXPECT_EQ(orva::default_successor_of(group, "abd"), 0);
  EXPECT_EQ(orva::default_successor_of(group, "bcd"), 0);

  CLidMGroupEval eval(&group);
  ASSERT_EQ(eval.init(), 0);
  eval.auto_init('a', 'b');
  const unsigned char rest[] = {'c', 'd'};
  eval.auto_nexts(rest, 2);
  const float* scores = eval.get_lprobs();
  for (const int m : {0, 1}) {
    char score[32];
    snprintf(score, sizeof score, "**%.10g**", static_cast<double>(scores[m]));
    expect_on_page("AUTOMATON.md", score);
  }
}
