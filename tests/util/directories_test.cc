// read_dir and pi_max_index, and the directories that they leave open.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "lib/util/checked_files.h"
#include "tests/support/streams.h"
#include "tests/support/temp_dir.h"

using orva::TempDir;

namespace {

// Descriptors that this process has open.
int nb_descriptors() {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    static_cast<void>(entry);
    ++count;
  }
  return count;
}

using Table = std::array<char*, 8>;

std::vector<std::string> take_names(Table* table, int count) {
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) {
    names.emplace_back((*table)[static_cast<size_t>(i)]);
    free((*table)[static_cast<size_t>(i)]);
  }
  std::sort(names.begin(), names.end());
  return names;
}

// The next free index in a directory with these entries.
int next_index(const std::vector<std::string>& entries, const char* base) {
  const TempDir dir;
  for (const std::string& name : entries) dir.file(name, "");
  return pi_max_index(dir.path().c_str(), base);
}

}  // namespace

TEST(ReadDir, CopiesEveryNameTheDotsIncluded) {
  const TempDir dir;
  dir.file("un", "");
  dir.file("deux", "");
  Table table = {};
  const int before = nb_descriptors();
  const int count = read_dir(dir.path().c_str(), table.data(), 8);
  EXPECT_EQ(nb_descriptors(), before);
  ASSERT_EQ(count, 4);
  EXPECT_EQ(table[4], nullptr);
  EXPECT_EQ(take_names(&table, count), (std::vector<std::string>{".", "..", "deux", "un"}));
}

TEST(ReadDir, ACapacityThatIsJustEnoughIsEnough) {
  const TempDir dir;
  dir.file("un", "");
  Table table = {};
  ASSERT_EQ(read_dir(dir.path().c_str(), table.data(), 3), 3);
  take_names(&table, 3);
}

TEST(ReadDir, TooManyEntriesFreeTheCopiesAndAnswerMinusTwo) {
  const TempDir dir;
  dir.file("un", "");
  Table table = {};
  EXPECT_EQ(read_dir(dir.path().c_str(), table.data(), 2), -2);
  EXPECT_EQ(table[0], nullptr);
  EXPECT_EQ(table[1], nullptr);
}

TEST(ReadDir, TooManyEntriesLeaveTheDirectoryOpen) {
  const TempDir dir;
  Table table = {};
  const int before = nb_descriptors();
  EXPECT_EQ(read_dir(dir.path().c_str(), table.data(), 1), -2);
  EXPECT_EQ(nb_descriptors(), before + 1);
}

TEST(ReadDir, NoCapacityAtAllIsTooSmallForAnyDirectory) {
  const TempDir dir;
  EXPECT_EQ(read_dir(dir.path().c_str(), nullptr, 0), -2);
}

TEST(ReadDir, AMissingDirectoryAnswersMinusOne) {
  Table table = {};
  EXPECT_EQ(read_dir("/nonexistent", table.data(), 8), -1);
}

TEST(PiMaxIndex, IsOneMoreThanTheLargest) {
  EXPECT_EQ(next_index({"jeu.2", "jeu.10", "jeu.9"}, "jeu"), 11);
}

TEST(PiMaxIndex, IsZeroWhereNothingMatches) {
  EXPECT_EQ(next_index({}, "jeu"), 0);
  EXPECT_EQ(next_index({"jeu", "jeu.", "jeu.x", "autre.7", "jeux.7"}, "jeu"), 0);
}

TEST(PiMaxIndex, AnythingMayFollowTheInteger) { EXPECT_EQ(next_index({"jeu.12.txt"}, "jeu"), 13); }

TEST(PiMaxIndex, NegativeIntegersDoNotCount) { EXPECT_EQ(next_index({"jeu.-3"}, "jeu"), 0); }

TEST(PiMaxIndex, ANameThatEndsInsideTheBaseIsIgnored) {
  EXPECT_EQ(next_index({"je", "jeu.4"}, "jeu"), 5);
}

TEST(PiMaxIndex, APercentSignInTheBaseIsTakenLiterally) {
  EXPECT_EQ(next_index({"50%d.6", "501.90"}, "50%d"), 7);
}

TEST(PiMaxIndex, AnIntegerBeyondTheRangeGivesTheLargestIndexOnEveryWidth) {
  EXPECT_EQ(next_index({"jeu.2147483647"}, "jeu"), INT_MAX);
  EXPECT_EQ(next_index({"jeu.99999999999"}, "jeu"), INT_MAX);
  EXPECT_EQ(next_index({"jeu.-99999999999"}, "jeu"), 0);
}

TEST(PiMaxIndex, TheDirectoryIsNotClosed) {
  const int before = nb_descriptors();
  next_index({"jeu.1"}, "jeu");
  EXPECT_EQ(nb_descriptors(), before + 1);
}

TEST(PiMaxIndex, AMissingDirectoryEndsTheProcessWithItsMessageOnStandardOutput) {
  const orva::Ended ended = orva::run_to_end([] { pi_max_index("/nonexistent", "jeu"); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "** PiMaxIndex: Incapable d'ouvrir (dir) '/nonexistent'\n");
  EXPECT_EQ(ended.err, "");
}
