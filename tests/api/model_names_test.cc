#include "lib/api/model_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/hex_dump.h"
#include "tests/support/temp_dir.h"

using orva::ModelNamesResult;

namespace {

std::string word(int32_t value) {
  std::string bytes(4, '\0');
  memcpy(bytes.data(), &value, 4);
  return bytes;
}

std::string record(const std::string& name) {
  return word(static_cast<int32_t>(name.size()) + 2) + std::string(2, '\0') + name;
}

// A table read from these bytes; `count` is what it was before.
struct Table {
  explicit Table(const std::string& bytes, int count_before = 0) : count(count_before) {
    size_t at = 0;
    orva::ModelNamesReader reader;
    reader.read = [&](void* buffer, int size) {
      const size_t n = std::min(bytes.size() - at, static_cast<size_t>(size));
      memcpy(buffer, bytes.data() + at, n);
      at += n;
      return static_cast<int>(n);
    };
    reader.allocate = [&](int n) {
      names.assign(static_cast<size_t>(n), "");
      return n < 1000;
    };
    reader.store = [&](int i, const char* name) { names[static_cast<size_t>(i)] = name; };
    result = read_model_names(reader, &count);
  }

  int count;
  std::vector<std::string> names;
  ModelNamesResult result;
};

}  // namespace

TEST(ModelNames, RecordsAreReadInOrder) {
  const Table table(word(2) + record("UTF-8") + record("KOI8-R"));
  EXPECT_EQ(table.result, orva::kNamesOk);
  EXPECT_EQ(table.count, 2);
  EXPECT_EQ(table.names, (std::vector<std::string>{"UTF-8", "KOI8-R"}));
}

TEST(ModelNames, TheTwoSkippedBytesMayBeAnything) {
  EXPECT_EQ(Table(word(1) + word(3) + "xyA").names, (std::vector<std::string>{"A"}));
}

TEST(ModelNames, ARecordOfTwoBytesOrLessIsAnEmptyName) {
  const Table table(word(3) + word(2) + "xy" + word(1) + "x" + word(0));
  EXPECT_EQ(table.result, orva::kNamesOk);
  EXPECT_EQ(table.names, (std::vector<std::string>{"", "", ""}));
}

TEST(ModelNames, NoRecordsAreATable) {
  const Table table(word(0), 5);
  EXPECT_EQ(table.result, orva::kNamesOk);
  EXPECT_EQ(table.count, 0);
}

TEST(ModelNames, AFileWithoutACountKeepsTheFormerOne) {
  const Table table(std::string("\3\0\0", 3), 2);
  EXPECT_EQ(table.result, orva::kNamesShort);
  EXPECT_EQ(table.count, 2);
  EXPECT_EQ(table.names.size(), 2U);
}

TEST(ModelNames, NamesBeforeAShortRecordStay) {
  const Table table(word(3) + record("UTF-8") + word(7) + "xyKOI");
  EXPECT_EQ(table.result, orva::kNamesShort);
  EXPECT_EQ(table.count, 3);
  EXPECT_EQ(table.names, (std::vector<std::string>{"UTF-8", "", ""}));
}

TEST(ModelNames, ARecordLongerThanTheLongestIsRefused) {
  EXPECT_EQ(Table(word(1) + record(std::string(253, 'x'))).result, orva::kNamesOk);
  EXPECT_EQ(Table(word(1) + record(std::string(254, 'x'))).result, orva::kNamesShort);
  EXPECT_EQ(Table(word(1) + word(-1) + "xyz").result, orva::kNamesShort);
}

TEST(ModelNames, ACountThatCannotBeRealMakesNoTable) {
  for (const int32_t count : {-1, 65537, INT32_MAX, INT32_MIN}) {
    const Table table(word(count) + record("A"), 5);
    EXPECT_EQ(table.result, orva::kNamesNoTable) << count;
    EXPECT_EQ(table.count, 0);
  }
}

TEST(ModelNames, ATableThatCannotBeAllocatedIsNone) {
  const Table table(word(1000));
  EXPECT_EQ(table.result, orva::kNamesNoTable);
  EXPECT_EQ(table.count, 0);
}

TEST(ModelNames, AFileIsLoadedOrItsFaultIsNamed) {
  const orva::TempDir dir;
  std::vector<std::string> names;
  std::string error;
  EXPECT_TRUE(orva::load_model_names(dir.file("good", word(1) + record("A")), &names, &error));
  EXPECT_EQ(names, (std::vector<std::string>{"A"}));
  EXPECT_FALSE(orva::load_model_names(dir / "missing", &names, &error));
  EXPECT_FALSE(error.empty());
  error.clear();
  EXPECT_FALSE(orva::load_model_names(dir.file("short", word(1)), &names, &error));
  EXPECT_FALSE(error.empty());
}

TEST(ModelNamesPage, ItsDumpIsATableOfTwoRecords) {
  const std::string page = orva::bytes_of(std::string(ORVA_SOURCE_DIR) + "/doc/STC_FORMAT.md");
  const std::string dump = orva::hex_dump(word(2) + record("UTF-8") + record("KOI8-R"));
  EXPECT_NE(page.find("```text\n" + dump + "```\n"), std::string::npos) << dump;
}
