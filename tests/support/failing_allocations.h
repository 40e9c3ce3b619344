// Makes one allocation fail, or all from one on. The program is linked with the wrappers of
// failing_allocations.cc; what the C library allocates inside is not touched.
//
//   for (long n = 0;; ++n) {
//     FailingAllocations failing(n, FailingAllocations::kOnce);
//     body();
//     if (!failing.has_failed()) break;
//   }
#ifndef ORVA_TESTS_SUPPORT_FAILING_ALLOCATIONS_H_
#define ORVA_TESTS_SUPPORT_FAILING_ALLOCATIONS_H_

namespace orva {

class FailingAllocations {
 public:
  enum Mode { kOnce, kForEver };

  // The `n`-th allocation from now on fails, counted from 0.
  FailingAllocations(long n, Mode mode);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  bool has_failed() const;
};

}  // namespace orva

#endif  // ORVA_TESTS_SUPPORT_FAILING_ALLOCATIONS_H_
