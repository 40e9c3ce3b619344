#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "lib/api/model_names.h"
#include "lib/detect/builtin_models.h"
#include "lib/mgroup/group_format.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/group_files.h"
#include "tools/model_pair.h"
#include "tools/report.h"
#include "tools/v25a_file.h"

namespace orva {
namespace {

constexpr char kGroupPrefix[] = "Package Lid";
constexpr char kModelPrefix[] = "V25a";

// The first bytes of a file, as far as there are any.
std::string first_bytes(const std::string& path, size_t length) {
  std::string start;
  std::string ignored;
  read_document(
      path, length,
      [&](const char* bytes, size_t got) {
        start.assign(bytes, got);
        return false;
      },
      &ignored);
  return start;
}

void print_models(const CLidMGroup& group) {
  printf("models: %d\n", group.nb_models);
  printf("  index  name                  set  normlp     lpmin      grad\n");
  for (int m = 0; m < group.nb_models; ++m) {
    const CmgModel& model = group.models_part.models[m];
    const std::string set =
        model.fact_no == -1 ? "-" : std::to_string(model.fact_no - group.nb_models);
    printf("  %5d  %-20s  %3s  %-9.6g  %-9.6g  %.6g\n", m, model.name, set.c_str(),
           static_cast<double>(model.normlp), static_cast<double>(model.lpmin),
           static_cast<double>(model.grad));
  }
}

void print_fact_sets(const CLidMGroup& group) {
  printf("fact sets: %d\n", group.models_part.nb_facts);
  for (int f = 0; f < group.fact_table->nb_facts; ++f) {
    printf("  %3d:", f);
    for (int k = 0; k < group.fact_table->set_size[f]; ++k) {
      printf(" %s", group.models_part.models[group.fact_table->set_first[f][k]].name);
    }
    printf("\n");
  }
}

void print_automaton(const CLidMGroup& group) {
  printf("automaton: %d internal states, %d trigrams, %d values (%.2f a trigram)\n",
         group.nb_istates, group.lstates_tsize, group.lstates_vals_tsize,
         static_cast<double>(group.lstates_vals_tsize) / group.lstates_tsize);
  printf("  direct from %d bytes; %d direct tables, %d listed bytes\n", group.min_for_direct,
         group.istates_dnxts_tsize / kNbBytes, group.istates_chrs_tsize);
  printf("unigrams: %d values\n", group.unigram_part.uch_lps_buff_tsize);
}

const char* on_off(int flag) { return flag != 0 ? "on" : "off"; }

int print_group(const std::string& path) {
  CLidMGroup group;
  const std::string why = load_group(path, &group);
  if (!why.empty()) {
    report_error(path, why);
    return kExitError;
  }
  printf("%s: model group\n", path.c_str());
  const CmgModels& part = group.models_part;
  printf("switches: cut runs %s, fold capitals %s, drop digits %s, drop blanks %s\n",
         on_off(part.rm_tridups), on_off(part.rm_caps), on_off(part.rm_digits),
         on_off(part.rm_blks));
  print_automaton(group);
  print_fact_sets(group);
  print_models(group);
  for (const std::string& limit : exceeded_limits(group)) {
    printf("warning: %s\n", limit.c_str());
  }
  return kExitOk;
}

int print_model(const std::string& path) {
  const V25aFile file = read_v25a(path);
  if (!file.defect.empty()) {
    report_error(path, "no valid trained model: " + file.defect);
    return kExitError;
  }
  printf("%s: trained model\n", path.c_str());
  printf("switches: %s\n", file.switches.empty() ? "none" : file.switches.c_str());
  printf("weight: %s\n", file.weight.empty() ? "not noted" : file.weight.c_str());
  printf("trigrams: %d, costs %.4f to %.4f\n", file.nb_trigrams, file.lowest_cost,
         file.highest_cost);
  for (const std::string& warning : file.warnings) printf("warning: %s\n", warning.c_str());
  return kExitOk;
}

int print_names(const std::string& path) {
  std::vector<std::string> names;
  std::string error;
  if (!load_model_names(path, &names, &error)) {
    report_error(path,
                 "neither a model group, nor a trained model, nor a table of charset names: "
                 "the first line is of no model; as names: " +
                     error);
    return kExitError;
  }
  printf("%s: charset names of %zu models\n", path.c_str(), names.size());
  for (size_t i = 0; i < names.size(); ++i) printf("  %5zu  %s\n", i, names[i].c_str());
  return kExitOk;
}

std::string bytes_of_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Ties the two files of a folder together, or tells that they do not belong together.
int print_pair(const std::string& dir) {
  const std::string group_path = dir + kGroupFile;
  const std::string names_path = dir + kNamesFile;
  CLidMGroup group;
  std::vector<std::string> names;
  std::string error = load_group(group_path, &group);
  if (!error.empty()) {
    report_error(group_path, error);
    return kExitError;
  }
  if (!load_model_names(names_path, &names, &error)) {
    report_error(names_path, error);
    return kExitError;
  }
  error = pair_defect(group, names);
  if (!error.empty()) {
    report_error(names_path, error);
    return kExitError;
  }
  printf("%s and %s: a pair of %d models, fingerprint %s\n", kGroupFile, kNamesFile,
         group.nb_models,
         pair_fingerprint(bytes_of_file(group_path), bytes_of_file(names_path)).c_str());
  return kExitOk;
}

// The pair that a file is half of, where the other half stands beside it.
int print_pair_of(const std::string& path) {
  const std::string name = path.substr(path.rfind('/') + 1);
  if (name != kGroupFile && name != kNamesFile) return kExitOk;
  const std::string dir = path.substr(0, path.size() - name.size());
  std::error_code error;
  const char* other = name == kGroupFile ? kNamesFile : kGroupFile;
  return std::filesystem::exists(dir + other, error) ? print_pair(dir) : kExitOk;
}

int print_builtin() {
  const auto models = builtin_models();
  if (models == nullptr) {
    report_error("info", "this program has no built-in models; name a FILE");
    return kExitError;
  }
  printf("built in: a pair of %d models, fingerprint %s\n", models->nb_models(),
         pair_fingerprint(builtin_group(), builtin_names()).c_str());
  return kExitOk;
}

}  // namespace

int run_info(const InfoOptions& options) {
  if (options.file.empty()) return print_builtin();
  std::error_code ignored;
  if (std::filesystem::is_directory(options.file, ignored)) return print_pair(options.file + "/");
  std::string error;
  if (!is_readable_file(options.file, &error)) {
    report_error(options.file, error);
    return kExitError;
  }
  const std::string start = first_bytes(options.file, sizeof kGroupPrefix - 1);
  if (start.starts_with(kModelPrefix)) return print_model(options.file);
  const int printed = start == kGroupPrefix ? print_group(options.file) : print_names(options.file);
  return printed == kExitOk ? print_pair_of(options.file) : printed;
}

}  // namespace orva
