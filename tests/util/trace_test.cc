// The aggregating trace: five slots of repeated events.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>

#include "lib/util/accounting.h"
#include "tests/support/streams.h"

namespace {

// A block whose address prints as `number`.
const void* at(uintptr_t number) { return reinterpret_cast<const void*>(number); }

class Trace : public ::testing::Test {
 protected:
  void SetUp() override { _MallocChkNbBytes = 1000; }
  void TearDown() override { _MallocChkNbBytes = 0; }
};

// What `body` prints in a process of its own, so that each starts with empty slots, the cursor on
// the first, and allocations as the last kind.
std::string trace_of(const std::function<void()>& body) {
  const orva::Ended ended = orva::run_to_end(body);
  EXPECT_EQ(ended.status, orva::kReturned);
  return ended.out;
}

}  // namespace

TEST_F(Trace, TheFirstEventOfASizePrintsItsOwnLineWithTotalPlusSize) {
  EXPECT_EQ(trace_of([] { mfchk_trace(at(0xabc), 24, 1); }),
            "\t[     abc] MCHK: +               24 =     1024\n");
}

TEST_F(Trace, AReleasePrintsTotalMinusSize) {
  EXPECT_EQ(trace_of([] { mfchk_trace(at(0xabc), 24, 0); }),
            "\t[     abc] FCHK: -               24 =      976\n");
}

TEST_F(Trace, TheTotalItselfIsLeftAlone) {
  trace_of([] {
    mfchk_trace(at(0xabc), 24, 1);
    if (_MallocChkNbBytes != 1000) abort();
  });
}

TEST_F(Trace, RepetitionsPrintNothingUntilTheFlush) {
  EXPECT_EQ(trace_of([] {
              for (int i = 0; i < 4; ++i) mfchk_trace(at(0x10 + static_cast<unsigned>(i)), 8, 1);
            }),
            "\t[      10] MCHK: +                8 =     1008\n");
}

TEST_F(Trace, TheFlushPrintsTheRepetitionsBeyondTheFirst) {
  EXPECT_EQ(trace_of([] {
              for (int i = 0; i < 4; ++i) mfchk_trace(at(0x10), 8, 1);
              mfchk_trace_flush();
            }),
            "\t[      10] MCHK: +                8 =     1008\n"
            "\t[      10] MCHK: +     3 X        8 =     1000\n");
}

TEST_F(Trace, TheFlushSkipsSingleEventsAndClearsTheSlots) {
  EXPECT_EQ(trace_of([] {
              mfchk_trace(at(0x10), 8, 1);
              mfchk_trace_flush();
              mfchk_trace_flush();
              mfchk_trace(at(0x20), 8, 1);
            }),
            "\t[      10] MCHK: +                8 =     1008\n"
            "\t[      20] MCHK: +                8 =     1008\n");
}

TEST_F(Trace, TheResetForgetsRepetitionsWithoutPrinting) {
  EXPECT_EQ(trace_of([] {
              mfchk_trace(at(0x10), 8, 1);
              mfchk_trace(at(0x10), 8, 1);
              mfchk_trace_reset();
              mfchk_trace_flush();
            }),
            "\t[      10] MCHK: +                8 =     1008\n");
}

TEST_F(Trace, AChangeOfKindFlushesFirst) {
  EXPECT_EQ(trace_of([] {
              mfchk_trace(at(0x10), 8, 1);
              mfchk_trace(at(0x11), 8, 1);
              mfchk_trace(at(0x11), 8, 0);
            }),
            "\t[      10] MCHK: +                8 =     1008\n"
            "\t[      10] MCHK: +     1 X        8 =     1000\n"
            "\t[      11] FCHK: -                8 =      992\n");
}

TEST_F(Trace, AnyNonzeroFlagIsAnAllocation) {
  EXPECT_EQ(trace_of([] {
              mfchk_trace(at(0x10), 8, 1);
              mfchk_trace(at(0x11), 8, 2);
              mfchk_trace_flush();
            }),
            "\t[      10] MCHK: +                8 =     1008\n"
            "\t[      10] MCHK: +     1 X        8 =     1000\n");
}

TEST_F(Trace, TheSixthSizeReplacesTheOldestSlotAndPrintsItsRepetitions) {
  EXPECT_EQ(trace_of([] {
              for (int size = 1; size <= 5; ++size) {
                mfchk_trace(at(static_cast<unsigned>(size)), size, 1);
              }
              mfchk_trace(at(0x99), 1, 1);
              mfchk_trace(at(0x99), 1, 1);
              mfchk_trace(at(6), 6, 1);
              mfchk_trace(at(7), 7, 1);  // the second slot holds no repetition
              mfchk_trace(at(8), 1, 1);  // the first size has lost its slot
            }),
            "\t[       1] MCHK: +                1 =     1001\n"
            "\t[       2] MCHK: +                2 =     1002\n"
            "\t[       3] MCHK: +                3 =     1003\n"
            "\t[       4] MCHK: +                4 =     1004\n"
            "\t[       5] MCHK: +                5 =     1005\n"
            "\t[       1] MCHK: +     2 X        1 =     1000\n"
            "\t[       6] MCHK: +                6 =     1006\n"
            "\t[       7] MCHK: +                7 =     1007\n"
            "\t[       8] MCHK: +                1 =     1001\n");
}

TEST_F(Trace, AReplacedSlotOfReleasesPrintsItsOwnCount) {
  EXPECT_EQ(trace_of([] {
              for (int size = 1; size <= 5; ++size) mfchk_trace(at(1), size, 0);
              for (int i = 0; i < 3; ++i) mfchk_trace(at(1), 1, 0);
              mfchk_trace(at(6), 6, 0);
            }),
            "\t[       1] FCHK: -                1 =      999\n"
            "\t[       1] FCHK: -                2 =      998\n"
            "\t[       1] FCHK: -                3 =      997\n"
            "\t[       1] FCHK: -                4 =      996\n"
            "\t[       1] FCHK: -                5 =      995\n"
            "\t[       1] FCHK: -     3 X        1 =     1000\n"
            "\t[       6] FCHK: -                6 =      994\n");
}

TEST_F(Trace, AFlushOfReleasesPrintsTheCountOfTheSlotAtTheCursor) {
  // With all five slots in use the cursor stands on the first again, whose count is 2.
  EXPECT_EQ(trace_of([] {
              for (int size = 1; size <= 5; ++size) mfchk_trace(at(1), size, 0);
              mfchk_trace(at(1), 1, 0);
              for (int i = 0; i < 6; ++i) mfchk_trace(at(1), 3, 0);
              mfchk_trace_flush();
            }),
            "\t[       1] FCHK: -                1 =      999\n"
            "\t[       1] FCHK: -                2 =      998\n"
            "\t[       1] FCHK: -                3 =      997\n"
            "\t[       1] FCHK: -                4 =      996\n"
            "\t[       1] FCHK: -                5 =      995\n"
            "\t[       1] FCHK: -     1 X        1 =     1000\n"
            "\t[       1] FCHK: -     1 X        3 =     1000\n");
}

TEST_F(Trace, AFlushOfReleasesWithTheCursorOnAnEmptySlotPrintsMinusOne) {
  EXPECT_EQ(trace_of([] {
              mfchk_trace(at(1), 8, 0);
              mfchk_trace(at(1), 8, 0);
              mfchk_trace_flush();
            }),
            "\t[       1] FCHK: -                8 =      992\n"
            "\t[       1] FCHK: -    -1 X        8 =     1000\n");
}
