// The detectors that the benchmarks compare, each behind one call: bytes in, charset name out.
#ifndef ORVA_BENCH_DETECTORS_H_
#define ORVA_BENCH_DETECTORS_H_

#include <memory>
#include <string>
#include <string_view>

namespace orva::bench {

class Detector {
 public:
  virtual ~Detector() = default;
  // The charset that it names; empty for none.
  virtual std::string detect(std::string_view bytes) = 0;
};

// pemb: load, feed everything in pieces, read the scores once (or after each `every` bytes).
std::unique_ptr<Detector> make_pemb(const std::string& models, size_t every = 0);
// orva.h over the same models: its default limit, or everything.
std::unique_ptr<Detector> make_orva(const std::string& models, bool all);
// Peers, from their packages.
std::unique_ptr<Detector> make_uchardet();
std::unique_ptr<Detector> make_icu();
std::unique_ptr<Detector> make_enca(const char* language);
// Adds the bytes up and names nothing: what reading them costs.
std::unique_ptr<Detector> make_sum();

}  // namespace orva::bench

#endif  // ORVA_BENCH_DETECTORS_H_
