// MemPtr<T>: a plain buffer that is resized when it is too small; not accounted.
//
//   MemPtr<char> buffer;
//   if (buffer.realloc(10000) == 0) return -1;
//
// Ownership: the buffer, freed with the object.
#ifndef ORVA_LIB_TC_MEM_PTR_H_
#define ORVA_LIB_TC_MEM_PTR_H_

#include <cstdlib>
#include <type_traits>

template <typename T>
class MemPtr {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  MemPtr() = default;
  ~MemPtr() { ::free(ptr); }
  MemPtr(const MemPtr&) = delete;
  MemPtr& operator=(const MemPtr&) = delete;

  // Makes the buffer exactly `new_size` elements when it is not larger already (an equal size goes
  // through the C library too). Returns 1; 0 with `size` 0 when there is no memory, in which case
  // the old block is freed with the object.
  int realloc(int new_size) {
    if (new_size < size) return 1;
    const std::size_t bytes = static_cast<std::size_t>(new_size) * sizeof(T);
    // A request for nothing keeps a block: realloc to 0 bytes would free it behind our back.
    void* block = ::realloc(ptr, bytes == 0 ? 1 : bytes);
    if (block == nullptr) {
      size = 0;
      return 0;
    }
    ptr = static_cast<T*>(block);
    size = new_size;
    return 1;
  }

  T* ptr = nullptr;
  int size = 0;
};

extern template class MemPtr<char>;

#endif  // ORVA_LIB_TC_MEM_PTR_H_
