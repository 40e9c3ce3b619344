// Small trigram models made of literal costs, and groups built from them.
//
//   ModelFiles files;
//   files.add("enASCII", {{"the", 1.5f}, {"he ", 2.0f}});
//   CLidMGroup group;
//   ASSERT_EQ(files.build(group), 0);
#ifndef ORVA_TESTS_BUILD_BUILD_FIXTURE_H_
#define ORVA_TESTS_BUILD_BUILD_FIXTURE_H_

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "lib/mgroup/lid_mgroup.h"
#include "tests/support/temp_dir.h"

namespace orva {

// Trigram (three bytes) and cost.
using Costs = std::vector<std::pair<std::string, float>>;

struct ByteCosts : std::map<unsigned char, float> {
  using std::map<unsigned char, float>::map;
};

// The text of a model file; bytes without a cost were never seen.
std::string model_text(const Costs& costs, const ByteCosts& bytes = {{'a', 3.0f}},
                       const std::string& flags = "DCX ");

class ModelFiles {
 public:
  void add(const std::string& name, const Costs& costs, const ByteCosts& bytes = {{'a', 3.0f}},
           const std::string& flags = "DCX ");
  void add_text(const std::string& name, const std::string& text);

  int build(CLidMGroup& group, int min_for_direct = 128);
  int nb() const { return static_cast<int>(names_.size()); }

  const TempDir& dir() const { return dir_; }
  // Null-terminated copies for the interfaces that take char**.
  std::vector<char*> paths();
  std::vector<char*> names();

  std::vector<int> sets;  // of each model, -1 by default

 private:
  TempDir dir_;
  std::vector<std::string> names_;
  std::vector<std::string> paths_;
};

// A leaf's values as (index, code) pairs; empty when the automaton lacks the trigram.
using Values = std::vector<std::pair<int, int>>;
Values values_of(const CLidMGroup& group, const std::string& trigram);

// The state that the automaton falls back to after `trigram`.
int default_successor_of(const CLidMGroup& group, const std::string& trigram);

std::string saved_group(const CLidMGroup& group);

}  // namespace orva

#endif  // ORVA_TESTS_BUILD_BUILD_FIXTURE_H_
