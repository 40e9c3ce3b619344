// A bar on standard error for one long run, on a terminal only.
#ifndef ORVA_TOOLS_PROGRESS_BAR_H_
#define ORVA_TOOLS_PROGRESS_BAR_H_

#include <cstdint>
#include <string>

namespace orva {

class ProgressBar {
 public:
  explicit ProgressBar(std::string what);
  ~ProgressBar() { wipe(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void at(uint64_t done, uint64_t all);
  void wipe();

 private:
  std::string what_;
  bool on_terminal_;
  int shown_percent_ = -1;
};

}  // namespace orva

#endif  // ORVA_TOOLS_PROGRESS_BAR_H_
