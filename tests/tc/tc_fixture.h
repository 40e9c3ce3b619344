// What the container tests share: keys from text, vectors, temporary streams, failing allocations.
#ifndef ORVA_TESTS_TC_TC_FIXTURE_H_
#define ORVA_TESTS_TC_TC_FIXTURE_H_

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "lib/tc/hashtabl.h"

namespace orva_test {

inline const unsigned char* key(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.c_str());
}

inline int add(CHashTable& table, const std::string& text) {
  int added = 0;
  return table.find_or_add(key(text), &added);
}

struct CloseFile {
  void operator()(FILE* f) const { fclose(f); }
};
using File = std::unique_ptr<FILE, CloseFile>;

// A temporary stream that holds `bytes`, at its start.
File stream_of(const std::string& bytes);
// The whole of a stream or file.
std::string contents(FILE* stream);
std::string read_file(const std::string& path);

// Folder of the vectors, empty when there is none.
std::string vectors_dir();

// From now on the allocation number `n` (0: the next) fails, alone or with all that follow; an `n`
// below 0 lets all pass. Counts only calls of the code under test.
void fail_allocation(int n, bool for_ever);
int nb_reallocs();

std::string words_of(const std::vector<int>& words);

}  // namespace orva_test

#endif  // ORVA_TESTS_TC_TC_FIXTURE_H_
