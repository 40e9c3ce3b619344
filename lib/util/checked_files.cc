#include "lib/util/checked_files.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

// "Unable to open (LABEL) 'PATH'."
constexpr char kMsgFOpen[] = "** FOpenError: incapable d'ouvrir (%s) '%s'\n";
constexpr char kMsgOpen[] = "** OpenError: incapable d'ouvrir (%s) '%s'\n";
constexpr char kMsgErrno[] = "**   ErrNo = %d\n";
// "Close error!"
constexpr char kMsgFClose[] = "Erreur FClose!\n";
// "Attempt to read a line that is too long." The number is the length, although the text says Max.
constexpr char kMsgLongLine[] = "** FGetS: essai de lire une ligne trop longue (Max = %d)\n";
// "Unable to open (dir) 'PATH'."
constexpr char kMsgMaxIndex[] = "** PiMaxIndex: Incapable d'ouvrir (dir) '%s'\n";

// Kept: these two directories stay open, the first one only when it has too many entries. Each has
// an opener of its own, so that the leak checker can tell them from any other leak.
__attribute__((noinline)) DIR* open_directory_to_list(const char* path) {
  DIR* const dir = opendir(path);
  return dir;
}

__attribute__((noinline)) DIR* open_directory_to_index(const char* path) {
  DIR* const dir = opendir(path);
  return dir;
}

// The pattern of an integer after "BASE.", with the base taken literally. The integer is read wide,
// so that digits beyond an int mean the same for every width.
std::string index_pattern(const char* base) {
  std::string pattern;
  for (const char* p = base; *p != '\0'; ++p) {
    pattern += *p;
    if (*p == '%') pattern += '%';
  }
  return pattern + ".%lld";
}

}  // namespace

FILE* fopen_chk(const char* path, const char* mode, const char* label) {
  FILE* stream = fopen(path, mode);
  if (stream == nullptr) {
    printf(kMsgFOpen, label, path);
    exit(1);
  }
  ++FilesOpened;
  return stream;
}

FILE* tfopen_chk(const char* path, const char* mode, const char* label) {
  return fopen_chk(path, mode, label);
}

int open_chk(const char* path, int flags, const char* label) {
  const int fd = open(path, flags, 0644);
  if (fd == -1) {
    const int error = errno;
    printf(kMsgOpen, label, path);
    printf(kMsgErrno, error);
    exit(1);
  }
  return fd;
}

int fclose_chk(FILE* stream) {
  if (fclose(stream) != 0) {
    printf(kMsgFClose);
    exit(1);
  }
  --FilesOpened;
  return 0;
}

char* fgets_chk(char* buffer, int size, FILE* stream) {
  if (fgets(buffer, size, stream) == nullptr) return nullptr;
  const int length = static_cast<int>(strlen(buffer));
  if (length >= size - 1) {
    fprintf(stderr, kMsgLongLine, length);
    exit(1);
  }
  if (length > 0) buffer[length - 1] = '\0';
  return buffer;
}

int fexists(const char* path) {
  FILE* stream = fopen(path, "r");
  if (stream == nullptr) return 0;
  fclose(stream);
  return 1;
}

char* fname_tail(char* path) {
  char* slash = strrchr(path, '/');
  return slash == nullptr ? path : slash + 1;
}

int read_dir(const char* path, char** table, int capacity) {
  DIR* dir = open_directory_to_list(path);
  if (dir == nullptr) return -1;
  int count = 0;
  while (const dirent* entry = readdir(dir)) {
    if (count >= capacity) {
      for (int i = 0; i < count; ++i) {
        free(table[i]);
        table[i] = nullptr;
      }
      return -2;
    }
    table[count++] = strdup(entry->d_name);
  }
  closedir(dir);
  return count;
}

int pi_max_index(const char* dir, const char* base) {
  DIR* entries = open_directory_to_index(dir);
  if (entries == nullptr) {
    printf(kMsgMaxIndex, dir);
    exit(1);
  }
  const std::string pattern = index_pattern(base);
  long long largest = -1;
  while (const dirent* entry = readdir(entries)) {
    long long index = 0;
    if (sscanf(entry->d_name, pattern.c_str(), &index) == 1 && index > largest) largest = index;
  }
  return largest >= INT_MAX ? INT_MAX : static_cast<int>(largest) + 1;
}
