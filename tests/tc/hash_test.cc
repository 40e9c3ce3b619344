#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "lib/tc/hashtabl.h"
#include "tests/tc/tc_fixture.h"

namespace {
using orva_test::add;
using orva_test::key;

std::string printed_stats(const CHashTable& table) {
  testing::internal::CaptureStdout();
  table.stats();
  fflush(stdout);
  return testing::internal::GetCapturedStdout();
}
}  // namespace

TEST(HashTable, SeventhKeyDoublesTheBucketsBeforeItIsAdded) {
  CHashTable table(8, 0.8f);
  for (int i = 0; i < 6; ++i) add(table, std::to_string(i));
  EXPECT_EQ(table.hsz, 8);
  EXPECT_EQ(table.max_elems, 6);
  EXPECT_EQ(add(table, "six"), 6);
  EXPECT_EQ(table.hsz, 16);
  EXPECT_NE(printed_stats(table).find("HSz 16, Msk 0xf, nb_elems 7 (exp 12)"), std::string::npos);
}

TEST(HashTable, CapacityStepsAreTruncated) {
  CHashTable table(8, 0.8f);
  std::vector<int> steps = {table.max_elems};
  while (table.hsz < 1024) {
    table.expand(2 * table.hsz);
    steps.push_back(table.max_elems);
  }
  EXPECT_EQ(steps, (std::vector<int>{6, 12, 25, 51, 102, 204, 409, 819}));
}

TEST(HashTable, EmptyStringIsAKeyOfItsOwn) {
  CHashTable table(8, 0.8f);
  EXPECT_EQ(add(table, "a"), 0);
  EXPECT_EQ(add(table, ""), 1);
  EXPECT_EQ(table[key("")], 1);
  EXPECT_EQ(table.btable[0], 1);
}

TEST(HashTable, AppendOfAKnownKeyGivesASecondIndexThatIsFoundFirst) {
  CHashTable table(8, 0.8f);
  add(table, "twice");
  EXPECT_EQ(table.append_string_copy(key("twice")), 1);
  EXPECT_EQ(table[key("twice")], 1);
}

TEST(HashTable, UnknownKeyIsMinusOne) {
  CHashTable table(8, 0.8f);
  add(table, "known");
  EXPECT_EQ(table[key("unknown")], -1);
}

TEST(HashTable, KeysStayWhereTheyAreWhileTheTableGrows) {
  CHashTable table(8, 0.8f);
  add(table, "first");
  const unsigned char* first = table.key(0);
  for (int i = 0; i < 5000; ++i) add(table, "key" + std::to_string(i));
  EXPECT_EQ(table.key(0), first);
  for (int i = 0; i < 5000; ++i) ASSERT_EQ(table[key("key" + std::to_string(i))], i + 1);
}

TEST(HashTable, CleanAndInit0StartOver) {
  CHashTable table(8, 0.8f);
  for (int i = 0; i < 100; ++i) add(table, std::to_string(i));
  table.clean();
  table.init0(8);
  EXPECT_EQ(table.nb_elems, 0);
  EXPECT_EQ(table.strings_size, 0);
  EXPECT_EQ(table[key("5")], -1);
  EXPECT_EQ(add(table, "5"), 0);
}

TEST(HashTable, CopyAndCloneKeepIndexes) {
  CHashTable table(8, 0.5f);
  for (int i = 0; i < 40; ++i) add(table, std::to_string(i));
  table.append_string_copy(key("7"));
  std::unique_ptr<CHashTable> clone(table.clone());
  EXPECT_EQ(clone->load_fact, 0.5f);
  EXPECT_EQ(clone->hsz, table.hsz);
  EXPECT_EQ(clone->nb_elems, 41);
  EXPECT_EQ((*clone)[key("7")], 40);
  EXPECT_EQ((*clone)[key("39")], 39);
}

TEST(HashTable, CopyOfItselfChangesNothing) {
  CHashTable table(8, 0.8f);
  add(table, "self");
  table.copy(&table);
  EXPECT_EQ(table[key("self")], 0);
}

TEST(HashTable, SizeOfSpeaksOfTheReferencePlatform) {
  CHashTable table(8, 0.8f);
  // Marks without pages, one 4096-byte row among four slots; one page of elements, one of buckets.
  const int stack = 8 + 4096 + 4 * 8;
  EXPECT_EQ(table.size_of(), stack + (4 + 8 + 1024 * 8) + (4 + 8 + 8 * 4) + 84);
}

TEST(HashTable, AccountedBytesAreThoseOfTheReferencePlatform) {
  const int before = _MallocChkNbBytes;
  {
    CHashTable table(8, 0.8f);
    EXPECT_EQ(_MallocChkNbBytes - before, 4096 + 4 * 8 + (4 + 1024 * 8) + (4 + 8 * 4));
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(HashTable, PrintListsEveryKeyInOrder) {
  CHashTable table(8, 0.8f);
  add(table, "b");
  add(table, "a");
  testing::internal::CaptureStdout();
  table.print();
  fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "H[   0] : b\nH[   1] : a\n");
}

TEST(HashTable, StatsOfAnEmptyTableDivideNothing) {
  const CHashTable table(8, 0.8f);
  EXPECT_NE(printed_stats(table).find("TotIters 0, NbElems 0, iter/elem 0.000\nMax LLen 0\n"),
            std::string::npos);
}

TEST(HashTable, SelfTestSaysOk) {
  testing::internal::CaptureStderr();
  hashtabl_test();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "CHashTable.Test OK.\n");
}

TEST(HashVectors, IndexesAndStatisticsAgree) {
  const std::string dir = orva_test::vectors_dir();
  if (dir.empty()) GTEST_SKIP() << "ORVA_VECTORS is not set";
  std::istringstream keys(orva_test::read_file(dir + "/hash/keys.txt"));
  std::istringstream indexes(orva_test::read_file(dir + "/hash/indexes.txt"));
  CHashTable table(8, 0.8f);
  int nb_keys = 0;
  for (std::string line; std::getline(keys, line); ++nb_keys) {
    int added = 0;
    const int index = table.find_or_add(key(line), &added);
    int expected_index = -1;
    int expected_added = -1;
    indexes >> expected_index >> expected_added;
    ASSERT_EQ(index, expected_index) << "key " << nb_keys;
    ASSERT_EQ(added, expected_added) << "key " << nb_keys;
  }
  EXPECT_GT(nb_keys, 1000);
  EXPECT_EQ(printed_stats(table), orva_test::read_file(dir + "/hash/stats.txt"));
  const orva_test::File file(tmpfile());
  ASSERT_EQ(table.f_write(file.get()), 0);
  EXPECT_TRUE(orva_test::contents(file.get()) == orva_test::read_file(dir + "/hash/table.bin"));
}
