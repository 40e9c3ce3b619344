// The offline library in its shared form.

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

#include "lib/api/pemb.h"
#include "lib/util/accounting.h"
#include "tests/support/temp_dir.h"

namespace {

// The lines that `nm` prints of a library's dynamic symbols, by its options.
std::string nm(const std::string& options, const std::string& library) {
  FILE* pipe = popen((ORVA_NM " -D " + options + " " + library).c_str(), "r");
  std::string lines;
  for (int c = getc(pipe); c != EOF; c = getc(pipe)) lines.push_back(static_cast<char>(c));
  pclose(pipe);
  return lines;
}

// The names that a library defines, without versions and the version's own symbol.
std::set<std::string> exports(const std::string& library) {
  std::set<std::string> names;
  std::string name;
  for (const char c : nm("--defined-only --format=posix", library)) {
    if (c != '\n') {
      name.push_back(c);
      continue;
    }
    if (name.find(" A") == std::string::npos)
      names.insert(name.substr(0, name.find_first_of(" @")));
    name.clear();
  }
  return names;
}

}  // namespace

TEST(SharedLibrary, ExportsPembGroupAlone) {
  EXPECT_EQ(exports(ORVA_BUILD_LIBRARY), std::set<std::string>{"pemb_group"});
}

TEST(SharedLibrary, TakesTheCountersFromTheRuntimeLibrary) {
  const std::string needed = nm("--undefined-only", ORVA_BUILD_LIBRARY);
  EXPECT_NE(needed.find("U pemb_malloc_chk_exit_on_err"), std::string::npos);
  EXPECT_NE(needed.find("U pemb_malloc_chk_nb_bytes"), std::string::npos);
  EXPECT_EQ(exports(ORVA_RUNTIME_LIBRARY).count("pemb_malloc_chk_nb_bytes"), 1u);
}

TEST(SharedLibrary, RuntimeLibraryExportsItsPrefixAloneAndNoGrouping) {
  const std::set<std::string> names = exports(ORVA_RUNTIME_LIBRARY);
  for (const std::string& name : names) EXPECT_EQ(name.rfind("pemb_", 0), 0u) << name;
  EXPECT_EQ(names.count("pemb_group"), 0u);
  EXPECT_EQ(names.count("pemb_init"), 1u);
}

TEST(SharedLibrary, SwitchOfThisProcessIsTheOneThatGroupingSets) {
  _MallocChkExitOnErr = 1;
  EXPECT_EQ(pemb_group(nullptr, nullptr, 0, nullptr, nullptr), -1);
  EXPECT_EQ(_MallocChkExitOnErr, 0);
}

TEST(SharedLibrary, GroupBuiltHereIsReadByTheRuntimeLibrary) {
  const orva::TempDir dir;
  std::string model = "V25a    \n2.0000\n";
  for (int c = 0; c < 256; ++c) model += c == 'a' ? "1.0 " : "-1.0 ";
  model += "\n1.0 2.0\n1.5\t616263\n";
  dir.file("enASCII.tri", model);
  std::string name = "enASCII.tri";
  char* names[] = {name.data()};
  const std::string out = dir / "out.grp";
  ASSERT_EQ(pemb_group(dir.path().c_str(), names, 1, nullptr, out.c_str()), 0);
  PembHandle* handle = pemb_init(out.c_str());
  ASSERT_NE(handle, nullptr);
  EXPECT_STREQ(pemb_model_name(handle, 0), "enASCII");
  pemb_dispose(handle);
}
