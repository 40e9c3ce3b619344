// The reader of a fact-set file: every model is in no set, or in one below the number of models.
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
  for (const int fact : fact_of_model) {
    if (fact < -1 || fact >= kNbModels) __builtin_trap();
  }
  return 0;
}
