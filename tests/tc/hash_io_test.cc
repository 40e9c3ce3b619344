#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>

#include "lib/tc/hashtabl.h"
#include "tests/tc/tc_fixture.h"

namespace {
using orva_test::add;
using orva_test::File;
using orva_test::key;
using orva_test::stream_of;
using orva_test::words_of;

std::string written(const CHashTable& table) {
  const File file(tmpfile());
  EXPECT_EQ(table.f_write(file.get()), 0);
  return orva_test::contents(file.get());
}

int read_from(CHashTable& table, const std::string& bytes) {
  const File file = stream_of(bytes);
  return table.f_read(file.get());
}

int word_at(const std::string& bytes, size_t at) {
  int word = 0;
  memcpy(&word, bytes.data() + at, sizeof word);
  return word;
}

std::string two_keys() {
  CHashTable table(8, 0.8f);
  add(table, "tst");
  add(table, "");
  return written(table);
}
}  // namespace

TEST(HashFile, TwoKeysAreThisFile) {
  EXPECT_EQ(two_keys(), words_of({1, 2, 2, 0x3f4ccccd, 5}) + std::string("tst\0\0", 5));
}

TEST(HashFile, EmptyTableIsItsHeaderAlone) {
  const CHashTable table(8, 0.8f);
  EXPECT_EQ(written(table), words_of({1, 0, 0, 0x3f4ccccd}));
}

TEST(HashFile, LongKeyIsWrittenInAnEnlargedBlockAndReadBack) {
  CHashTable table(8, 0.8f);
  add(table, "before");
  const std::string long_key(12000, 'x');
  add(table, long_key);
  add(table, "after");
  const std::string bytes = written(table);
  // The long key opens a block of its own size and nine bytes; the short one behind it fits.
  EXPECT_EQ(word_at(bytes, 16), 7);
  EXPECT_EQ(word_at(bytes, 16 + 4 + 7), 12001 + 6);

  CHashTable back(8, 0.8f);
  ASSERT_EQ(read_from(back, bytes), 0);
  EXPECT_EQ(back.nb_elems, 3);
  EXPECT_EQ(back[key(long_key)], 1);
  EXPECT_EQ(back[key("after")], 2);
}

TEST(HashFile, KeyThatFillsTheEnlargedBlockKeepsItsNineBytesFree) {
  CHashTable table(8, 0.8f);
  add(table, std::string(12000, 'x'));
  add(table, "123456789");  // 9 and its terminator: 12001 + 9 is not below 12010
  const std::string bytes = written(table);
  EXPECT_EQ(word_at(bytes, 16), 12001);
}

TEST(HashFile, EnlargedBufferStaysForTheBlocksBehind) {
  CHashTable table(8, 0.8f);
  add(table, std::string(12000, 'x'));
  for (int i = 0; i < 1500; ++i) add(table, "key" + std::to_string(1000000 + i));
  const std::string bytes = written(table);
  const int first = word_at(bytes, 16);
  EXPECT_GT(word_at(bytes, 16 + 4 + static_cast<size_t>(first)), 10000);
  CHashTable back(8, 0.8f);
  ASSERT_EQ(read_from(back, bytes), 0);
  EXPECT_EQ(written(back), bytes);
}

TEST(HashFile, ReadKeepsTheTablesOwnLoadFactor) {
  CHashTable half(8, 0.5f);
  for (int i = 0; i < 100; ++i) add(half, std::to_string(i));
  CHashTable back(8, 0.8f);
  ASSERT_EQ(read_from(back, written(half)), 0);
  EXPECT_EQ(back.load_fact, 0.8f);
  EXPECT_EQ(back.hsz, 128);
  EXPECT_EQ(back[key("99")], 99);
}

TEST(HashFile, OtherFirstWordIsRefused) {
  std::string bytes = two_keys();
  bytes[0] = 2;
  CHashTable table(8, 0.8f);
  EXPECT_EQ(read_from(table, bytes), -1);
}

TEST(HashFile, EveryTruncationIsRefused) {
  const std::string bytes = two_keys();
  for (size_t n = 0; n < bytes.size(); ++n) {
    CHashTable table(8, 0.8f);
    EXPECT_EQ(read_from(table, bytes.substr(0, n)), -1) << n << " bytes";
  }
}

TEST(HashFile, BadWordsAreRefused) {
  struct Case {
    const char* what;
    std::string bytes;
  };
  const std::string load = words_of({0x3f4ccccd});
  const std::string keys("tst\0\0", 5);
  const Case cases[] = {
      {"negative count", words_of({1, -5, 2, 0, 5}) + keys},
      {"count beyond the file", words_of({1, 1000, 2, 0, 5}) + keys},
      {"huge count", words_of({1, 0x7fffffff, 2, 0, 5}) + keys},
      {"second count -1", words_of({1, 2, -1, 0, 5}) + keys},
      {"load factor -1", words_of({1, 2, 2, -1, 5}) + keys},
      {"negative length", words_of({1, 2, 2, 0, -7}) + keys},
      {"empty block", words_of({1, 2, 2, 0, 0}) + keys},
      {"length beyond the file", words_of({1, 2, 2, 0, 0x7fffffff}) + keys},
      {"block without its last NUL", words_of({1, 2, 2, 0, 5}) + "tst" + '\0' + 'x'},
  };
  for (const Case& c : cases) {
    CHashTable table(8, 0.8f);
    EXPECT_EQ(read_from(table, c.bytes), -1) << c.what;
  }
}

TEST(HashFile, EveryByteChangedOnceReturns) {
  const std::string bytes = two_keys();
  for (size_t at = 0; at < bytes.size(); ++at) {
    for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
      std::string changed = bytes;
      changed[at] = static_cast<char>(value);
      CHashTable table(8, 0.8f);
      const int result = read_from(table, changed);
      EXPECT_TRUE(result == 0 || result == -1);
    }
  }
}

TEST(HashFile, AbsurdCountInAPipeIsRefusedWhereGrowthIsReturned) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const std::string bytes = words_of({1, 0x7fffffff, 2, 0});
  ASSERT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  close(ends[1]);
  const File in(fdopen(ends[0], "rb"));
  CHashTable table(8, 0.8f);
  _MallocChkExitOnErr = 0;
  EXPECT_EQ(table.f_read(in.get()), -1);
  _MallocChkExitOnErr = 1;
}

TEST(HashFile, FullDeviceFailsTheWrite) {
  CHashTable table(8, 0.8f);
  add(table, "key");
  const File full(fopen("/dev/full", "wb"));
  ASSERT_TRUE(full);
  setvbuf(full.get(), nullptr, _IONBF, 0);
  EXPECT_EQ(table.f_write(full.get()), -1);
}
