#include "lib/util/accounting.h"

#include <gtest/gtest.h>

TEST(MallocChk, SizeZeroGivesNullAndCountsNothing) {
  const int before = _MallocChkNbBytes;
  EXPECT_EQ(malloc_chk(0), nullptr);
  EXPECT_EQ(_MallocChkNbBytes, before);
}
