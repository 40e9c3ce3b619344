// Lazy: something that is made when it is first asked for, once for all threads.
//
//   orva::Lazy<Table> table;
//   const Table& t = table.get([&] { return std::make_unique<const Table>(source); });
//
// Life cycle: empty until get, constant from then on. A `make` that throws may be tried again.
// Ownership:  owns what was made.
// Threads:    any number; one makes, the others wait for it.
#ifndef ORVA_LIB_DETECT_LAZY_H_
#define ORVA_LIB_DETECT_LAZY_H_

#include <atomic>
#include <memory>
#include <mutex>

namespace orva {

template <typename T>
class Lazy {
 public:
  template <typename Make>
  const T& get(Make make) const {
    const T* made = made_.load(std::memory_order_acquire);
    if (made != nullptr) return *made;
    const std::lock_guard<std::mutex> lock(making_);
    if (owned_ == nullptr) owned_ = make();
    made_.store(owned_.get(), std::memory_order_release);
    return *owned_;
  }

 private:
  mutable std::mutex making_;
  mutable std::unique_ptr<const T> owned_;
  mutable std::atomic<const T*> made_{nullptr};
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_LAZY_H_
