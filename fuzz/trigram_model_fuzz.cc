// The reader of a trained model.
#include "fuzz/fuzz_target.h"
#include "lib/trichr/trichr_model.h"
#include "lib/util/accounting.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  _MallocChkExitOnErr = 0;
  const orva::InputFile input(data, size);
  if (!input.ok()) return 0;
  CTrichrModel model;
  model.load(input.path());
  return 0;
}
