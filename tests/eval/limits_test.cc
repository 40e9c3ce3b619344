// What very long documents do to the sums.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "lib/api/pemb.h"
#include "lib/eval/lid_mgroup_eval.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/temp_dir.h"

namespace {

// The evaluator behind a handle, whose record begins with the group and the
// evaluator.
CLidMGroupEval* evaluator_of(PembHandle* handle) {
  return reinterpret_cast<CLidMGroupEval**>(handle)[1];
}

}  // namespace

TEST(Limits, SumsOfCostsWrapAtThirtyTwoBits) {
  // "aba" costs model 0 the most that a byte can say, so often that the sum
  // passes 2^32.
  constexpr int kTimes = 17000000;
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, orva::TinyGroup().with_byte("lstates_vals", 255, 1)),
            kGroupOk);
  CLidMGroupEval eval(&group);
  std::string text;
  text.reserve(2 * kTimes);
  for (int i = 0; i < kTimes; ++i) text += "ab";
  eval.auto_init('a', 'b');
  eval.auto_nexts(reinterpret_cast<const unsigned char*>(text.data()), 2 * kTimes);
  // 255 x 17000000 - 2^32 is 40032704; the "b" are unknown to model 0.
  const float sum = 40032704 * 0.25F + kTimes * 0.5F + 30.0F * kTimes;
  EXPECT_EQ(eval.get_lprobs()[0], sum / (2 * kTimes));
}

TEST(Limits, ADocumentOfMoreThanAnIntCanCountIsRefusedAtItsEnd) {
  const orva::TempDir dir;
  PembHandle* const handle = pemb_init(dir.file("Model.grp", orva::TinyGroup().bytes()).c_str());
  ASSERT_NE(handle, nullptr);
  ASSERT_EQ(pemb_load(handle), 0);
  unsigned char start[] = "ab";
  ASSERT_EQ(pemb_nexts(handle, start, 2), 0);
  // Straight to the evaluator, which is faster than 214748 calls.
  const std::string text(10000000, 'x');
  const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
  for (int i = 0; i < 214; ++i) evaluator_of(handle)->auto_nexts(bytes, 10000000);
  evaluator_of(handle)->auto_nexts(bytes, 7483646);
  ASSERT_EQ(evaluator_of(handle)->total(), 2147483646);
  unsigned char more[] = "xx";
  EXPECT_EQ(pemb_nexts(handle, more, 2), -1);
  EXPECT_EQ(evaluator_of(handle)->total(), 2147483646);
  EXPECT_EQ(pemb_nexts(handle, more, 1), 0);
  EXPECT_EQ(evaluator_of(handle)->total(), 2147483647);
  EXPECT_EQ(pemb_nexts(handle, more, 1), -1);
  pemb_dispose(handle);
  free(handle);
}
