// pemb_group: a group file from trigram model files.

#include <cstdlib>
#include <cstring>
#include <exception>

#include "lib/api/pemb.h"
#include "lib/build/fact_sets.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"

namespace {

enum GroupingResult {
  kGrouped = 0,
  kBadCount = -1,
  kNoFactFile = -2,
  kNotBuilt = -3,
  kNotWritten = -4,
  kNoCopy = -5,
};

constexpr int kMaxGrouped = 199;
constexpr int kReserved = 256;
constexpr size_t kExtension = 4;  // ".tri"
constexpr int kMinForDirect = 128;

// The copies of paths and names that a build works on.
struct Copies {
  Copies() = default;
  ~Copies() {
    for (int i = 0; i < kReserved; ++i) {
      free(paths[i]);
      free(names[i]);
    }
  }
  Copies(const Copies&) = delete;
  Copies& operator=(const Copies&) = delete;

  char* paths[kReserved] = {};
  char* names[kReserved] = {};
};

// `name` itself when it is a path of its own or there is no directory, else the two joined; a copy.
char* path_of(const char* dir, const char* name) {
  if (dir == nullptr || name[0] == '/' || name[0] == '.') return strdup(name);
  const size_t dir_length = strlen(dir);
  const size_t size = dir_length + 1 + strlen(name) + 1;
  char* path = static_cast<char*>(malloc(size));
  if (path == nullptr) return nullptr;
  memcpy(path, dir, dir_length);
  path[dir_length] = '/';
  memcpy(path + dir_length + 1, name, size - dir_length - 1);
  return path;
}

// The name without its extension; null for a name that has no room for one.
char* model_name_of(const char* name) {
  const size_t length = strlen(name);
  return length < kExtension ? nullptr : strndup(name, length - kExtension);
}

int group_models(const char* dir, char** names, int count, const char* factfile,
                 const char* outfile) {
  CLidMGroup group;
  if (count < 1 || count > kMaxGrouped) return kBadCount;
  if (names == nullptr) return kNoCopy;
  for (int i = 0; i < count; ++i) {
    if (names[i] == nullptr) return kNoCopy;
  }
  int sets[kReserved];
  if (build_fact_sets(names, count, factfile, sets) != 0) return kNoFactFile;
  Copies copies;
  for (int i = 0; i < count; ++i) {
    copies.paths[i] = path_of(dir, names[i]);
    if (copies.paths[i] == nullptr) return kNoCopy;
  }
  for (int i = 0; i < count; ++i) {
    copies.names[i] = model_name_of(names[i]);
    if (copies.names[i] == nullptr) return kNoCopy;
  }
  if (group.build(copies.paths, copies.names, sets, count, kMinForDirect) != 0) return kNotBuilt;
  if (outfile == nullptr || group.save(outfile) != 0) return kNotWritten;
  return kGrouped;
}

}  // namespace

int pemb_group(const char* dir, char** names, int count, const char* factfile,
               const char* outfile) {
  // From here on the whole process has failed allocations returned.
  _MallocChkExitOnErr = 0;
  try {
    return group_models(dir, names, count, factfile, outfile);
  } catch (const std::exception&) {
    return kNotBuilt;
  }
}
