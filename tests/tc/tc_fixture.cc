#include "tests/tc/tc_fixture.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {
int g_until_failure = -1;
bool g_fail_for_ever = false;
int g_nb_reallocs = 0;

bool fails_now() {
  if (g_until_failure < 0) return false;
  if (g_until_failure > 0) {
    --g_until_failure;
    return false;
  }
  if (!g_fail_for_ever) g_until_failure = -1;
  return true;
}
}  // namespace

extern "C" {
void* __real_malloc(size_t size);
void* __real_realloc(void* block, size_t size);
void* __wrap_malloc(size_t size);
void* __wrap_realloc(void* block, size_t size);

void* __wrap_malloc(size_t size) { return fails_now() ? nullptr : __real_malloc(size); }
void* __wrap_realloc(void* block, size_t size) {
  ++g_nb_reallocs;
  return fails_now() ? nullptr : __real_realloc(block, size);
}
}

namespace orva_test {

void fail_allocation(int n, bool for_ever) {
  g_until_failure = n;
  g_fail_for_ever = for_ever;
}

int nb_reallocs() { return g_nb_reallocs; }

File stream_of(const std::string& bytes) {
  File file(tmpfile());
  fwrite(bytes.data(), 1, bytes.size(), file.get());
  rewind(file.get());
  return file;
}

std::string contents(FILE* stream) {
  rewind(stream);
  std::string bytes;
  for (int c = getc(stream); c != EOF; c = getc(stream)) bytes.push_back(static_cast<char>(c));
  return bytes;
}

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

std::string vectors_dir() {
  const char* dir = getenv("ORVA_VECTORS");
  return dir == nullptr ? "" : dir;
}

std::string words_of(const std::vector<int>& words) {
  std::string bytes(words.size() * 4, 0);
  memcpy(bytes.data(), words.data(), bytes.size());
  return bytes;
}

}  // namespace orva_test
