// Checked file operations: a failure prints a message and ends the process with status 1.
#ifndef ORVA_LIB_UTIL_CHECKED_FILES_H_
#define ORVA_LIB_UTIL_CHECKED_FILES_H_

#include <cstdio>

// Streams open through fopen_chk and tfopen_chk and not yet closed by fclose_chk. Initially 0.
extern int FilesOpened __asm__("pemb_files_opened") __attribute__((visibility("default")));

extern "C" {

// Opens `path`; `label` says in the failure message what the file was for. Never null.
FILE* fopen_chk(const char* path, const char* mode, const char* label);

// Behaves exactly as fopen_chk.
FILE* tfopen_chk(const char* path, const char* mode, const char* label);

// Opens a file descriptor (mode 0644 when it creates); does not count in FilesOpened. Never -1.
int open_chk(const char* path, int flags, const char* label);

// Closes a stream of fopen_chk. Returns 0.
int fclose_chk(FILE* stream);

// Reads one line of at most size - 3 characters and its newline, which is cut; null at the end of
// the file. A longer line ends the process. A last line without newline loses its last character;
// a line that begins with NUL is an empty line.
char* fgets_chk(char* buffer, int size, FILE* stream);

// 1 when `path` can be opened for reading, else 0.
int fexists(const char* path);

// The part of `path` after its last "/".
char* fname_tail(char* path);

// Stores copies of the names of a directory's entries ("." and ".." included) in the system's
// order. Returns their number; -1 when the directory cannot be opened; -2 when there are more than
// `capacity`, in which case the copies are freed and the directory stays open.
int read_dir(const char* path, char** table, int capacity);

// One more than the largest N among the entries of `dir` named `base`.N, 0 when there are none.
int pi_max_index(const char* dir, const char* base);

}  // extern "C"

#endif  // ORVA_LIB_UTIL_CHECKED_FILES_H_
