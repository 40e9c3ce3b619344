#include "tests/build/build_fixture.h"

#include <cstdio>
#include <cstdlib>

#include "lib/mgroup/group_format.h"
#include "tests/reference/naive_trainer.h"

namespace orva {

std::string model_text(const Costs& costs, const ByteCosts& bytes, const std::string& flags) {
  std::string text = "V25a" + flags + "\n2.0000\n";
  char number[64];
  for (int c = 0; c < 256; ++c) {
    const auto at = bytes.find(static_cast<unsigned char>(c));
    snprintf(number, sizeof number, "%.9g ", at == bytes.end() ? -1.0 : double{at->second});
    text += number;
    if (c % 8 == 7) text += "\n";
  }
  text += "1.0000 2.0000\n";
  for (const auto& [trigram, cost] : costs) {
    snprintf(number, sizeof number, "%.9g\t", double{cost});
    text += number + hex_of(trigram) + "\n";
  }
  return text;
}

void ModelFiles::add(const std::string& name, const Costs& costs, const ByteCosts& bytes,
                     const std::string& flags) {
  add_text(name, model_text(costs, bytes, flags));
}

void ModelFiles::add_text(const std::string& name, const std::string& text) {
  names_.push_back(name);
  paths_.push_back(dir_.file(name + ".tri", text));
  sets.push_back(-1);
}

std::vector<char*> ModelFiles::paths() {
  std::vector<char*> out;
  for (std::string& path : paths_) out.push_back(path.data());
  return out;
}

std::vector<char*> ModelFiles::names() {
  std::vector<char*> out;
  for (std::string& name : names_) out.push_back(name.data());
  return out;
}

int ModelFiles::build(CLidMGroup& group, int min_for_direct) {
  return group.build(paths().data(), names().data(), sets.data(), nb(), min_for_direct);
}

namespace {
int leaf_of(const CLidMGroup& group, const std::string& trigram) {
  int state = 0;
  for (const char c : trigram) {
    state = group.child(state, static_cast<unsigned char>(c));
    if (state == 0) return -1;
  }
  return state - group.nb_istates;
}
}  // namespace

Values values_of(const CLidMGroup& group, const std::string& trigram) {
  const int leaf = leaf_of(group, trigram);
  if (leaf < 0) return {};
  Values values;
  const int first = leaf_first(group.lstates[leaf]);
  for (int k = 0; k < leaf_count_unsigned(group.lstates[leaf]); ++k) {
    const uint16_t value = group.lstates_vals[first + k];
    values.emplace_back(value_index(value), static_cast<int>(value_cost(value)));
  }
  return values;
}

int default_successor_of(const CLidMGroup& group, const std::string& trigram) {
  return group.def_so[leaf_of(group, trigram)];
}

std::string saved_group(const CLidMGroup& group) {
  const TempDir dir;
  const std::string path = dir / "group";
  if (group.save(path.c_str()) != 0) abort();
  return bytes_of(path);
}

}  // namespace orva
