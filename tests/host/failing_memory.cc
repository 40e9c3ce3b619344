#include "tests/host/failing_memory.h"

#include <prmem.h>

#include <cstdlib>
#include <new>

namespace orva {

bool g_host_memory_fails = false;
bool g_nothrow_memory_fails = false;

}  // namespace orva

// These definitions in the program come before those of the shared libraries.
PR_IMPLEMENT(void*) PR_Malloc(PRUint32 size) {
  return orva::g_host_memory_fails ? nullptr : malloc(size);
}

__attribute__((visibility("default"))) void* operator new(size_t size,
                                                          const std::nothrow_t&) noexcept {
  if (orva::g_nothrow_memory_fails) return nullptr;
  try {
    return ::operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

__attribute__((visibility("default"))) void* operator new[](size_t size,
                                                            const std::nothrow_t&) noexcept {
  if (orva::g_nothrow_memory_fails) return nullptr;
  try {
    return ::operator new[](size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
