#include <cerrno>
#include <cstring>

#include "lib/build/fact_sets.h"
#include "lib/util/accounting.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/fact_file.h"
#include "tools/group_steps.h"
#include "tools/names_file.h"
#include "tools/report.h"

namespace orva {
namespace {

// The fact sets that a file names. False when it cannot be read.
bool read_sets(const std::string& facts, ModelList* list, std::vector<int>* sets) {
  std::vector<char*> files;
  for (std::string& file : list->files) files.push_back(file.data());
  sets->assign(files.size(), -1);
  const char* path = facts.empty() ? nullptr : facts.c_str();
  if (build_fact_sets(files.data(), static_cast<int>(files.size()), path, sets->data()) == 0) {
    return true;
  }
  report_error(facts, strerror(errno));
  return false;
}

}  // namespace

int run_group(const GroupOptions& options) {
  if (options.models.size() > kMaxModels) {
    report_error(options.output, std::to_string(options.models.size()) + " models, more than " +
                                     std::to_string(kMaxModels));
    return kExitError;
  }
  ModelList list;
  std::set<std::string> seen;
  bool ok = true;
  for (const std::string& path : options.models) ok = add_model(path, &list, &seen) && ok;
  std::string error;
  if (ok && !options.facts.empty() && !is_readable_file(options.facts, &error)) {
    report_error(options.facts, error);
    ok = false;
  }
  if (!ok || !check_models(list, 0, nullptr)) return kExitError;
  if (!options.facts.empty()) {
    for (const std::string& member : unmatched_fact_members(options.facts, list.files)) {
      report_error(options.facts, "warning: " + member);
    }
  }
  _MallocChkExitOnErr = 0;
  CLidMGroup group;
  std::vector<int> sets;
  if (!read_sets(options.facts, &list, &sets) ||
      !compile_models(options, &list, &sets, kMinForDirect, &group) ||
      !within_limits(group, options) || !write_group(group, options.output)) {
    return kExitError;
  }
  if (!options.stc.empty()) {
    std::vector<std::string> charsets;
    for (const std::string& name : list.names) charsets.push_back(name.substr(2));
    if (!write_model_names(options.stc, charsets)) return kExitError;
  }
  print_summary(group, options.output);
  return kExitOk;
}

}  // namespace orva
