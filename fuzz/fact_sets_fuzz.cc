// The reader of a fact-set file: every model is in no set, or in one below the number of lines. A
// later line may take all members of an earlier one, so that there are more sets than models.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "lib/build/fact_sets.h"
#include "lib/util/accounting.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  _MallocChkExitOnErr = 0;
  const orva::InputFile input(data, size);
  if (!input.ok()) return 0;
  char names[][8] = {"frA", "frB", "enA", "enB", "deA", "de"};
  constexpr int kNbModels = sizeof names / sizeof names[0];
  char* pointers[kNbModels];
  for (int m = 0; m < kNbModels; ++m) pointers[m] = names[m];
  int fact_of_model[kNbModels] = {};
  if (build_fact_sets(pointers, kNbModels, input.path(), fact_of_model) != 0) return 0;
  const auto nb_lines = static_cast<int>(std::count(data, data + size, '\n')) + 1;
  // Lines are read in pieces.
  const int most = nb_lines + static_cast<int>(size / 999);
  for (const int fact : fact_of_model) {
    if (fact < -1 || fact >= most) __builtin_trap();
  }
  return 0;
}
