#include "tests/support/failing_allocations.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

bool g_armed = false;
bool g_for_ever = false;
long g_left = 0;
bool g_failed = false;

// Whether this allocation has to fail.
bool fails() {
  if (!g_armed) return false;
  if (g_left > 0) {
    --g_left;
    return false;
  }
  if (g_failed && !g_for_ever) return false;
  g_failed = true;
  return true;
}

}  // namespace

namespace orva {

FailingAllocations::FailingAllocations(long n, Mode mode) {
  g_left = n;
  g_for_ever = mode == kForEver;
  g_failed = false;
  g_armed = true;
}

FailingAllocations::~FailingAllocations() { g_armed = false; }

bool FailingAllocations::has_failed() const { return g_failed; }

}  // namespace orva

// The linker puts these in the place of the functions without the prefix.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
char* __real_strdup(const char* text);

void* __wrap_malloc(size_t size) { return fails() ? nullptr : __real_malloc(size); }
void* __wrap_calloc(size_t count, size_t size) {
  return fails() ? nullptr : __real_calloc(count, size);
}
void* __wrap_realloc(void* block, size_t size) {
  return fails() ? nullptr : __real_realloc(block, size);
}
char* __wrap_strdup(const char* text) { return fails() ? nullptr : __real_strdup(text); }
}

void* operator new(size_t size) {
  void* const block = fails() ? nullptr : __real_malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return fails() ? nullptr : __real_malloc(size == 0 ? 1 : size);
}

void operator delete(void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept { free(block); }
