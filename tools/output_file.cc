#include "tools/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orva {
namespace {

// What the process would have given a plainly created file.
mode_t default_mode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

OutputFile::~OutputFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

bool OutputFile::open(std::string* error) {
  struct stat info;
  if (stat(path_.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
    *error = "is not a regular file";
    return false;
  }
  std::string name = path_ + ".XXXXXX";
  const int fd = mkstemp(name.data());
  if (fd == -1) {
    *error = strerror(errno);
    return false;
  }
  temporary_ = name;
  const bool ok = fchmod(fd, default_mode()) == 0;
  if (close(fd) == 0 && ok) return true;
  *error = strerror(errno);
  return false;
}

bool OutputFile::commit(std::string* error) {
  if (rename(temporary_.c_str(), path_.c_str()) != 0) {
    *error = strerror(errno);
    return false;
  }
  temporary_.clear();
  return true;
}

}  // namespace orva
