#include "lib/detect/builtin_models.h"

#include <mutex>
#include <string>

extern "C" {
// Made by builtin_data.cc.
extern const char orva_builtin_group_begin[] __attribute__((visibility("hidden")));
extern const char orva_builtin_group_end[] __attribute__((visibility("hidden")));
extern const char orva_builtin_names_begin[] __attribute__((visibility("hidden")));
extern const char orva_builtin_names_end[] __attribute__((visibility("hidden")));
}

namespace orva {

namespace {

std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<size_t>(end - begin)};
}

}  // namespace

std::string_view builtin_group() {
  return between(orva_builtin_group_begin, orva_builtin_group_end);
}

std::string_view builtin_names() {
  return between(orva_builtin_names_begin, orva_builtin_names_end);
}

std::shared_ptr<const ModelTables> builtin_models() {
  static std::mutex mutex;
  static std::weak_ptr<const ModelTables> shared;
  const std::lock_guard<std::mutex> lock(mutex);
  std::shared_ptr<const ModelTables> tables = shared.lock();
  if (tables == nullptr && !builtin_group().empty()) {
    std::string why;
    tables = ModelTables::load_memory(builtin_group(), builtin_names(), &why);
    shared = tables;
  }
  return tables;
}

}  // namespace orva
