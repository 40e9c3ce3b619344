#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/group_files.h"
#include "tools/report.h"

namespace orva {
namespace {

namespace fs = std::filesystem;

constexpr const char* kExported[] = {"hardcoded_mg.C", "hardcoded_mg.H"};

// A folder that goes with its content when the object goes.
class TemporaryDir {
 public:
  explicit TemporaryDir(const fs::path& parent) {
    std::string name = (parent / ".export.XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) path_ = name;
  }
  ~TemporaryDir() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  TemporaryDir(const TemporaryDir&) = delete;
  TemporaryDir& operator=(const TemporaryDir&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

// Writes the tables in `dir`; the export works in the current directory.
bool export_in(const CLidMGroup& group, const fs::path& dir, std::string* error) {
  std::error_code code;
  const fs::path before = fs::current_path(code);
  if (!code) fs::current_path(dir, code);
  if (code) {
    *error = code.message();
    return false;
  }
  const int result = group.hc_save();
  fs::current_path(before, code);
  *error = result == 0 ? code.message() : "the tables cannot be created";
  return result == 0 && !code;
}

// Whether a table file is complete: its last line is there.
bool is_complete(const fs::path& path) {
  constexpr char kEnd[] = "/* *** Fin HardCode model info *** */";
  std::string text;
  std::string ignored;
  if (!read_document(
          path.string(), 1 << 16,
          [&](const char* bytes, size_t length) {
            text.append(bytes, length);
            if (text.size() > (1 << 17)) text.erase(0, text.size() - (1 << 16));
            return true;
          },
          &ignored)) {
    return false;
  }
  return text.find(kEnd) != std::string::npos;
}

}  // namespace

int run_export(const ExportOptions& options) {
  CLidMGroup group;
  std::string error;
  if (!is_readable_file(options.group, &error)) {
    report_error(options.group, error);
    return kExitError;
  }
  error = load_group(options.group, &group);
  if (!error.empty()) {
    report_error(options.group, error);
    return kExitError;
  }
  const fs::path dir = options.dir;
  std::error_code code;
  if (!fs::is_directory(dir, code)) {
    report_error(options.dir, "is not a directory");
    return kExitError;
  }
  const TemporaryDir temporary(dir);
  if (temporary.path().empty()) {
    report_error(options.dir, strerror(errno));
    return kExitError;
  }
  if (!export_in(group, temporary.path(), &error)) {
    report_error(options.dir, error);
    return kExitError;
  }
  for (const char* name : kExported) {
    if (!is_complete(temporary.path() / name)) {
      report_error(options.dir, "the tables could not be written completely");
      return kExitError;
    }
  }
  for (const char* name : kExported) {
    fs::rename(temporary.path() / name, dir / name, code);
    if (!code) continue;
    report_error((dir / name).string(), code.message());
    return kExitError;
  }
  printf("%s: %s, %s\n", options.dir.c_str(), kExported[0], kExported[1]);
  return kExitOk;
}

}  // namespace orva
