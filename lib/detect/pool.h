// Pool: objects that are used again, with the memory they hold, instead of being made anew for each
// document.
//
//   for (Reading& reading : readings) ...
//   Reading& reading = readings.add();     // as an earlier user left it: to be set whole
//
// Life cycle: add any number of times, clear to begin again.
// Ownership:  owns its objects. They move when one is added.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_POOL_H_
#define ORVA_LIB_DETECT_POOL_H_

#include <cstddef>
#include <vector>

namespace orva {

template <typename T>
class Pool {
 public:
  T& add() {
    if (used_ == all_.size()) all_.emplace_back();
    return all_[used_++];
  }
  // Takes the last one back.
  void drop() { --used_; }
  void clear() { used_ = 0; }

  size_t size() const { return used_; }
  bool empty() const { return used_ == 0; }
  T& operator[](size_t i) { return all_[i]; }
  T* begin() { return all_.data(); }
  T* end() { return all_.data() + used_; }
  const T* begin() const { return all_.data(); }
  const T* end() const { return all_.data() + used_; }

 private:
  std::vector<T> all_;
  size_t used_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_POOL_H_
