#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <vector>

#include "lib/tc/byte2bits.h"
#include "lib/tc/expnd_bool_table.h"
#include "lib/tc/mem_ptr.h"
#include "lib/tc/sparse_table.h"
#include "lib/tc/tc_expnd_table.h"
#include "tests/tc/tc_fixture.h"

TEST(PagedTable, OneElementGivesCapacityOne) {
  TCExpndTable<int> table;
  table.expand(1);
  EXPECT_EQ(table.tsize, 1u);
  EXPECT_EQ(table.nb_pages, 1);
  EXPECT_EQ(table.pages_tsize, 1);
}

TEST(PagedTable, OneBeyondAPageGivesTwoFullPages) {
  TCExpndTable<int> table;
  table.expand(1025);
  EXPECT_EQ(table.tsize, 2048u);
  EXPECT_EQ(table.nb_pages, 2);
  EXPECT_EQ(table.pages_tsize, 4);
}

TEST(PagedTable, CapacityDoublesWithinThePageAndNeverShrinks) {
  TCExpndTable<int> table;
  table.expand(5);
  EXPECT_EQ(table.tsize, 8u);
  table.expand(3);
  EXPECT_EQ(table.tsize, 8u);
  table.expand(1000);
  EXPECT_EQ(table.tsize, 1024u);
  EXPECT_EQ(table.nb_pages, 1);
}

TEST(PagedTable, PageTableGrowsByFourOrToTheNeed) {
  TCExpndTable<int> table;
  table.expand(10);
  table.expand(3 * 1024);
  EXPECT_EQ(table.pages_tsize, 5);
  table.expand(20 * 1024);
  EXPECT_EQ(table.pages_tsize, 20);
}

TEST(PagedTable, ElementsKeepTheirValuesAndPagesTheirPlace) {
  TCExpndTable<int> table;
  for (unsigned i = 0; i < 1500; ++i) {
    table.expand(i + 1);
    table[i] = static_cast<int>(i);
  }
  const int* place = &table[1400];
  table.expand(100000);
  EXPECT_EQ(&table[1400], place);
  for (unsigned i = 0; i < 1500; ++i) ASSERT_EQ(table[i], static_cast<int>(i));
}

TEST(PagedTable, CountersFollowTheGrowth) {
  const int before = _MallocChkNbBytes;
  TCExpndTable<int> table;
  table.expand(5);
  EXPECT_EQ(_MallocChkNbBytes - before, 4 + 8 * 4);
  table.expand(1025);
  EXPECT_EQ(_MallocChkNbBytes - before, 5 * 4 + 2 * 1024 * 4);
  EXPECT_EQ(table.size_of(), 5 * 4 + 8 + 2 * 1024 * 4);
  table.release();
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(PagedTable, GrowthIsTraced) {
  TCExpndTable<int> table;
  table.expand(4);
  _MallocChkTrace = 1;
  testing::internal::CaptureStdout();
  table.expand(8);
  fflush(stdout);
  _MallocChkTrace = 0;
  const std::string line = testing::internal::GetCapturedStdout();
  EXPECT_NE(line.find("] RCHK: +     4 X        4 ="), std::string::npos) << line;
}

TEST(PagedTable, MoreThanTheLargestPageTableIsRefused) {
  TCExpndTable<int> table;
  _MallocChkExitOnErr = 0;
  EXPECT_THROW(table.expand(65535u * 1024u + 1), orva::GrowthFailed);
  _MallocChkExitOnErr = 1;
  EXPECT_EQ(table.tsize, 0u);
}

TEST(BitTable, ExpandToBitZeroIsOneWordAndToBitThirtyTwoTwo) {
  CExpndBoolTable bits;
  bits.expand(0);
  EXPECT_EQ(bits.size(), 32);
  bits.expand(32);
  EXPECT_EQ(bits.size(), 64);
}

TEST(BitTable, NegativeBitAsksForNothing) {
  CExpndBoolTable bits;
  bits.expand(-1);
  EXPECT_EQ(bits.size(), 0);
}

TEST(BitTable, ContentsAreTheSetBitsInOrder) {
  CExpndBoolTable bits;
  bits.expand(40);
  for (const unsigned b : {40u, 0u, 7u}) bits.set(b);
  std::vector<int> numbers(static_cast<size_t>(bits.get_cnt_len()));
  ASSERT_EQ(numbers.size(), 3u);
  bits.get_contents(numbers.data());
  EXPECT_EQ(numbers, (std::vector<int>{0, 7, 40}));
}

TEST(BitTable, InitClearsAndKeepsTheCapacity) {
  CExpndBoolTable bits;
  bits.expand(100);
  bits.set(99);
  bits.init();
  EXPECT_EQ(bits.get_cnt_len(), 0);
  EXPECT_EQ(bits.size(), 128);
}

TEST(BitTable, CopyAndCloneAgreeOverManyPages) {
  CExpndBoolTable bits;
  bits.expand(40000);
  for (unsigned b = 0; b < 40000; b += 37) bits.set(b);
  std::unique_ptr<CExpndBoolTable> clone(bits.clone());
  EXPECT_EQ(clone->size(), bits.size());
  EXPECT_EQ(clone->get_cnt_len(), bits.get_cnt_len());
  EXPECT_TRUE(clone->get(37 * 1000));
  EXPECT_FALSE(clone->get(37 * 1000 + 1));
}

TEST(BitTable, CopyTakesASmallerCapacityToo) {
  CExpndBoolTable large;
  large.expand(5000);
  large.set(4000);
  CExpndBoolTable small;
  small.expand(31);
  small.set(3);
  large.copy(&small);
  EXPECT_EQ(large.size(), 32);
  EXPECT_TRUE(large.get(3));
  EXPECT_EQ(large.get_cnt_len(), 1);
}

TEST(BitTable, PrintShowsSizeAndWords) {
  CExpndBoolTable bits;
  bits.expand(32);
  bits.set(0);
  bits.set(36);
  testing::internal::CaptureStdout();
  bits.print();
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "BoolTable: Size 64\n\t00000001 00000010 \n");
}

