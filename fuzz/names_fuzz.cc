// The reader of the charset names.
#include <vector>

#include "fuzz/fuzz_target.h"
#include "lib/api/model_names.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const orva::InputFile input(data, size);
  if (!input.ok()) return 0;
  std::vector<std::string> names;
  std::string error;
  const bool read = orva::load_model_names(input.path(), &names, &error);
  if (read != error.empty()) __builtin_trap();
  return 0;
}
