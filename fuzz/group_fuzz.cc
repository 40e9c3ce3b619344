// The group reader: what it takes must be fit for a walk, and must be written as it was read.
#include "fuzz/fuzz_target.h"
#include "lib/eval/lid_mgroup_eval.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  _MallocChkExitOnErr = 0;
  const orva::InputFile input(data, size);
  CLidMGroup group;
  if (!input.ok() || group.load(input.stream()) != kGroupOk) return 0;
  CLidMGroupEval eval(&group);
  if (eval.init() == 0) {
    // The input itself serves as text, too.
    eval.auto_init(data[0], data[1]);
    eval.auto_nexts(data, static_cast<int>(size));
    for (int c = 0; c < 256; ++c) {
      const auto byte = static_cast<unsigned char>(c);
      eval.auto_nexts(&byte, 1);
    }
    int best = 0;
    eval.calcul_ratio(eval.get_lprobs(), &best);
  }
  const orva::InputFile output(nullptr, 0);
  if (output.ok() && group.save(output.stream()) != 0) __builtin_trap();
  return 0;
}
