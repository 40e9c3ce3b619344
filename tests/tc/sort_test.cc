#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "lib/tc/expt_sort.h"
#include "lib/tc/word_freq.h"
#include "tests/tc/tc_fixture.h"

namespace {

using Sorter = TCExpTSortImm<WordFreq>;

struct Words {
  explicit Words(const std::vector<int>& freqs) {
    table.expand(static_cast<unsigned>(freqs.size()));
    for (unsigned i = 0; i < freqs.size(); ++i) table[i] = {static_cast<int>(i), freqs[i], 0};
  }
  std::vector<int> order(unsigned n) const {
    std::vector<int> words;
    for (unsigned i = 0; i < n; ++i) words.push_back(table[i].word);
    return words;
  }
  TCExpndTable<WordFreq> table;
};

std::vector<int> random_freqs(unsigned n, unsigned nb_values, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<int> freqs;
  for (unsigned i = 0; i < n; ++i) freqs.push_back(static_cast<int>(random() % nb_values));
  return freqs;
}

// The order that the sort promises: ascending, and among equals the later first.
std::vector<int> promised(const std::vector<int>& freqs, int from, int to) {
  std::vector<int> order(freqs.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  std::reverse(order.begin() + from, order.begin() + to);
  std::stable_sort(order.begin() + from, order.begin() + to, [&](int a, int b) {
    return freqs[static_cast<size_t>(a)] < freqs[static_cast<size_t>(b)];
  });
  return order;
}

void expect_promised(unsigned n, int from, int to, unsigned nb_values) {
  const std::vector<int> freqs = random_freqs(n, nb_values, n + nb_values);
  Words words(freqs);
  Sorter(&words.table, offsetof(WordFreq, freq), kIntKey).sort(from, to);
  EXPECT_EQ(words.order(n), promised(freqs, from, to)) << n << ": " << from << " to " << to;
}

}  // namespace

TEST(MergeSort, WholeCapacityOfAPartialPageIsSorted) {
  Words words({5, 1, 4, 2, 3, 0, 9, 7});
  Sorter(&words.table, offsetof(WordFreq, freq), kIntKey).sort(0, -1);
  EXPECT_EQ(words.order(8), (std::vector<int>{5, 1, 3, 4, 2, 0, 7, 6}));
}

TEST(MergeSort, EqualKeysComeOutWithTheLaterOneFirst) {
  Words words({7, 7});
  Sorter(&words.table, offsetof(WordFreq, freq), kIntKey).sort(0, 2);
  EXPECT_EQ(words.order(2), (std::vector<int>{1, 0}));
}

TEST(MergeSort, OddNumberOfRecordsIsSorted) {
  for (const unsigned n : {1u, 3u, 5u, 7u, 101u, 1023u}) {
    expect_promised(n, 0, static_cast<int>(n), 10);
  }
}

TEST(MergeSort, EverySmallSizeKeepsThePromise) {
  for (unsigned n = 1; n <= 130; ++n) expect_promised(n, 0, static_cast<int>(n), 5);
}

TEST(MergeSort, ManyRowsKeepThePromiseWhateverTheirNumber) {
  for (const unsigned n : {1024u, 1025u, 2048u, 3000u, 5 * 1024u, 7 * 1024u + 17, 20000u}) {
    expect_promised(n, 0, static_cast<int>(n), 50);
    expect_promised(n, 0, static_cast<int>(n), 1000000);
  }
}

TEST(MergeSort, RecordsOutsideTheRangeStayWhereTheyAre) {
  expect_promised(5000, 700, 4100, 20);
  expect_promised(5000, 1024, 2048, 20);
  expect_promised(5000, 1023, 1025, 1);
  expect_promised(900, 100, 333, 20);
}

TEST(MergeSort, NothingHappensForAnEmptyOrNegativeRange) {
  const std::vector<int> freqs = random_freqs(10, 100, 1);
  Words words(freqs);
  Sorter sorter(&words.table, offsetof(WordFreq, freq), kIntKey);
  sorter.sort(5, 5);
  sorter.sort(5, 2);
  sorter.sort(-3, 9);
  EXPECT_EQ(words.order(10), promised(freqs, 0, 0));
}

TEST(MergeSort, EndBeyondTheTableIsItsCapacity) {
  const std::vector<int> freqs = random_freqs(16, 100, 2);
  Words words(freqs);
  Sorter(&words.table, offsetof(WordFreq, freq), kIntKey).sort(0, 1000);
  EXPECT_EQ(words.order(16), promised(freqs, 0, 16));
}

TEST(MergeSort, RowSortSaysThatTheResultIsInTheRow) {
  Words words(random_freqs(1024, 10, 3));
  TCExpndTable<WordFreq> spare;
  spare.expand(1024);
  Sorter sorter(&words.table, offsetof(WordFreq, freq), kIntKey);
  EXPECT_NE(sorter.row_sort(words.table.pages[0], spare.pages[0], 0, 1024), 0);
  for (unsigned i = 1; i < 1024; ++i) ASSERT_LE(words.table[i - 1].freq, words.table[i].freq);
}

TEST(MergeSort, FloatKeysSortAsFloats) {
  const float values[] = {-1.5f, 3.0f, -20.0f, 0.25f};
  TCExpndTable<WordFreq> table;
  table.expand(4);
  for (unsigned i = 0; i < 4; ++i) {
    table[i] = {static_cast<int>(i), 0, 0};
    memcpy(&table[i].freq, &values[i], 4);
  }
  Sorter(&table, offsetof(WordFreq, freq), kFloatKey).sort(0, 4);
  EXPECT_EQ(table[0].word, 2);
  EXPECT_EQ(table[1].word, 0);
  EXPECT_EQ(table[2].word, 3);
  EXPECT_EQ(table[3].word, 1);
}

TEST(MergeSort, SpareStorageIsGivenBack) {
  Words words(random_freqs(9000, 100, 4));
  const int before = _MallocChkNbBytes;
  Sorter(&words.table, offsetof(WordFreq, freq), kIntKey).sort(0, 9000);
  EXPECT_EQ(_MallocChkNbBytes, before);
}
