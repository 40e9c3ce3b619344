// Allocations that fail at the test's will: PR_Malloc, and new that must not throw.
#ifndef ORVA_TESTS_HOST_FAILING_MEMORY_H_
#define ORVA_TESTS_HOST_FAILING_MEMORY_H_

namespace orva {

extern bool g_host_memory_fails;     // PR_Malloc
extern bool g_nothrow_memory_fails;  // new (std::nothrow)

}  // namespace orva

#endif  // ORVA_TESTS_HOST_FAILING_MEMORY_H_
