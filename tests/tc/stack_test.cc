#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "lib/tc/tc_stack.h"
#include "tests/tc/tc_fixture.h"

namespace {
using Stack = TCMemStack<unsigned char>;

unsigned char* push(Stack& stack, int len) {
  const std::string block(static_cast<size_t>(len), 'b');
  return stack.push(orva_test::key(block), len);
}
}  // namespace

TEST(MemStack, BlockAboveARowGetsARowExactlyAsLarge) {
  Stack stack;
  push(stack, 5000);
  EXPECT_EQ(stack.curr_row_idx, 1);
  EXPECT_EQ(stack.row_tsz[1], 5000);
  EXPECT_EQ(stack.curr_row_cnt, 5000);
}

TEST(MemStack, MarkIsTheFillOrItsNegativeForANewRow) {
  Stack stack;
  push(stack, 100);
  push(stack, 4000);
  push(stack, 1);
  EXPECT_EQ(stack.marks[0], 0);
  EXPECT_EQ(stack.marks[1], -100);
  EXPECT_EQ(stack.marks[2], 4000);
  EXPECT_EQ(stack.sz_stack_top, 3);
}

TEST(MemStack, RowIsFilledToItsLastByte) {
  Stack stack;
  push(stack, 4095);
  push(stack, 1);
  EXPECT_EQ(stack.curr_row_idx, 0);
  push(stack, 1);
  EXPECT_EQ(stack.curr_row_idx, 1);
}

TEST(MemStack, BlocksStayWhereTheyAre) {
  Stack stack;
  unsigned char* first = push(stack, 3);
  for (int i = 0; i < 20; ++i) push(stack, 3000);
  EXPECT_EQ(stack.rows[0], first);
  EXPECT_EQ(std::string(first, first + 3), "bbb");
  EXPECT_EQ(stack.rows_tsize % 4, 0);
}

TEST(MemStack, FreeAllKeepsTheRowsForReuse) {
  Stack stack;
  push(stack, 9000);
  push(stack, 10);
  unsigned char* row = stack.rows[1];
  const int bytes = _MallocChkNbBytes;
  stack.free_all();
  EXPECT_EQ(stack.sz_stack_top, 0);
  EXPECT_EQ(stack.curr_row_idx, 0);
  EXPECT_EQ(push(stack, 8000), row);
  EXPECT_EQ(stack.row_tsz[1], 9000);
  EXPECT_EQ(_MallocChkNbBytes, bytes);
}

TEST(MemStack, SmallKeptRowIsReplacedByALargerOne) {
  Stack stack;
  push(stack, 4000);
  push(stack, 4000);
  stack.free_all();
  push(stack, 6000);
  EXPECT_EQ(stack.row_tsz[1], 6000);
}

TEST(MemStack, SizeOfSumsMarksRowsAndSlots) {
  Stack stack;
  EXPECT_EQ(stack.size_of(), 8 + 4096 + 4 * 8);
  push(stack, 5000);
  EXPECT_EQ(stack.size_of(), (4 + 8 + 4) + 4096 + 5000 + 4 * 8);
}

TEST(MemStack, EverythingIsGivenBack) {
  const int before = _MallocChkNbBytes;
  {
    Stack stack;
    for (int i = 0; i < 30; ++i) push(stack, 1000 * i);
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(MemStackDeath, MissingRowIsReportedAndEndsTheProcessEvenWhereFailuresReturn) {
  EXPECT_EXIT(
      {
        dup2(2, 1);  // the report's first half goes to standard output
        _MallocChkExitOnErr = 0;
        Stack stack;
        for (int i = 0; i < 3; ++i) push(stack, 10);
        orva_test::fail_allocation(0, true);
        push(stack, 5000);
      },
      testing::ExitedWithCode(1),
      "\n\\*\\*\\*   src_copy/v2.2/tc_stack : 237  ==>\tPtr NULL\n\n\n"
      "TCMemStack: ptr NULL. This 0x[0-9a-f]+ get_len 5000  sz_stack_top 4\n"
      "  curr_row_idx 1 curr_row_cnt 0 rows_tsize 4 row_tsz\\[r\\] 5000\n");
}
