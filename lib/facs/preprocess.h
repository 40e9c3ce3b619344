// All preprocessing steps in one pass over a buffer, with the result of one step after the other.
#ifndef ORVA_LIB_FACS_PREPROCESS_H_
#define ORVA_LIB_FACS_PREPROCESS_H_

#include <vector>

namespace orva {

struct PreprocessSwitches {
  bool cut_runs = false;     // runs of four or more equal bytes to three
  bool fold_caps = false;    // A-Z to a-z
  bool drop_digits = false;  // 0-9
  bool drop_blanks = false;  // space, CR, LF and TAB
};

// Rewrites `buf` and returns its new length. Beyond it comes a NUL when a run was cut; all else
// there is left undefined.
int preprocess_text(const PreprocessSwitches& switches, unsigned char* buf, int len);

// All ways to do it that this machine can run, the plain one first and the fastest last.
using Preprocess = int (*)(const PreprocessSwitches& switches, unsigned char* buf, int len);
std::vector<Preprocess> preprocessors();

}  // namespace orva

#endif  // ORVA_LIB_FACS_PREPROCESS_H_
