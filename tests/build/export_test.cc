#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "lib/mgroup/hc_writer.h"
#include "tests/build/build_fixture.h"

namespace {

using orva::ModelFiles;

// The current directory is `dir` for the time of its object.
class InDirectory {
 public:
  explicit InDirectory(const std::string& dir) {
    if (getcwd(before_, sizeof before_) == nullptr || chdir(dir.c_str()) != 0) abort();
  }
  ~InDirectory() {
    if (chdir(before_) != 0) abort();
  }
  InDirectory(const InDirectory&) = delete;
  InDirectory& operator=(const InDirectory&) = delete;

 private:
  char before_[4096];
};

struct Exported {
  int result = -1;
  std::string table;
  std::string header;

  explicit Exported(const CLidMGroup& group) {
    const orva::TempDir dir;
    const InDirectory in(dir.path());
    result = group.hc_save();
    table = orva::bytes_of("hardcoded_mg.C");
    header = orva::bytes_of("hardcoded_mg.H");
  }

  // What follows `symbol` in the table file, to the end of its definition.
  std::string definition(const std::string& symbol) const {
    const size_t at = table.find(symbol + "[]");
    return at == std::string::npos ? "" : table.substr(at, table.find("};\n", at) + 3 - at);
  }
};

void build_small(CLidMGroup& group) {
  ModelFiles files;
  files.add("enASCII", {{"abc", 1.0f}, {"abd", 2.0f}});
  files.add("frASCII", {{"abc", 1.0f}});
  ASSERT_EQ(files.build(group), 0);
}

// The name bytes, the first four of each twenty of the models, as zeros.
std::string with_names_masked(std::string table) {
  const std::string symbol = "HC_CmgModels_models[] = {";
  const size_t begin = table.find(symbol) + symbol.size();
  const size_t end = table.find("};", begin);
  size_t at = begin;
  for (int i = 0; at < end; ++i) {
    const size_t comma = table.find(',', at);
    if (comma > end) break;
    if (i % 20 < 4) table.replace(comma - 3, 3, "  0");
    at = comma + 1;
  }
  return table;
}

}  // namespace

TEST(Export, GroupWithoutDirectStatesHasAFourByteDirectTable) {
  CLidMGroup group;
  build_small(group);
  const Exported out(group);
  ASSERT_EQ(out.result, 0);
  EXPECT_EQ(out.definition("HC_CLidMGroup_istates_dnxts"),
            "HC_CLidMGroup_istates_dnxts[] = {\n      0,  0,  0,  0,\n};\n");
}

TEST(Export, EmptyGroupHasEmptyArraysAndNoNames) {
  const CLidMGroup group;
  const Exported out(group);
  ASSERT_EQ(out.result, 0);
  EXPECT_EQ(out.definition("HC_CLidMGroup_lstates"), "HC_CLidMGroup_lstates[] = {\n};\n");
  EXPECT_EQ(out.definition("HC_CmgModels_models_names"), "HC_CmgModels_models_names[] = {\n};\n");
  EXPECT_NE(out.table.find("int HC_CLidMGroup_nb_istates = -1; \n"), std::string::npos);
}

TEST(Export, ArraysHoldSixteenBytesToALine) {
  CLidMGroup group;
  build_small(group);
  const Exported out(group);
  EXPECT_EQ(out.definition("HC_CmgModels_models_names"),
            "HC_CmgModels_models_names[] = {\n    \"enASCII\",\n    \"frASCII\",\n};\n");
  // Root with child a; a with child b; ab with children c and d.
  EXPECT_EQ(out.definition("HC_CLidMGroup_istates"),
            "HC_CLidMGroup_istates[] = {\n"
            "      0,  0,  0,  0,  1,  0,  0,  1,  1,  0,  0,  0,  2,  0,  0,  1,\n"
            "      2,  0,  0,  0,  3,  0,  0,  2,\n};\n");
}

TEST(Export, GroupIsUnchanged) {
  CLidMGroup group;
  build_small(group);
  const std::string before = orva::saved_group(group);
  const Exported out(group);
  EXPECT_EQ(orva::saved_group(group), before);
  EXPECT_EQ(group.child(0, 'a'), 1);
}

TEST(Export, TablesCompileAsC) {
  CLidMGroup group;
  build_small(group);
  const orva::TempDir dir;
  const InDirectory in(dir.path());
  ASSERT_EQ(group.hc_save(), 0);
  if (system("cc --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no C compiler here";
  EXPECT_EQ(system("cc -x c -std=c99 -include hardcoded_mg.H -c hardcoded_mg.C -o tables.o"), 0);
}

TEST(Export, FileThatCannotBeOpenedIsMinusOne) {
  CLidMGroup group;
  build_small(group);
  const orva::TempDir dir;
  const InDirectory in(dir.path());
  ASSERT_EQ(mkdir("hardcoded_mg.H", 0755), 0);
  EXPECT_EQ(group.hc_save(), -1);
  ASSERT_EQ(rmdir("hardcoded_mg.H"), 0);
  ASSERT_EQ(unlink("hardcoded_mg.C"), 0);
  ASSERT_EQ(mkdir("hardcoded_mg.C", 0755), 0);
  EXPECT_EQ(group.hc_save(), -1);
}

TEST(Export, ReadersRefuse) {
  CLidMGroup group;
  EXPECT_EQ(group.f_hc_read(), -1);
  EXPECT_EQ(group.models_part.f_hc_read(1), -1);
  EXPECT_EQ(group.unigram_part.f_hc_read(), -1);
}

TEST(ExportVectors, TablesOfTheGroupAreTheSameFiles) {
  const char* vectors = getenv("ORVA_VECTORS");
  if (vectors == nullptr) GTEST_SKIP() << "ORVA_VECTORS is not set";
  const std::string dir = vectors;
  CLidMGroup group;
  ASSERT_EQ(group.load((dir + "/group.grp").c_str()), kGroupOk);
  const Exported out(group);
  ASSERT_EQ(out.result, 0);
  EXPECT_TRUE(with_names_masked(out.table) ==
              with_names_masked(orva::bytes_of(dir + "/export/hardcoded_mg.C")));
  EXPECT_EQ(out.header, orva::bytes_of(dir + "/export/hardcoded_mg.H"));
}
