#include "lib/tc/int_htable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <vector>

#include "lib/tc/sparse_table.h"
#include "lib/tc/tc_trie.h"
#include "tests/tc/tc_fixture.h"

namespace {

void reset_counters() {
  TCIntHTable_Iters = 0;
  TCIntHTable_MaxIters = 0;
  TCIntHTable_Acces = 0;
  TCIntHTable_NbRehash = 0;
}

using IntTable = TCIntHTable<int, unsigned>;

void put(IntTable& table, int key, unsigned val) {
  int added = 0;
  *table.find_or_add(key, &added) = val;
}

bool holds(const IntTable& table, int key) {
  int pos = 0;
  int found = 0;
  table.find_pos(key, &pos, &found);
  return found != 0;
}

template <typename K>
std::vector<K> slot_order(const TCIntHTable<K, unsigned>& table) {
  std::vector<K> keys(static_cast<size_t>(table.nb_used));
  table.get_contents(keys.data(), nullptr);
  return keys;
}

std::vector<int> numbers(const std::string& text) {
  std::istringstream in(text);
  std::vector<int> out;
  for (int n; in >> n;) out.push_back(n);
  return out;
}

}  // namespace

template class TCIntHTable<unsigned char, unsigned>;

TEST(IntTable, EleventhKeyDoublesTheCapacityFirst) {
  IntTable table;
  for (int i = 0; i < 10; ++i) put(table, i, 0);
  EXPECT_EQ(table.entries.tsize, 16u);
  put(table, 10, 0);
  EXPECT_EQ(table.entries.tsize, 32u);
  EXPECT_EQ(table.nb_used, 11);
}

TEST(IntTable, LastSlotIsNeverUsed) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    IntTable table;
    for (int i = 0; i < 10; ++i) put(table, static_cast<int>(random()), 0);
    EXPECT_FALSE(table.used.get(15));
  }
}

TEST(IntTable, AgreesWithAMap) {
  std::mt19937 random(11);
  IntTable table;
  std::map<int, unsigned> map;
  for (unsigned i = 0; i < 5000; ++i) {
    const int k = static_cast<int>(random() % 3000);
    int added = -1;
    *table.find_or_add(k, &added) = i;
    EXPECT_EQ(added, map.count(k) == 0 ? 1 : 0);
    map[k] = i;
  }
  std::vector<int> keys(map.size());
  std::vector<unsigned> vals(map.size());
  table.get_contents(keys.data(), vals.data());
  for (size_t i = 0; i < keys.size(); ++i) EXPECT_EQ(map[keys[i]], vals[i]);
}

TEST(IntTable, ContentsWithoutArraysWriteNothing) {
  IntTable table;
  put(table, 1, 2);
  table.get_contents(nullptr, nullptr);
  unsigned val = 0;
  table.get_contents(nullptr, &val);
  EXPECT_EQ(val, 2u);
}

// A table of 1024 slots, all but the last taken by keys that nobody asks for.
void fill_with_strangers(IntTable& table) {
  table.rehash(1024);
  for (unsigned i = 0; i < 1023; ++i) {
    table.entries[i].key = -1;
    table.used.set(i);
  }
}

// The slots of the mixed probes for `key` among 1023, from the formula.
std::vector<unsigned> mixed_walk(unsigned key) {
  std::vector<unsigned> walk;
  const unsigned x = key ^ 0xabcd1234u;
  unsigned p = 0;
  for (unsigned i = 0; i <= 100; ++i) {
    const unsigned t = (p + i) ^ 0x1234abcdu;
    p = ((t + 1) ^ (x >> ((t >> 3) & 15)) ^ (x >> ((t >> 7) & 15)) ^ (x >> ((t >> 13) & 15)) ^
         (x << ((2 * t) & 15))) %
        1023;
    walk.push_back(p);
  }
  return walk;
}

