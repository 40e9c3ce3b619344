#include "tools/group_steps.h"

#include <cstdio>

#include "tools/documents.h"
#include "tools/group_files.h"
#include "tools/output_file.h"
#include "tools/report.h"
#include "tools/v25a_file.h"

namespace orva {
namespace {

constexpr size_t kExtension = 4;  // of a model's file name, dot included
constexpr size_t kMinName = 3;    // two letters of language, and a charset

std::vector<char*> pointers_to(std::vector<std::string>* strings) {
  std::vector<char*> table;
  for (std::string& s : *strings) table.push_back(s.data());
  return table;
}

// Models of one set share values by their quantised bytes, which mean the same cost only where the
// smallest cost and the step agree.
void warn_of_unlike_sets(const CLidMGroup& group) {
  for (int f = 0; f < group.fact_table->nb_facts; ++f) {
    const int* members = group.fact_table->set_first[f];
    for (int k = 1; k < group.fact_table->set_size[f]; ++k) {
      const CmgModel& first = group.models_part.models[members[0]];
      const CmgModel& model = group.models_part.models[members[k]];
      // "Model N (fact set F): not the same smallest cost / step".
      if (model.lpmin != first.lpmin) {
        fprintf(stderr, "Modele %d (fact %d) : pas le meme lpmin  (%f %f)\n", members[k], f,
                static_cast<double>(model.lpmin), static_cast<double>(first.lpmin));
      }
      if (model.grad != first.grad) {
        fprintf(stderr, "Modele %d (fact %d) : pas le meme grad  (%f %f)\n", members[k], f,
                static_cast<double>(model.grad), static_cast<double>(first.grad));
      }
    }
  }
}

void print_line(const char* format, int count, int size, int* total) {
  printf(format, count, size, count * size);
  *total += count * size;
}

// The sizes of a built group: element count, element size and product of each array.
void print_statistics(const CLidMGroup& group) {
  int total = 0;
  printf("\nBuildEnd.\n");
  print_line("\tIStates %5d X %d = %6d\n", group.nb_istates, 8, &total);
  print_line("\tIStChrs %5d X %d = %6d\n", group.istates_chrs_tsize, 1, &total);
  print_line("\tIStDnxt %5d X %d = %6d\n", group.istates_dnxts_tsize, 4, &total);
  print_line("\tLStates %5d X %d = %6d\n", group.lstates_tsize, 4, &total);
  print_line("\tLStVals %5d X %d = %6d\n", group.lstates_vals_tsize, 2, &total);
  print_line("\tDefSo   %5d X %d = %6d\n", group.def_so_tsize, 2, &total);
  print_line("\tUniProb %5d X %d = %6d\n", group.unigram_part.uch_lps_buff_tsize, 2, &total);
  printf("\tTotal %d\n\n", total);
}

}  // namespace

bool add_model(const std::string& path, ModelList* list, std::set<std::string>* seen) {
  const std::string file = path.substr(path.rfind('/') + 1);
  if (file.size() < kExtension + kMinName || file[file.size() - kExtension] != '.') {
    report_error(path,
                 "a model is named by two letters of language, a charset and an extension of "
                 "three characters, such as frUTF-8.tri");
    return false;
  }
  const std::string name = file.substr(0, file.size() - kExtension);
  if (!seen->insert(name).second) {
    report_error(path, "a model named " + name + " is already in the group");
    return false;
  }
  std::string error;
  if (!is_readable_file(path, &error)) {
    report_error(path, error);
    return false;
  }
  list->paths.push_back(path);
  list->files.push_back(file);
  list->names.push_back(name);
  return true;
}

bool check_models(const ModelList& list, size_t first, const std::string* switches) {
  bool ok = true;
  std::string of_first;
  const char* whose = switches != nullptr ? "the group" : "the first model";
  for (size_t m = first; m < list.paths.size(); ++m) {
    const V25aFile file = read_v25a(list.paths[m]);
    for (const std::string& warning : file.warnings) {
      report_error(list.paths[m], "warning: " + warning);
    }
    if (!file.defect.empty()) {
      report_error(list.paths[m], "no valid model: " + file.defect);
      ok = false;
      continue;
    }
    if (m == first) of_first = file.switches;
    const std::string& wanted = switches != nullptr ? *switches : of_first;
    if (file.switches == wanted) continue;
    report_error(list.paths[m], "trained with the switches \"" + file.switches + "\", but " +
                                    whose + " with \"" + wanted + "\"");
    ok = false;
  }
  return ok;
}

bool compile_models(const GroupOptions& options, ModelList* list, std::vector<int>* sets,
                    int min_for_direct, CLidMGroup* group) {
  std::vector<char*> names = pointers_to(&list->names);
  std::vector<char*> paths = pointers_to(&list->paths);
  group->verbose = options.verbose ? 1 : 0;
  const int count = static_cast<int>(list->paths.size());
  if (group->build(paths.data(), names.data(), sets->data(), count, min_for_direct) != 0) {
    report_error(options.output,
                 "the group cannot be built: it has no trigrams, or more models, fact sets, states "
                 "or values than the format can number");
    return false;
  }
  warn_of_unlike_sets(*group);
  if (options.verbose) print_statistics(*group);
  return true;
}

bool within_limits(const CLidMGroup& group, const GroupOptions& options) {
  const std::vector<std::string> limits = exceeded_limits(group);
  for (const std::string& limit : limits) {
    report_error(options.output, (options.force ? "warning: " : "") + limit);
  }
  if (limits.empty() || options.force) return true;
  report_error(options.output,
               "not written: name sets of models that share values with --facts, "
               "keep fewer trigrams a model, or give --force");
  return false;
}

// Writes the group, reads it back, and gives it its name.
bool write_group(const CLidMGroup& group, const std::string& path) {
  OutputFile out(path);
  std::string error;
  if (!out.open(&error)) {
    report_error(path, error);
    return false;
  }
  CLidMGroup copy;
  error = group.save(out.temporary().c_str()) == 0 ? load_group(out.temporary(), &copy)
                                                   : "could not be written";
  if (error.empty() && out.commit(&error)) return true;
  report_error(path, error);
  return false;
}

void print_summary(const CLidMGroup& group, const std::string& path) {
  printf("%s: %d models, %d fact sets, %d trigrams, %d values\n", path.c_str(), group.nb_models,
         group.models_part.nb_facts, group.lstates_tsize, group.lstates_vals_tsize);
}

}  // namespace orva
