// Documents fed in blocks, as a host does, against figures that an independent implementation made.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "lib/api/detection_run.h"
#include "lib/api/markup.h"
#include "lib/api/model_names.h"
#include "lib/api/pemb.h"
#include "tests/support/temp_dir.h"

namespace {

// One document: what a host is told by each of its calls, empty for nothing.
class Streaming {
 public:
  Streaming(PembHandle* handle, const std::vector<std::string>& charsets)
      : handle_(handle), charsets_(charsets) {
    EXPECT_EQ(pemb_load(handle), 0);
  }

  std::string take(const std::string& block) {
    if (!done_) {
      std::string text(block.size(), '\0');
      text.resize(orva::strip_markup(block.data(), block.size(), text.data(), &in_markup_));
      orva::feed_text(handle_, text.data(), static_cast<unsigned>(text.size()));
      done_ = orva::is_certain(orva::read_scores(handle_, &best_));
    }
    return done_ ? end() : "";
  }

  std::string end() const { return best_ < 0 ? "" : charsets_[static_cast<size_t>(best_)]; }

 private:
  PembHandle* handle_;
  const std::vector<std::string>& charsets_;
  int in_markup_ = 0;
  int best_ = -1;
  bool done_ = false;
};

// "ANSWERxCOUNT" for each run of equal answers.
std::string in_runs(const std::vector<std::string>& answers) {
  std::string result;
  for (size_t i = 0; i < answers.size();) {
    size_t end = i;
    while (end < answers.size() && answers[end] == answers[i]) ++end;
    if (!result.empty()) result += ' ';
    result += (answers[i].empty() ? "-" : answers[i]) + "x" + std::to_string(end - i);
    i = end;
  }
  return result;
}

}  // namespace

TEST(StreamingVectors, EachCallTellsTheHostWhatItShould) {
  const char* const folder = getenv("ORVA_VECTORS");
  if (folder == nullptr) GTEST_SKIP() << "ORVA_VECTORS is not set";
  const std::string dir = folder;
  PembHandle* const handle = pemb_init((dir + "/group.grp").c_str());
  ASSERT_NE(handle, nullptr);
  std::vector<std::string> charsets;
  std::string error;
  ASSERT_TRUE(orva::load_model_names(dir + "/Model.stc", &charsets, &error)) << error;
  std::ifstream rows(dir + "/detect.tsv");
  std::string line;
  std::getline(rows, line);
  int nb_rows = 0;
  for (; std::getline(rows, line); ++nb_rows) {
    std::istringstream fields(line);
    std::string name, size, one_shot, expected;
    std::getline(fields, name, '\t');
    std::getline(fields, size, '\t');
    std::getline(fields, one_shot, '\t');
    std::getline(fields, expected, '\t');
    const std::string document = orva::bytes_of(dir + "/docs/" + name);
    const size_t block = size == "0" ? document.size() : std::stoul(size);
    Streaming run(handle, charsets);
    std::vector<std::string> answers;
    for (size_t at = 0; at < document.size(); at += block) {
      answers.push_back(run.take(document.substr(at, block)));
    }
    answers.push_back(run.end());
    EXPECT_EQ(in_runs(answers), expected) << name << " in blocks of " << size;
    // The one-shot detector sees the whole document in one call.
    Streaming whole(handle, charsets);
    whole.take(document);
    EXPECT_EQ(whole.end().empty() ? "-" : whole.end(), one_shot) << name;
  }
  EXPECT_GT(nb_rows, 0);
  pemb_dispose(handle);
  free(handle);
}