TEST(IntTable, LookupBeyondAHundredAndOneProbesGoesOnSlotBySlot) {
  const std::vector<unsigned> walk = mixed_walk(99);
  unsigned target = (walk.back() + 1) % 1023;
  int linear_probes = 1;
  while (std::count(walk.begin(), walk.end(), target) != 0) {
    target = (target + 1) % 1023;
    ++linear_probes;
  }
  IntTable table;
  fill_with_strangers(table);
  table.entries[target].key = 99;
  reset_counters();
  int pos = 0;
  int found = 0;
  EXPECT_EQ(table.find_pos(99, &pos, &found), static_cast<int>(target));
  EXPECT_NE(found, 0);
  EXPECT_EQ(TCIntHTable_Iters, 101 + linear_probes);
}

TEST(IntTable, TombstoneIsUsedAgain) {
  IntTable table;
  put(table, 5, 1);
  int pos = 0;
  int found = 0;
  const auto slot = static_cast<unsigned>(table.find_pos(5, &pos, &found));
  table.used.reset(slot);
  table.deleted.set(slot);
  table.nb_used = 0;
  table.nb_deleted = 1;
  EXPECT_FALSE(holds(table, 5));
  put(table, 5, 9);
  EXPECT_EQ(table.nb_deleted, 0);
  EXPECT_FALSE(table.deleted.get(slot));
  EXPECT_TRUE(table.used.get(slot));
}

TEST(IntTable, ManyTombstonesAreClearedAtTheSameSize) {
  IntTable table;
  for (unsigned i = 0; i < 4; ++i) table.deleted.set(i);
  table.nb_deleted = 4;
  reset_counters();
  put(table, 1, 1);
  EXPECT_EQ(TCIntHTable_NbRehash, 1);
  EXPECT_EQ(table.entries.tsize, 16u);
  EXPECT_EQ(table.nb_deleted, 0);
  EXPECT_TRUE(holds(table, 1));
}

TEST(IntTable, SelfTestIsStubbed) {
  testing::internal::CaptureStderr();
  tc_intht_test();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "TCIntHTTest: stubbed.\n");
}

TEST(IntTable, SlotsHoldKeyAndValueAlone) {
  EXPECT_EQ(sizeof(IntTable::Slot), 8u);
  EXPECT_EQ(sizeof(TCIntHTable<unsigned char, TrieNodeSeg>::Slot), 12u);
}

TEST(HashVectors, IntegerTablesAgree) {
  const std::string dir = orva_test::vectors_dir();
  if (dir.empty()) GTEST_SKIP() << "ORVA_VECTORS is not set";
  std::istringstream in(orva_test::read_file(dir + "/hash/int-tables.tsv"));
  std::string line;
  std::getline(in, line);
  int nb_tables = 0;
  for (; std::getline(in, line); ++nb_tables) {
    std::istringstream fields(line);
    std::string name, added_order, slots, iters, max_iters, acces, rehash;
    for (std::string* f : {&name, &added_order, &slots, &iters, &max_iters, &acces, &rehash}) {
      std::getline(fields, *f, '\t');
    }
    reset_counters();
    if (name == "bytes" || name == "letters") {
      TCIntHTable<unsigned char, unsigned> table;
      int added = 0;
      for (const int k : numbers(added_order)) {
        *table.find_or_add(static_cast<unsigned char>(k), &added) = 0;
      }
      const std::vector<unsigned char> order = slot_order(table);
      EXPECT_EQ(std::vector<int>(order.begin(), order.end()), numbers(slots)) << name;
    } else {
      IntTable table;
      for (const int k : numbers(added_order)) put(table, k, 0);
      EXPECT_EQ(slot_order(table), numbers(slots)) << name;
    }
    const std::vector<int> counters = {TCIntHTable_Iters, TCIntHTable_MaxIters, TCIntHTable_Acces,
                                       TCIntHTable_NbRehash};
    const std::vector<int> expected = {std::stoi(iters), std::stoi(max_iters), std::stoi(acces),
                                       std::stoi(rehash)};
    EXPECT_EQ(counters, expected) << name;
  }
  EXPECT_GE(nb_tables, 4);
}
