// Runs the program as a user would.
//
//   const Ended run = run_orva({"detect", path});
//   EXPECT_EQ(run.status, 0);
#ifndef ORVA_TESTS_TOOLS_RUN_ORVA_H_
#define ORVA_TESTS_TOOLS_RUN_ORVA_H_

#include <string>
#include <vector>

#include "tests/support/streams.h"

namespace orva {

// Runs build/bin/orva with `arguments`, standard input read from the file `input`.
Ended run_orva(const std::vector<std::string>& arguments, const std::string& input = "/dev/null");

// The models of the source tree's models folder.
std::string models_dir();

// The folder of test vectors, empty when none is at hand.
std::string vectors_dir();

}  // namespace orva

#endif  // ORVA_TESTS_TOOLS_RUN_ORVA_H_
