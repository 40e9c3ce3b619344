// The storage of the containers: accounted blocks that throw when they cannot be had.
//
//   items = static_cast<Item*>(orva::grow_block(items, cap, new_cap, sizeof(Item), kItemCounted));
//   ...
//   free_chk(items, cap * kItemCounted);
//
// The counters speak of the 32-bit reference platform on every platform: a pointer counts as four
// bytes, so that a build reports the same figures wherever it runs. The caller says both how large
// an element is and how much of it counts.
//
// Results: never null. A failure throws GrowthFailed while _MallocChkExitOnErr is 0, and otherwise
//          ends the process with the message of malloc_chk.
#ifndef ORVA_LIB_TC_TC_ALLOC_H_
#define ORVA_LIB_TC_TC_ALLOC_H_

#include <cstddef>
#include <new>

namespace orva {

// Thrown where a container cannot grow; caught at the entries that return a result code.
class GrowthFailed : public std::bad_alloc {
 public:
  const char* what() const noexcept override { return "a container could not grow"; }
};

// Bytes that an element counts for: its size on the reference platform. Records with pointers
// specialise it.
template <typename T>
struct CountedSize {
  static constexpr int value = static_cast<int>(sizeof(T));
};
template <typename T>
struct CountedSize<T*> {
  static constexpr int value = 4;
};

// Throws, or ends the process when _MallocChkExitOnErr says so.
[[noreturn]] void growth_failed(int bytes);

// A first block of `count` elements of `elem_size` bytes, each of which counts for `counted` bytes.
void* new_block(int count, std::size_t elem_size, int counted);

// Grows a block from `old_count` to `new_count` elements: the first storage comes from malloc_chk,
// later growth from realloc, accounted by what was added. The old block stays valid on failure.
void* grow_block(void* block, int old_count, int new_count, std::size_t elem_size, int counted);

// Prints a container's failed requirement to standard error and ends the process with status 1.
[[noreturn]] void requirement_failed(const char* source, int line, const char* text);

}  // namespace orva

#endif  // ORVA_LIB_TC_TC_ALLOC_H_
