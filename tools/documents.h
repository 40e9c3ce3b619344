// The documents that a command is given: files, directories and standard input.
#ifndef ORVA_TOOLS_DOCUMENTS_H_
#define ORVA_TOOLS_DOCUMENTS_H_

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace orva {

// Replaces directories by the files below them, in order of their names, when `recursive`. Names
// that cannot be used are reported; `*failed` is then set.
std::vector<std::string> expand_documents(const std::vector<std::string>& names, bool recursive,
                                          bool* failed);

// Calls `take` with each block of a document, until it answers false. `block` is the size of the
// blocks, 0 for the whole document at once. `name` may be "-". False, with the reason in `error`,
// when it cannot be read.
bool read_document(const std::string& name, size_t block,
                   const std::function<bool(char* bytes, size_t length)>& take, std::string* error);

// The same for a whole document in memory.
bool read_whole_document(const std::string& name, std::string* bytes, std::string* error);

// Whether `name` is a regular file that can be read; if not, `error` says why.
bool is_readable_file(const std::string& name, std::string* error);

}  // namespace orva

#endif  // ORVA_TOOLS_DOCUMENTS_H_
