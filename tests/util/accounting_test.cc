#include "lib/util/accounting.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/support/streams.h"

using orva::Ended;
using orva::run_to_end;
using orva::stdout_of;

namespace {

// What no machine has, on any width.
constexpr int kTooMuch = -1;

// Sets the four variables and restores them at the end of a test.
class Accounting : public ::testing::Test {
 protected:
  void SetUp() override {
    _MallocChkNbBytes = 0;
    _MallocChkStrBytes = 0;
    _MallocChkTrace = 0;
    _MallocChkExitOnErr = 1;
  }
  void TearDown() override { SetUp(); }
};

// "[%8x]" of a block.
std::string bracketed(const void* block) {
  char text[16];
  snprintf(text, sizeof text, "[%8x]", static_cast<unsigned>(reinterpret_cast<uintptr_t>(block)));
  return text;
}

}  // namespace

TEST(AccountingAtStart, CountersAreZeroAndFailuresEndTheProcess) {
  // Every other test puts these values back.
  EXPECT_EQ(_MallocChkNbBytes, 0);
  EXPECT_EQ(_MallocChkStrBytes, 0);
  EXPECT_EQ(_MallocChkTrace, 0);
  EXPECT_EQ(_MallocChkExitOnErr, 1);
}

TEST_F(Accounting, SizeZeroGivesNullAndCountsNothing) {
  _MallocChkNbBytes = 77;
  EXPECT_EQ(malloc_chk(0), nullptr);
  EXPECT_EQ(_MallocChkNbBytes, 77);
}

TEST_F(Accounting, SizeZeroPrintsNothingWhenTracing) {
  _MallocChkTrace = 1;
  EXPECT_EQ(stdout_of([] { malloc_chk(0); }), "");
}

TEST_F(Accounting, ABlockCanBeWrittenAndIsCountedUntilItsRelease) {
  void* const first = malloc_chk(100);
  void* const second = malloc_chk(20);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  memset(first, 1, 100);
  EXPECT_EQ(_MallocChkNbBytes, 120);
  free_chk(first, 100);
  EXPECT_EQ(_MallocChkNbBytes, 20);
  free_chk(second, 20);
  EXPECT_EQ(_MallocChkNbBytes, 0);
}

TEST_F(Accounting, NothingChecksTheSizeThatIsReleased) {
  void* const block = malloc_chk(100);
  free_chk(block, 60);
  EXPECT_EQ(_MallocChkNbBytes, 40);
}

TEST_F(Accounting, AFailureReturnsNullSilentlyWhenExitsAreOff) {
  _MallocChkExitOnErr = 0;
  _MallocChkTrace = 1;
  _MallocChkNbBytes = 5;
  EXPECT_EQ(stdout_of([] { EXPECT_EQ(malloc_chk(kTooMuch), nullptr); }), "");
  EXPECT_EQ(orva::stderr_of([] { EXPECT_EQ(malloc_chk(kTooMuch), nullptr); }), "");
  EXPECT_EQ(_MallocChkNbBytes, 5);
}

TEST_F(Accounting, AFailureEndsTheProcessWithItsMessageOnStandardError) {
  _MallocChkNbBytes = 1234;
  const Ended ended = run_to_end([] { malloc_chk(kTooMuch); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "** malloc_chk: pas pu allouer -1 bytes!  total alloue 1234\n");
  EXPECT_EQ(ended.out, "");
}

TEST_F(Accounting, ATracedAllocationPrintsAddressSizeAndNewTotal) {
  _MallocChkTrace = 1;
  _MallocChkNbBytes = 8;
  void* block = nullptr;
  const std::string out = stdout_of([&] { block = malloc_chk(24); });
  EXPECT_EQ(out, "\t" + bracketed(block) + " MCHK: +               24 =       32\n");
  free(block);
}

TEST_F(Accounting, ATracedReleasePrintsAddressSizeAndTotalAfterIt) {
  void* const block = malloc_chk(24);
  const std::string address = bracketed(block);
  _MallocChkTrace = 1;
  _MallocChkNbBytes = 32;
  const std::string out = stdout_of([&] { free_chk(block, 24); });
  EXPECT_EQ(out, "\t" + address + " FCHK: -               24 =        8\n");
}

TEST_F(Accounting, NothingIsPrintedWithoutTracing) {
  EXPECT_EQ(stdout_of([] { free_chk(malloc_chk(24), 24); }), "");
}

TEST_F(Accounting, AnAllocationThatLeavesTheTotalNegativeSaysSo) {
  _MallocChkNbBytes = -100;
  void* block = nullptr;
  EXPECT_EQ(stdout_of([&] { block = malloc_chk(10); }), "MallocChkCount < 0 !!!\n");
  EXPECT_NE(block, nullptr);
  EXPECT_EQ(_MallocChkNbBytes, -90);
  free(block);
}

TEST_F(Accounting, TheTotalWrapsAtThirtyTwoBits) {
  _MallocChkNbBytes = 2147483647;
  void* block = nullptr;
  EXPECT_EQ(stdout_of([&] { block = malloc_chk(1); }), "MallocChkCount < 0 !!!\n");
  EXPECT_EQ(_MallocChkNbBytes, -2147483647 - 1);
  free(block);
}

TEST_F(Accounting, AReleaseThatLeavesTheTotalNegativeSaysSoAndReleases) {
  void* const block = malloc_chk(16);
  _MallocChkNbBytes = 10;
  EXPECT_EQ(stdout_of([&] { free_chk(block, 16); }),
            "** FreeChk: cnt<0 ou nb<0.   Cnt: -6,  a liberer: 16\n");
  EXPECT_EQ(_MallocChkNbBytes, -6);
}

TEST_F(Accounting, AReleaseOfANegativeSizeSaysSo) {
  void* const block = malloc_chk(16);
  EXPECT_EQ(stdout_of([&] { free_chk(block, -4); }),
            "** FreeChk: cnt<0 ou nb<0.   Cnt: 20,  a liberer: -4\n");
}

TEST_F(Accounting, ReleasingNullOnlyCounts) {
  _MallocChkNbBytes = 10;
  free_chk(nullptr, 4);
  EXPECT_EQ(_MallocChkNbBytes, 6);
}

TEST_F(Accounting, AStringCopyCountsItsLengthWithoutTerminator) {
  char* const copy = strdup_chk("trois");
  EXPECT_STREQ(copy, "trois");
  EXPECT_EQ(_MallocChkStrBytes, 5);
  EXPECT_EQ(_MallocChkNbBytes, 0);
  EXPECT_EQ(strfree_chk(copy, 5), 0);
  EXPECT_EQ(_MallocChkStrBytes, 0);
}

TEST_F(Accounting, ReleasingAStringTakesOffWhatItsCallerSays) {
  _MallocChkStrBytes = 100;
  EXPECT_EQ(strfree_chk(strdup("abc"), 30), 0);
  EXPECT_EQ(_MallocChkStrBytes, 70);
}

TEST_F(Accounting, AGrowthCountsTheAddedElements) {
  _MallocChkNbBytes = 40;
  account_growth(nullptr, 8, 5);
  EXPECT_EQ(_MallocChkNbBytes, 80);
}

TEST_F(Accounting, ATracedGrowthPrintsElementsSizeAndNewTotal) {
  _MallocChkTrace = 1;
  _MallocChkNbBytes = 40;
  int block = 0;
  EXPECT_EQ(stdout_of([&] { account_growth(&block, 8, 5); }),
            "\t" + bracketed(&block) + " RCHK: +     8 X        5 =       80\n");
}
