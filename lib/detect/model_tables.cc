#include "lib/detect/model_tables.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "lib/api/model_names.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/homes.h"
#include "lib/util/accounting.h"

namespace orva {

namespace {

constexpr size_t kLanguageLength = 2;

// The accounted allocator counts in plain globals.
std::recursive_mutex& loading() {
  static std::recursive_mutex mutex;
  return mutex;
}

struct Closer {
  void operator()(FILE* stream) const { fclose(stream); }
};
using Stream = std::unique_ptr<FILE, Closer>;

bool read_names(std::string_view bytes, std::vector<std::string>* names) {
  ModelNamesReader reader;
  reader.read = [&bytes](void* buffer, int size) {
    const size_t n = std::min(bytes.size(), static_cast<size_t>(size));
    if (n != 0) memcpy(buffer, bytes.data(), n);
    bytes.remove_prefix(n);
    return static_cast<int>(n);
  };
  reader.allocate = [names](int count) {
    names->assign(static_cast<size_t>(count), std::string());
    return true;
  };
  reader.store = [names](int i, const char* name) { (*names)[static_cast<size_t>(i)] = name; };
  int count = 0;
  return read_model_names(reader, &count) == kNamesOk;
}

}  // namespace

ModelTables::ModelTables() : owned_(new CLidMGroup), group_(*owned_) {}

ModelTables::~ModelTables() {
  const std::lock_guard<std::recursive_mutex> lock(loading());
  owned_.reset();
}

std::unique_ptr<const ModelTables> ModelTables::load_files(const std::string& group_path,
                                                           const std::string& names_path,
                                                           std::string* why) {
  std::vector<std::string> names;
  if (!load_model_names(names_path, &names, why)) return nullptr;
  const std::lock_guard<std::recursive_mutex> lock(loading());
  _MallocChkExitOnErr = 0;
  const Stream stream(fopen(group_path.c_str(), "rb"));
  if (stream == nullptr) {
    *why = group_path + ": cannot be opened";
    return nullptr;
  }
  std::unique_ptr<ModelTables> tables(new ModelTables);
  std::string defect;
  if (tables->group_.load(stream.get(), &defect) != kGroupOk) {
    *why = group_path + ": " + defect;
    return nullptr;
  }
  return finish(std::move(tables), names, why);
}

std::unique_ptr<const ModelTables> ModelTables::load_memory(std::string_view group,
                                                            std::string_view names_bytes,
                                                            std::string* why) {
  std::vector<std::string> names;
  if (!read_names(names_bytes, &names)) {
    *why = "the charset names are damaged";
    return nullptr;
  }
  const std::lock_guard<std::recursive_mutex> lock(loading());
  _MallocChkExitOnErr = 0;
  // The stream only reads, though fmemopen takes a plain pointer.
  const Stream stream(fmemopen(const_cast<char*>(group.data()), group.size(), "rb"));
  std::unique_ptr<ModelTables> tables(new ModelTables);
  if (stream == nullptr || tables->group_.load(stream.get(), why) != kGroupOk) return nullptr;
  return finish(std::move(tables), names, why);
}

std::unique_ptr<const ModelTables> ModelTables::finish(std::unique_ptr<ModelTables> tables,
                                                       const std::vector<std::string>& names,
                                                       std::string* why) {
  const CLidMGroup& group = tables->group_;
  if (names.size() != static_cast<size_t>(group.nb_models)) {
    *why = "the charset names are those of another group";
    return nullptr;
  }
  if (group.unigram_part.nb_models != group.nb_models || group.nb_istates < 1) {
    *why = "the group lacks what the detector needs";
    return nullptr;
  }
  tables->add_models(names);
  return tables;
}

const Homes& ModelTables::homes() const {
  return homes_.get([this] { return std::make_unique<const Homes>(*this); });
}

int ModelTables::language_index(const std::string& name) {
  const auto at = std::find(languages_.begin(), languages_.end(), name);
  if (at != languages_.end()) return static_cast<int>(at - languages_.begin());
  languages_.push_back(name);
  return static_cast<int>(languages_.size()) - 1;
}

void ModelTables::add_models(const std::vector<std::string>& names) {
  models_of_fact_.resize(static_cast<size_t>(group_.models_part.nb_facts));
  for (int i = 0; i < group_.nb_models; ++i) {
    const CmgModel& record = group_.models_part.models[i];
    ModelInfo info;
    info.language = language_index(std::string(record.name, strnlen(record.name, kLanguageLength)));
    info.charset = find_charset_index(names[static_cast<size_t>(i)]);
    info.fact = record.fact_no;
    info.step = record.grad;
    info.least = record.lpmin;
    info.unigram_step = group_.unigram_part.models_grad[i];
    info.unigram_least = group_.unigram_part.models_lpmin[i];
    models_.push_back(info);
    if (info.fact >= 0)
      models_of_fact_[static_cast<size_t>(info.fact - group_.nb_models)].push_back(i);
  }
}

}  // namespace orva
