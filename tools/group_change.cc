// Changing a group without the sources of its models: it is taken apart into models, some are left
// out, others put beside, and all are compiled again.
#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "lib/api/model_names.h"
#include "lib/build/taken_apart.h"
#include "lib/util/accounting.h"
#include "tools/classic.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/group_files.h"
#include "tools/group_steps.h"
#include "tools/names_file.h"
#include "tools/report.h"

namespace orva {
namespace {

// A folder that goes with the object.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& parent) : path_(parent + "/.models-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) path_.clear();
  }
  ~ScratchFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// What is to be compiled.
struct Parts {
  ModelList models;
  std::vector<int> sets;
  std::vector<std::string> charsets;
};

// The group to change, in the folder `dir`.
bool load_base(const std::string& dir, CLidMGroup* group, std::vector<std::string>* charsets) {
  const std::string names = dir + "/Model.stc";
  const std::string models = dir + "/Model.grp";
  std::string error;
  for (const std::string& path : {names, models}) {
    if (is_readable_file(path, &error)) continue;
    report_error(path, error);
    return false;
  }
  error = load_group(models, group);
  if (!error.empty()) {
    report_error(models, error);
    return false;
  }
  if (!load_model_names(names, charsets, &error)) {
    report_error(names, error);
    return false;
  }
  if (charsets->size() == static_cast<size_t>(group->nb_models)) return true;
  report_error(names, "names " + std::to_string(charsets->size()) +
                          " charsets, but Model.grp holds " + std::to_string(group->nb_models) +
                          " models");
  return false;
}

// The fact sets that still have two models or more, numbered anew; the other models are in none.
void renumber_sets(std::vector<int>* sets) {
  std::vector<int> sizes(kMaxModels + 1, 0);
  for (const int set : *sets) {
    if (set >= 0) ++sizes[static_cast<size_t>(set)];
  }
  std::vector<int> numbers(sizes.size(), -1);
  int next = 0;
  for (size_t set = 0; set < sizes.size(); ++set) {
    if (sizes[set] > 1) numbers[set] = next++;
  }
  for (int& set : *sets) {
    if (set >= 0) set = numbers[static_cast<size_t>(set)];
  }
}

// Writes the models that stay into `folder`.
bool keep_models(const TakenApart& taken, const std::vector<std::string>& charsets,
                 const std::vector<std::string>& dropped, const std::string& folder, Parts* parts) {
  for (int m = 0; m < taken.nb_models(); ++m) {
    const std::string& name = taken.name(m);
    if (std::find(dropped.begin(), dropped.end(), name) != dropped.end()) continue;
    const std::string path = folder + "/" + std::to_string(m) + ".tri";
    const std::string error = taken.write(m, path);
    if (!error.empty()) {
      report_error(path, error);
      return false;
    }
    parts->models.paths.push_back(path);
    parts->models.files.push_back(name + ".tri");
    parts->models.names.push_back(name);
    parts->sets.push_back(taken.set(m));
    parts->charsets.push_back(charsets[static_cast<size_t>(m)]);
  }
  renumber_sets(&parts->sets);
  return true;
}

// Models that are to go must be there, and there must be room for those that come.
bool check_change(const TakenApart& taken, const GroupOptions& options) {
  std::set<std::string> names;
  for (int m = 0; m < taken.nb_models(); ++m) names.insert(taken.name(m));
  bool ok = true;
  for (const std::string& name : options.dropped) {
    if (names.erase(name) != 0) continue;
    report_error("--drop", "no model is named \"" + name + "\" (orva info lists the names)");
    ok = false;
  }
  const size_t count = names.size() + options.added.size();
  if (count > kMaxModels) {
    report_error(options.output, std::to_string(count) + " models, more than " +
                                     std::to_string(kMaxModels) +
                                     ": make room with --drop NAME (orva info lists the names)");
    ok = false;
  }
  return ok;
}

// Puts the new models behind those that stay, in no fact set.
bool add_new_models(const GroupOptions& options, const std::string& switches, Parts* parts) {
  std::set<std::string> seen(parts->models.names.begin(), parts->models.names.end());
  const size_t first = parts->models.paths.size();
  bool ok = true;
  for (const std::string& path : options.added) ok = add_model(path, &parts->models, &seen) && ok;
  if (!ok || !check_models(parts->models, first, &switches)) return false;
  for (size_t m = first; m < parts->models.names.size(); ++m) {
    parts->sets.push_back(-1);
    parts->charsets.push_back(parts->models.names[m].substr(2));
  }
  return true;
}

}  // namespace

int change_group(const GroupOptions& options) {
  const std::string base = find_models(options.base);
  if (base.empty()) {
    report_error("group", "no models found; name their folder with --models or ORVA_MODELS");
    return kExitError;
  }
  _MallocChkExitOnErr = 0;
  CLidMGroup old;
  std::vector<std::string> charsets;
  if (!load_base(base, &old, &charsets)) return kExitError;
  const TakenApart taken(old);
  if (!check_change(taken, options)) return kExitError;
  std::error_code error;
  std::filesystem::create_directories(options.output, error);
  const ScratchFolder scratch(options.output);
  if (scratch.path().empty()) {
    report_error(options.output, strerror(errno));
    return kExitError;
  }
  Parts parts;
  if (!keep_models(taken, charsets, options.dropped, scratch.path(), &parts) ||
      !add_new_models(options, taken.switches(), &parts)) {
    return kExitError;
  }
  CLidMGroup group;
  const std::string path = options.output + "/Model.grp";
  if (!compile_models(options, &parts.models, &parts.sets, taken.min_for_direct(), &group) ||
      !within_limits(group, options) || !write_group(group, path) ||
      !write_model_names(options.output + "/Model.stc", parts.charsets)) {
    return kExitError;
  }
  print_summary(group, path);
  return kExitOk;
}

}  // namespace orva