TEST(ByteToBits, ListsShareOneBufferOfAllPositions) {
  const CByte2BitsCnvt& bits = CByte2BitsCnvt::instance();
  int total = 0;
  for (int v = 0; v < 256; ++v) total += bits.count(static_cast<unsigned char>(v));
  EXPECT_EQ(total, CByte2BitsCnvt::kNbPositions);
  ASSERT_EQ(bits.count(0x91), 3);
  EXPECT_EQ(bits.positions(0x91)[0], 0);
  EXPECT_EQ(bits.positions(0x91)[1], 4);
  EXPECT_EQ(bits.positions(0x91)[2], 7);
  EXPECT_EQ(bits.positions(255) + 8 - bits.positions(0), CByte2BitsCnvt::kNbPositions);
}

TEST(MemBuffer, SmallerSizeChangesNothing) {
  MemPtr<char> buffer;
  ASSERT_EQ(buffer.realloc(100), 1);
  const char* block = buffer.ptr;
  const int calls = orva_test::nb_reallocs();
  EXPECT_EQ(buffer.realloc(99), 1);
  EXPECT_EQ(buffer.size, 100);
  EXPECT_EQ(buffer.ptr, block);
  EXPECT_EQ(orva_test::nb_reallocs(), calls);
}

TEST(MemBuffer, EqualSizeStillCallsTheCLibrary) {
  MemPtr<char> buffer;
  ASSERT_EQ(buffer.realloc(100), 1);
  const int calls = orva_test::nb_reallocs();
  EXPECT_EQ(buffer.realloc(100), 1);
  EXPECT_EQ(orva_test::nb_reallocs(), calls + 1);
}

TEST(MemBuffer, IsNotAccounted) {
  const int before = _MallocChkNbBytes;
  MemPtr<char> buffer;
  ASSERT_EQ(buffer.realloc(5000), 1);
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(MemBuffer, FailureSetsTheSizeToZero) {
  MemPtr<char> buffer;
  ASSERT_EQ(buffer.realloc(100), 1);
  orva_test::fail_allocation(0, false);
  EXPECT_EQ(buffer.realloc(200), 0);
  EXPECT_EQ(buffer.size, 0);
  EXPECT_EQ(buffer.realloc(200), 1);
  EXPECT_EQ(buffer.size, 200);
}

namespace {
using Sparse = TCSparseTable<int, unsigned>;

struct SparseMap : Sparse {
  ~SparseMap() { clean(); }
  void put(int key, unsigned val) {
    int added = 0;
    *find_or_add(key, &added) = val;
  }
  int at(int key) {
    int found = 0;
    const unsigned* val = get(key, &found);
    return found != 0 ? static_cast<int>(*val) : -1;
  }
};
}  // namespace

TEST(SparseTable, FifthKeyMakesItAHashTableAndKeepsTheValues) {
  SparseMap map;
  const int modes[] = {0, 1, 1, 1, 2, 2};
  for (int i = 0; i < 6; ++i) {
    map.put(10 * i, static_cast<unsigned>(i));
    EXPECT_EQ(map.mode(), modes[i]) << i;
    EXPECT_EQ(map.count(), i + 1);
    for (int k = 0; k <= i; ++k) EXPECT_EQ(map.at(10 * k), k);
    EXPECT_EQ(map.at(7), -1);
  }
}

TEST(SparseTable, KnownKeyIsNotAddedInAnyMode) {
  SparseMap map;
  for (int i = 0; i < 8; ++i) {
    map.put(i, 1);
    int added = -1;
    map.find_or_add(0, &added);
    EXPECT_EQ(added, 0);
    EXPECT_EQ(map.count(), i + 1);
  }
}

TEST(SparseTable, ContentsFollowTheStorage) {
  SparseMap map;
  for (const int k : {9, 3, 7}) map.put(k, static_cast<unsigned>(k) + 1);
  int keys[3];
  unsigned vals[3];
  map.get_contents(keys, nullptr);
  map.get_contents(nullptr, vals);
  EXPECT_EQ(std::vector<int>(keys, keys + 3), (std::vector<int>{9, 3, 7}));
  EXPECT_EQ(std::vector<unsigned>(vals, vals + 3), (std::vector<unsigned>{10, 4, 8}));
}

TEST(SparseTable, ModesAreAccountedAndCleanGivesBack) {
  const int before = _MallocChkNbBytes;
  Sparse map;
  int added = 0;
  for (int i = 0; i < 2; ++i) *map.find_or_add(i, &added) = 0;
  EXPECT_EQ(_MallocChkNbBytes - before, 4 * 8);
  for (int i = 2; i < 5; ++i) *map.find_or_add(i, &added) = 0;
  // 16 slots of 8 bytes and two bit tables of a word, each with its page table of one slot.
  EXPECT_EQ(_MallocChkNbBytes - before, (4 + 16 * 8) + 2 * (4 + 4));
  map.clean();
  EXPECT_EQ(_MallocChkNbBytes, before);
}
