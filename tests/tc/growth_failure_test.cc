// Every allocation fails once, then from some point on for ever: nothing leaks, nothing crashes.

#include <gtest/gtest.h>

#include <functional>

#include "lib/tc/expt_sort.h"
#include "lib/tc/hashtabl.h"
#include "lib/tc/tc_trie.h"
#include "lib/tc/trie_fsa_enum.h"
#include "lib/tc/word_freq.h"
#include "tests/tc/tc_fixture.h"

namespace {

// Runs `body` with its n-th allocation failing, n = 0, 1, ..., until it passes untouched; returns
// how often it failed.
int failures_of(const std::function<void()>& body, bool for_ever) {
  const int before = _MallocChkNbBytes;
  _MallocChkExitOnErr = 0;
  int n = 0;
  for (bool failed = true; failed; ++n) {
    orva_test::fail_allocation(n, for_ever);
    try {
      body();
      failed = false;
    } catch (const orva::GrowthFailed&) {
    }
    orva_test::fail_allocation(-1, false);
    EXPECT_EQ(_MallocChkNbBytes, before) << "allocation " << n;
  }
  _MallocChkExitOnErr = 1;
  return n - 1;
}

void expect_clean_failures(const std::function<void()>& body, int at_least) {
  EXPECT_GE(failures_of(body, false), at_least);
  EXPECT_GE(failures_of(body, true), at_least);
}

}  // namespace

TEST(GrowthFailure, PagedTableGivesEverythingBack) {
  expect_clean_failures(
      [] {
        TCExpndTable<int> table;
        for (unsigned n = 1; n < 9000; n *= 2) table.expand(n);
      },
      8);
}

TEST(GrowthFailure, IntTableGivesEverythingBack) {
  expect_clean_failures(
      [] {
        TCIntHTable<int, unsigned> table;
        int added = 0;
        for (int i = 0; i < 100; ++i) *table.find_or_add(i, &added) = 0;
      },
      8);
}

TEST(GrowthFailure, TrieAndEnumeratorGiveEverythingBack) {
  expect_clean_failures(
      [] {
        TCTrie<unsigned char> trie;
        for (int i = 0; i < 60; ++i) {
          const unsigned char path[3] = {static_cast<unsigned char>(i % 7),
                                         static_cast<unsigned char>(i % 11),
                                         static_cast<unsigned char>(i)};
          trie.add_path(path, 3)->word = i;
        }
        TCTrieFsaEnum<unsigned char> states;
        states.init0(&trie);
        unsigned char chrs[256];
        int nb = 0;
        int word = 0;
        while (states.next(&nb, chrs, &word)) continue;
      },
      20);
}

TEST(GrowthFailure, SortLeavesEveryRecordInTheTable) {
  TCExpndTable<WordFreq> table;
  table.expand(3000);
  for (unsigned i = 0; i < 3000; ++i) {
    table[i] = {static_cast<int>(i), static_cast<int>(i % 7), 0};
  }
  expect_clean_failures(
      [&] { TCExpTSortImm<WordFreq>(&table, offsetof(WordFreq, freq), kIntKey).sort(0, 3000); }, 2);
  long sum = 0;
  for (unsigned i = 0; i < 3000; ++i) sum += table[i].word;
  EXPECT_EQ(sum, 2999L * 3000 / 2);
}

TEST(GrowthFailureDeath, EndsTheProcessUnlessFailuresReturn) {
  EXPECT_EXIT(
      {
        TCExpndTable<int> table;
        table.expand(1);
        orva_test::fail_allocation(0, true);
        table.expand(2);
      },
      testing::ExitedWithCode(1), "pas pu allouer 8 bytes!  total alloue");
}
