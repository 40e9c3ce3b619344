// The detector in its shared form: what it exports, and what it asks of others.
#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

namespace {

// The names that `nm` prints of the library's dynamic symbols, without versions.
std::set<std::string> symbols(const std::string& options) {
  FILE* pipe = popen((ORVA_NM " -D --format=posix " + options + " " ORVA_LIBRARY).c_str(), "r");
  std::set<std::string> names;
  std::string line;
  for (int c = getc(pipe); c != EOF; c = getc(pipe)) {
    if (c != '\n') {
      line.push_back(static_cast<char>(c));
      continue;
    }
    // The version itself is an absolute symbol.
    if (line.find(" A") == std::string::npos)
      names.insert(line.substr(0, line.find_first_of(" @")));
    line.clear();
  }
  EXPECT_EQ(pclose(pipe), 0);
  return names;
}

TEST(SharedDetector, ExportsTheCInterfaceAlone) {
  const std::set<std::string> names = symbols("--defined-only");
  for (const char* name : {"orva_new", "orva_detect", "orva_free", "orva_charset_name"}) {
    EXPECT_EQ(names.count(name), 1U) << name;
  }
  for (const std::string& name : names) EXPECT_EQ(name.rfind("orva_", 0), 0U) << name;
}

TEST(SharedDetector, NeedsNothingOfTheOfflineSideNorOfTheComponent) {
  const std::set<std::string> names = symbols("--undefined-only");
  EXPECT_EQ(names.count("iconv_open"), 1U);
  for (const std::string& name : names) {
    for (const char* part :
         {"pemb_", "CTrichr", "CHashTable", "TCTrie", "CLidM", "orva", "PR_", "nsI", "TCExpnd"}) {
      EXPECT_EQ(name.find(part), std::string::npos) << name;
    }
  }
}

}  // namespace
