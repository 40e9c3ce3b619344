#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "lib/api/pemb.h"
#include "lib/mgroup/group_format.h"
#include "tests/support/temp_dir.h"

namespace {

constexpr char kOrder[] =
    "enISO-8859-1 frISO-8859-1 frUTF-8 deISO-8859-1 deUTF-8 esISO-8859-1 plISO-8859-2 "
    "plwindows-1250 plUTF-8 csISO-8859-2 ruKOI8-R ruwindows-1251 ruISO-8859-5 ruUTF-8 "
    "elISO-8859-7 elUTF-8 trISO-8859-9 hewindows-1255 arwindows-1256 thTIS-620 jaShift_JIS "
    "jaEUC-JP jaUTF-8 zhGB18030 zhBig5 koEUC-KR";

// The names' four bytes in each model record carry no meaning.
std::string masked(std::string group) {
  size_t at = group.find('\n', group.find('\n') + 1) + 1 + 14 * 4;
  for (int m = 0; m < 26 && at + 4 <= group.size(); ++m) {
    group.replace(at, 4, 4, '\0');
    at += orva::kStoredModelSize;
  }
  return group;
}

void expect_group(const char* facts, const char* expected) {
  const char* vectors = getenv("ORVA_VECTORS");
  if (vectors == nullptr) GTEST_SKIP() << "ORVA_VECTORS is not set";
  const std::string dir = vectors;
  std::istringstream order(kOrder);
  std::vector<std::string> files;
  for (std::string name; order >> name;) files.push_back(name + ".tri");
  std::vector<char*> names;
  for (std::string& file : files) names.push_back(file.data());
  const orva::TempDir temp;
  const std::string out = temp / "out.grp";
  const std::string fact_path = dir + "/" + (facts == nullptr ? "" : facts);
  ASSERT_EQ(pemb_group((dir + "/models").c_str(), names.data(), 26,
                       facts == nullptr ? nullptr : fact_path.c_str(), out.c_str()),
            0);
  EXPECT_TRUE(masked(orva::bytes_of(out)) == masked(orva::bytes_of(dir + "/" + expected)));
}

}  // namespace

TEST(GroupVectors, GroupWithFactSetsIsTheSameFile) { expect_group("facts.txt", "group.grp"); }

TEST(GroupVectors, GroupWithoutFactSetsIsTheSameFile) {
  expect_group(nullptr, "group-nofacts.grp");
}
