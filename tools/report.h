// Errors and progress on standard error.
#ifndef ORVA_TOOLS_REPORT_H_
#define ORVA_TOOLS_REPORT_H_

#include <cstddef>
#include <string>

namespace orva {

// Prints "orva: NAME: REASON".
void report_error(const std::string& name, const std::string& reason);

// A line that shows how far a long run has come, on a terminal only and not before a second has
// passed. It is wiped when the object goes.
class Progress {
 public:
  explicit Progress(size_t nb_items);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void at(size_t item, const std::string& name);
  // Takes the line away before something else is printed.
  void wipe();

 private:
  size_t nb_items_;
  long long started_ms_;
  long long shown_ms_ = 0;
  bool on_terminal_;
  bool shown_ = false;
};

}  // namespace orva

#endif  // ORVA_TOOLS_REPORT_H_
