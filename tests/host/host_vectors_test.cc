// Every document of the conformance data through orva-host, call by call.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/temp_dir.h"

namespace orva {
namespace {

struct Case {
  std::string document;
  std::string answer;
  std::string calls;  // RESULTxCOUNT runs
};

// What one document's lines of output say.
struct Seen {
  std::map<size_t, std::string> by_block;  // 0 is `Done`
  size_t blocks = 0;
  std::string answer;
};

// The cases by block size.
std::map<std::string, std::vector<Case>> read_cases(const std::string& path) {
  std::map<std::string, std::vector<Case>> cases;
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::istringstream fields(line);
    Case read;
    std::string block;
    std::getline(fields, read.document, '\t');
    std::getline(fields, block, '\t');
    std::getline(fields, read.answer, '\t');
    std::getline(fields, read.calls);
    cases[block].push_back(read);
  }
  return cases;
}

std::string output_of(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> buffer;
  while (const size_t got = fread(buffer.data(), 1, buffer.size(), pipe.get())) {
    text.append(buffer.data(), got);
  }
  return text;
}

// Documents in the order of the output.
std::vector<Seen> parse_output(const std::string& text) {
  std::vector<Seen> all;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const size_t colon = line.rfind(": ");
    const std::string charset = colon == std::string::npos ? "" : line.substr(colon + 2);
    size_t block = 0;
    if (line[0] == '/') {
      all.emplace_back();
    } else if (sscanf(line.c_str(), "  block %zu:", &block) == 1) {
      all.back().by_block[block] = charset;
    } else if (line.starts_with("  Done: ")) {
      all.back().by_block[0] = charset;
    } else if (sscanf(line.c_str(), "  answer after %zu", &all.back().blocks) == 1) {
      all.back().answer = charset == "none" ? "-" : charset;
    }
  }
  return all;
}

// The calls in the form of the data: blocks in order, then `Done`.
std::string runs_of(const Seen& seen) {
  std::vector<std::string> calls;
  for (size_t block = 1; block <= seen.blocks; ++block) {
    const auto told = seen.by_block.find(block);
    calls.push_back(told == seen.by_block.end() ? "-" : told->second);
  }
  const auto told = seen.by_block.find(0);
  calls.push_back(told == seen.by_block.end() ? "-" : told->second);
  std::string runs;
  for (size_t from = 0; from < calls.size();) {
    size_t to = from;
    while (to < calls.size() && calls[to] == calls[from]) ++to;
    if (from != 0) runs += ' ';
    runs += calls[from] + "x" + std::to_string(to - from);
    from = to;
  }
  return runs;
}

class HostVectors : public testing::Test {
 protected:
  void SetUp() override {
    const char* folder = getenv("ORVA_VECTORS");
    if (folder == nullptr) GTEST_SKIP() << "ORVA_VECTORS is not set";
    vectors_ = folder;
    std::filesystem::copy_file(vectors_ + "/group.grp", models_.path() + "/Model.grp");
    std::filesystem::copy_file(vectors_ + "/Model.stc", models_.path() + "/Model.stc");
    cases_ = read_cases(vectors_ + "/detect.tsv");
    ASSERT_EQ(cases_.size(), 4U);
  }

  std::vector<Seen> detect(const std::string& switches, const std::vector<Case>& cases) {
    std::string command = std::string(ORVA_HOST_PROGRAM) + " detect --models " + models_.path() +
                          " " + switches + " " ORVA_COMPONENT_LIBRARY;
    for (const Case& c : cases) command += " " + vectors_ + "/docs/" + c.document;
    return parse_output(output_of(command));
  }

  std::string vectors_;
  TempDir models_;
  std::map<std::string, std::vector<Case>> cases_;
};

TEST_F(HostVectors, StreamingTellsTheObserverTheSameCallByCall) {
  for (const auto& [block, cases] : cases_) {
    const std::vector<Seen> seen = detect("--stream --block " + block, cases);
    ASSERT_EQ(seen.size(), cases.size()) << "block " << block;
    for (size_t i = 0; i < cases.size(); ++i) {
      EXPECT_EQ(runs_of(seen[i]), cases[i].calls) << cases[i].document << ", block " << block;
    }
  }
}

TEST_F(HostVectors, StringDetectorAnswersTheSame) {
  for (const auto& [block, cases] : cases_) {
    const std::vector<Seen> seen = detect("--string", cases);
    ASSERT_EQ(seen.size(), cases.size());
    for (size_t i = 0; i < cases.size(); ++i) {
      EXPECT_EQ(seen[i].answer, cases[i].answer) << cases[i].document;
    }
  }
}

}  // namespace
}  // namespace orva
