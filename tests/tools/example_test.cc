#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/temp_dir.h"
#include "tests/tools/run_orva.h"

namespace orva {
namespace {

TEST(Example, BuildsAModelsFolderFromPlainTexts) {
  const TempDir dir;
  const std::string documents = std::string(ORVA_SOURCE_DIR) + "/examples/documents/";
  const std::string models = dir / "models";
  const std::string log = dir / "log";
  const std::string command = "ORVA='" ORVA_BINARY_DIR "/bin/orva' '" ORVA_SOURCE_DIR
                              "/examples/build_models.sh' '" +
                              models + "' fr='" + documents + "fr-utf-8.txt' de='" + documents +
                              "de-utf-8.txt' >'" + log + "' 2>&1";
  ASSERT_EQ(std::system(command.c_str()), 0) << bytes_of(log);
  for (const char* name : {"fr-utf-8.txt", "de-utf-8.txt"}) {
    const Ended run = run_orva({"detect", "--models", models, documents + name});
    EXPECT_EQ(run.out, documents + name + ": UTF-8 " + std::string(name, 2) + "\n") << run.err;
  }
}

}  // namespace
}  // namespace orva
