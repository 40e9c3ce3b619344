// The libraries as files: what they hold, export and print.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "lib/api/pemb.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/streams.h"
#include "tests/support/temp_dir.h"

namespace {

// The lines of the banner in a library's bytes.
int nb_banner_lines(const std::string& path) {
  const std::string bytes = orva::bytes_of(path);
  const size_t start = bytes.find("**LibPemb: ");
  if (start == std::string::npos) return 0;
  std::istringstream banner(bytes.substr(start, bytes.find('\0', start) - start));
  int count = 0;
  for (std::string line; std::getline(banner, line); ++count) {
    EXPECT_EQ(line.substr(0, 11), "**LibPemb: ");
  }
  return count;
}

std::string output_of(const std::string& command) {
  FILE* const pipe = popen(command.c_str(), "r");
  std::string text;
  for (int c = getc(pipe); c != EOF; c = getc(pipe)) text += static_cast<char>(c);
  EXPECT_EQ(pclose(pipe), 0) << command;
  return text;
}

// A whole life of a handle, and two that are refused.
void use_library() {
  const orva::TempDir dir;
  PembHandle* const handle = pemb_init(dir.file("good", orva::TinyGroup().bytes()).c_str());
  pemb_load(handle);
  unsigned char text[] = "ababab";
  pemb_nexts(handle, text, 6);
  pemb_nexts(handle, text, 20000);
  int best = 0;
  float ratio = 0;
  pemb_get_scores(handle, &best, &ratio);
  pemb_dispose(handle);
  free(handle);
  pemb_init((dir / "missing").c_str());
  pemb_init(dir.file("bad", "no group").c_str());
}

}  // namespace

TEST(Library, TheBannerStandsInBothForms) {
  EXPECT_GE(nb_banner_lines(ORVA_PEMB_STATIC), 2);
  EXPECT_GE(nb_banner_lines(ORVA_PEMB_SHARED), 2);
}

TEST(Library, NothingIsPrinted) {
  EXPECT_EQ(orva::stdout_of(use_library), "");
  EXPECT_EQ(orva::stderr_of(use_library), "");
}

TEST(Library, TheSharedFormExportsItsPrefixAlone) {
  std::istringstream symbols(output_of("nm -D --defined-only --format=posix " ORVA_PEMB_SHARED));
  int nb_functions = 0;
  for (std::string line; std::getline(symbols, line);) {
    std::istringstream fields(line);
    std::string name;
    char kind = ' ';
    fields >> name >> kind;
    if (kind == 'A') continue;  // the version itself
    EXPECT_EQ(name.substr(0, 5), "pemb_") << line;
    nb_functions += kind == 'T' ? 1 : 0;
  }
  EXPECT_GE(nb_functions, 7);
}

TEST(Library, TheRuntimeFormHoldsNothingOfTheOfflineSide) {
  const std::string symbols = output_of("nm -C " ORVA_PEMB_STATIC);
  EXPECT_NE(symbols.find("CLidMGroupEval::"), std::string::npos);
  for (const char* name : {"CTrichrModel", "CLidMGBuildData", "CHashTable", "pemb_group"}) {
    EXPECT_EQ(symbols.find(name), std::string::npos) << name;
  }
}
