// Columns: indexes of items dealt into runs, and headers that read downwards.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/util/text.h"
#include "tests/support/streams.h"

using orva::stdout_of;

namespace {

std::vector<char*> pointers(std::vector<std::string>* strings) {
  std::vector<char*> result;
  for (std::string& s : *strings) result.push_back(s.data());
  return result;
}

std::string printed(std::vector<std::string> strings, const char* prefix, const char* separator,
                    int* result = nullptr) {
  std::vector<char*> table = pointers(&strings);
  return stdout_of([&] {
    const int last = vprint(stdout, table.data(), static_cast<int>(table.size()),
                            const_cast<char*>(prefix), const_cast<char*>(separator));
    if (result != nullptr) *result = last;
  });
}

// The items of run `row`, column by column until the first that it does not have.
std::vector<int> run_of(int row, int nb_items, int nb_rows) {
  std::vector<int> items;
  for (int k = 0;; ++k) {
    const int index = vert_order_idx(row, k, nb_items, nb_rows);
    if (index < 0) return items;
    items.push_back(index);
  }
}

}  // namespace

TEST(VertOrderIdx, DealsTheFirstRunsOneItemMore) {
  EXPECT_EQ(run_of(0, 11, 4), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(run_of(1, 11, 4), (std::vector<int>{3, 4, 5}));
  EXPECT_EQ(run_of(2, 11, 4), (std::vector<int>{6, 7, 8}));
  EXPECT_EQ(run_of(3, 11, 4), (std::vector<int>{9, 10}));
}

TEST(VertOrderIdx, EveryItemBelongsToOneRun) {
  for (int nb_items = 1; nb_items <= 20; ++nb_items) {
    for (int nb_rows = 1; nb_rows <= 20; ++nb_rows) {
      std::vector<int> all;
      for (int row = 0; row < nb_rows; ++row) {
        for (const int index : run_of(row, nb_items, nb_rows)) all.push_back(index);
      }
      ASSERT_EQ(all.size(), static_cast<size_t>(nb_items)) << nb_items << " in " << nb_rows;
      for (int i = 0; i < nb_items; ++i) ASSERT_EQ(all[static_cast<size_t>(i)], i);
    }
  }
}

TEST(VertOrderIdx, ARowOrColumnBeyondTheLastHasNoItem) {
  EXPECT_EQ(vert_order_idx(4, 0, 11, 4), -1);
  EXPECT_EQ(vert_order_idx(0, 3, 11, 4), -1);
  EXPECT_EQ(vert_order_idx(3, 2, 11, 4), -1);
  EXPECT_EQ(vert_order_idx(0, 3, 12, 4), -1);
}

TEST(VertOrderIdx, WithoutItemsTheFirstColumnOfSeveralRowsAnswersZero) {
  EXPECT_EQ(vert_order_idx(0, 0, 0, 3), 0);
  EXPECT_EQ(vert_order_idx(2, 0, 0, 3), 0);
  EXPECT_EQ(vert_order_idx(0, 1, 0, 3), -1);
  EXPECT_EQ(vert_order_idx(0, 0, 0, 1), -1);
}

TEST(VertOrderIdx, NoRowsAndNegativeNumbersHaveNoItem) {
  EXPECT_EQ(vert_order_idx(0, 0, 5, 0), -1);
  EXPECT_EQ(vert_order_idx(0, 0, 5, -2), -1);
  EXPECT_EQ(vert_order_idx(-1, 0, 5, 2), -1);
  EXPECT_EQ(vert_order_idx(0, -1, 5, 2), -1);
  EXPECT_EQ(vert_order_idx(0, 0, -5, 2), -1);
}

TEST(Vprint, StringsReadDownwardsAndTheLastHasNoSeparator) {
  EXPECT_EQ(printed({"fr", "eng", "d"}, nullptr, nullptr),
            " f ed\n"
            " r n \n"
            "   g \n");
}

TEST(Vprint, PrefixAndSeparatorAreThoseGiven) {
  EXPECT_EQ(printed({"fr", "en"}, "> ", "|"),
            "> |fe\n"
            "> |rn\n");
}

TEST(Vprint, AnEmptySeparatorIsNotASpace) { EXPECT_EQ(printed({"f", "e"}, "", ""), "fe\n"); }

TEST(Vprint, TheResultIsThatOfTheLastPrint) {
  int result = -1;
  printed({"fr", "en"}, "> ", "|", &result);
  EXPECT_EQ(result, 2);
}

TEST(Vprint, NothingIsPrintedWithoutRows) {
  EXPECT_EQ(printed({}, "> ", "|"), "");
  EXPECT_EQ(printed({"", ""}, "> ", "|"), "");
}

TEST(VprintInit, AnswersTheLongestLength) {
  std::vector<std::string> strings = {"fr", "eng", "d"};
  EXPECT_EQ(vprint_init(pointers(&strings).data(), 3), 3);
  EXPECT_EQ(vprint_init(nullptr, 0), 0);
}

TEST(VprintInit, CopiesItsStrings) {
  std::vector<std::string> strings = {"fr", "en"};
  vprint_init(pointers(&strings).data(), 2);
  strings[0] = "xx";
  EXPECT_EQ(stdout_of([] { vprint_fprint_row(stdout, 1, nullptr, nullptr); }), " rn\n");
}

TEST(VprintInit, TakesAHundredStringsAtMost) {
  std::vector<std::string> strings(120, "a");
  strings[110] = "long";
  EXPECT_EQ(vprint_init(pointers(&strings).data(), 120), 1);
  EXPECT_EQ(stdout_of([] {
              char separator[] = "";
              vprint_fprint_row(stdout, 0, nullptr, separator);
            }),
            std::string(100, 'a') + "\n");
}

TEST(VprintFprintRow, WithoutStringsOnlyThePrefixIsPrinted) {
  vprint_init(nullptr, 0);
  char prefix[] = "> ";
  int result = -1;
  EXPECT_EQ(stdout_of([&] { result = vprint_fprint_row(stdout, 0, prefix, nullptr); }), "> ");
  EXPECT_EQ(result, 2);
}

TEST(VprintFprintRow, ARowBeyondEveryStringIsBlank) {
  std::vector<std::string> strings = {"fr", "en"};
  vprint_init(pointers(&strings).data(), 2);
  EXPECT_EQ(stdout_of([] { vprint_fprint_row(stdout, 9, nullptr, nullptr); }), "   \n");
}
