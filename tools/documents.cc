#include "tools/documents.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>

#include "tools/report.h"

namespace orva {
namespace {

constexpr size_t kReadSize = 1 << 16;
// A block's length is counted in 32 bits, and half of that is all that a 32-bit machine can hold.
constexpr size_t kMaxWhole = 0x7FFFFFFF;

struct FileCloser {
  void operator()(FILE* stream) const {
    if (stream != stdin) fclose(stream);
  }
};
using Stream = std::unique_ptr<FILE, FileCloser>;

bool is_directory(const std::string& name) {
  struct stat info;
  return stat(name.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// Adds the regular files below `dir`; false when some of it cannot be read.
bool add_directory(const std::string& dir, std::vector<std::string>* files) {
  namespace fs = std::filesystem;
  std::error_code error;
  std::vector<std::string> found;
  bool ok = true;
  fs::recursive_directory_iterator it(dir, fs::directory_options::skip_permission_denied, error);
  for (const fs::recursive_directory_iterator end; !error && it != end; it.increment(error)) {
    std::error_code ignored;
    if (it->is_regular_file(ignored)) found.push_back(it->path().string());
  }
  if (error) {
    report_error(dir, error.message());
    ok = false;
  }
  std::sort(found.begin(), found.end());
  files->insert(files->end(), found.begin(), found.end());
  return ok;
}

// Reads up to `limit` bytes, or to the end, taking memory only as the bytes come.
void read_block(FILE* stream, size_t limit, std::vector<char>* bytes) {
  bytes->clear();
  while (bytes->size() < limit) {
    const size_t before = bytes->size();
    bytes->resize(std::min(limit, before + std::max(kReadSize, before)));
    const size_t got = fread(bytes->data() + before, 1, bytes->size() - before, stream);
    bytes->resize(before + got);
    if (got == 0) return;
  }
}

}  // namespace

std::vector<std::string> expand_documents(const std::vector<std::string>& names, bool recursive,
                                          bool* failed) {
  std::vector<std::string> files;
  for (const std::string& name : names) {
    if (name == "-" || !is_directory(name)) {
      files.push_back(name);
    } else if (!recursive) {
      report_error(name, "is a directory (use --recursive)");
      *failed = true;
    } else if (!add_directory(name, &files)) {
      *failed = true;
    }
  }
  return files;
}

bool read_document(const std::string& name, size_t block,
                   const std::function<bool(char*, size_t)>& take, std::string* error) {
  errno = 0;
  const Stream stream(name == "-" ? stdin : fopen(name.c_str(), "rb"));
  if (stream == nullptr) {
    *error = strerror(errno);
    return false;
  }
  try {
    std::vector<char> bytes;
    for (;;) {
      read_block(stream.get(), block == 0 ? kMaxWhole + 1 : block, &bytes);
      if (bytes.empty()) break;
      if (bytes.size() > kMaxWhole) {
        *error = "too large for one block";
        return false;
      }
      if (!take(bytes.data(), bytes.size())) return true;
    }
  } catch (const std::bad_alloc&) {
    *error = "too large to be held in memory at once";
    return false;
  }
  if (ferror(stream.get()) == 0) return true;
  *error = strerror(errno);
  return false;
}

bool read_whole_document(const std::string& name, std::string* bytes, std::string* error) {
  bytes->clear();
  const auto take = [bytes](const char* block, size_t length) {
    bytes->append(block, length);
    return true;
  };
  return read_document(name, 0, take, error);
}

bool is_readable_file(const std::string& name, std::string* error) {
  struct stat info;
  if (stat(name.c_str(), &info) != 0 || access(name.c_str(), R_OK) != 0) {
    *error = strerror(errno);
    return false;
  }
  if (!S_ISREG(info.st_mode)) {
    *error = S_ISDIR(info.st_mode) ? "is a directory" : "is not a regular file";
    return false;
  }
  return true;
}

}  // namespace orva
