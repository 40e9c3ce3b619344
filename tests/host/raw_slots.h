// Calls of virtual functions by their number in the object's table.
#ifndef ORVA_TESTS_HOST_RAW_SLOTS_H_
#define ORVA_TESTS_HOST_RAW_SLOTS_H_

#include <cstring>

namespace orva {

// `object` points to the part of an object that begins with the table pointer.
template <class Result, class... Args>
Result call_slot(void* object, int slot, Args... args) {
  using Function = Result (*)(void*, Args...);
  void** table = nullptr;
  std::memcpy(&table, object, sizeof table);
  return reinterpret_cast<Function>(table[slot])(object, args...);
}

}  // namespace orva

#endif  // ORVA_TESTS_HOST_RAW_SLOTS_H_
