// The worked example in the format's page is this very file.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/reference/tiny_group.h"
#include "tests/support/hex_dump.h"
#include "tests/support/temp_dir.h"

namespace {

std::string page() {
  return orva::bytes_of(std::string(ORVA_SOURCE_DIR) + "/doc/MODEL_GROUP_FORMAT.md");
}

}  // namespace

TEST(GroupPage, ItsDumpIsTheTinyGroup) {
  const std::string dump = "```text\n" + orva::hex_dump(orva::TinyGroup().bytes()) + "```\n";
  EXPECT_NE(page().find(dump), std::string::npos) << dump;
}

TEST(GroupPage, ItsOffsetsAreThoseOfTheFields) {
  const struct {
    const char* field;
    const char* shown;
  } rows[] = {
      {"nb_models", "`nb_models`"},
      {"nb_istates", "`nb_istates`"},
      {"model 0 name", "record of model 0"},
      {"name 0 length", "name of model 0"},
      {"state 0", "state 0"},
      {"state 2", "state 2"},
      {"istates_chrs", "`istates_chrs`"},
      {"istates_dnxts a", "direct table, entry `a`"},
      {"lstates", "leaf 0"},
      {"lstates_vals", "its values"},
      {"def_so", "`def_so` of leaf 0"},
      {"uch_lps_buff", "`uch_lps_buff`"},
      {"uch_lps a", "word of `a`"},
  };
  const std::string text = page();
  for (const auto& row : rows) {
    char line[100];
    snprintf(line, sizeof line, "\n| %08x | %s |",
             static_cast<unsigned>(orva::TinyGroup().at(row.field)), row.shown);
    EXPECT_NE(text.find(line), std::string::npos) << line;
  }
}
