// The stream side: segments of every mode, and the life of names and streams.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "lib/facs/lid_facs.h"
#include "tests/reference/naive_facs.h"
#include "tests/support/temp_dir.h"

using orva::naive_segments;
using orva::Segment;
using orva::Switches;
using orva::TempDir;

namespace {

constexpr Switches kPlain = {};
constexpr Switches kUsual = {1, 1, 1, 0};

// Everything that is delivered until the end. A run is at most one piece long.
std::vector<Segment> delivered(CLidFacs* facs) {
  std::vector<Segment> segments;
  for (;;) {
    int len = -1;
    unsigned char* head = nullptr;
    unsigned char* const run = facs->get_nexts(&len, &head);
    if (head != nullptr) segments.push_back({std::string(head, head + 2), ""});
    if (run == nullptr) return segments;
    EXPECT_GT(len, 0);
    EXPECT_LE(len, 1024);
    if (segments.empty()) segments.emplace_back();
    segments.back().body.append(run, run + len);
  }
}

std::vector<Segment> segments_of(const std::string& input, int mode, int start, int end,
                                 const Switches& s) {
  FILE* const stream = tmpfile();
  fwrite(input.data(), 1, input.size(), stream);
  rewind(stream);
  CLidFacs facs;
  EXPECT_EQ(facs.init(stream, mode, start, end, s.dups, s.caps, s.digits, s.blks), 1);
  std::vector<Segment> result = delivered(&facs);
  fclose(stream);
  return result;
}

// What callers can tell apart. A segment without body is seen only as the last, by its head; only
// the bytes that the input had are filled in.
std::vector<Segment> visible(const std::vector<Segment>& segments, size_t known_of_last) {
  std::vector<Segment> result;
  for (size_t i = 0; i < segments.size(); ++i) {
    if (i + 1 < segments.size() && segments[i].body.empty()) continue;
    result.push_back(segments[i]);
  }
  if (!result.empty()) result.back().head.resize(std::min<size_t>(known_of_last, 2));
  return result;
}

void expect_as_naive(const std::string& input, int mode, int start, int end, const Switches& s) {
  const std::vector<Segment> expected = naive_segments(input, mode, start, end, s);
  const size_t known = expected.empty() ? 2 : expected.back().head.size();
  EXPECT_EQ(visible(segments_of(input, mode, start, end, s), known), visible(expected, known))
      << "mode " << mode << " start " << start << " end " << end << " length " << input.size();
}

std::string random_text(std::mt19937* random, size_t length) {
  const std::string alphabet("aaabAB01 \n\0\xc9", 12);
  std::string text;
  while (text.size() < length) {
    text.append(1 + (*random)() % 5, alphabet[(*random)() % alphabet.size()]);
  }
  text.resize(length);
  return text;
}

}  // namespace

TEST(GetNexts, ModeZeroDeliversEverything) {
  EXPECT_EQ(segments_of("abcdef", 0, 0, -1, kPlain), (std::vector<Segment>{{"ab", "cdef"}}));
}

TEST(GetNexts, ModeOneDeliversASegmentEverySoManyBytes) {
  EXPECT_EQ(segments_of("abcdefghij", 1, 2, 5, kPlain),
            (std::vector<Segment>{{"ab", "cd"}, {"fg", "hi"}}));
}

TEST(GetNexts, ModeOneWithoutEndDeliversOneSegment) {
  EXPECT_EQ(segments_of("abcdefghij", 1, 3, -1, kPlain), (std::vector<Segment>{{"ab", "cde"}}));
}

TEST(GetNexts, ModeOneOfNothingSetsTheHeadAndEnds) {
  EXPECT_EQ(segments_of("abcdef", 1, 0, -1, kPlain), (std::vector<Segment>{{"ab", ""}}));
}

TEST(GetNexts, ModeOneMayOverlapByOneByte) {
  EXPECT_EQ(segments_of("abcdefgh", 1, 2, 3, kPlain),
            (std::vector<Segment>{{"ab", "cd"}, {"de", "fg"}, {"gh", ""}}));
}

TEST(GetNexts, ModeTwoSkipsAndDeliversSegments) {
  EXPECT_EQ(segments_of("abcdefghijklmnop", 2, 3, 5, kPlain),
            (std::vector<Segment>{{"de", "fg"}, {"ij", "kl"}, {"no", "p"}}));
}

TEST(GetNexts, ModeTwoWithoutEndDeliversTheRest) {
  EXPECT_EQ(segments_of("abcdefghij", 2, 4, -1, kPlain), (std::vector<Segment>{{"ef", "ghij"}}));
}

TEST(GetNexts, ModeTwoWithAStartBelowTwoMovesBack) {
  EXPECT_EQ(segments_of("abcdef", 2, 0, 2, kPlain),
            (std::vector<Segment>{{"ab", "cd"}, {"cd", "ef"}}));
}

TEST(GetNexts, ModeThreeSkipsRawBytesAndDeliversOneSegment) {
  EXPECT_EQ(segments_of("12345abcdefgh", 3, 6, 3, {0, 0, 1, 0}),
            (std::vector<Segment>{{"bc", "def"}}));
}

TEST(GetNexts, ASelectionThatMakesNoSenseIsModeZero) {
  for (const int mode : {1, 2}) {
    EXPECT_EQ(segments_of("abcdef", mode, 10, 5, kPlain), (std::vector<Segment>{{"ab", "cdef"}}));
    EXPECT_EQ(segments_of("abcdef", mode, 5, 5, kPlain), (std::vector<Segment>{{"ab", "cdef"}}));
    EXPECT_EQ(segments_of("abcdef", mode, -3, 2, kPlain), (std::vector<Segment>{{"ab", "cdef"}}));
    EXPECT_EQ(segments_of("abcdef", mode, -3, -2, kPlain), (std::vector<Segment>{{"ab", "cdef"}}));
  }
}

TEST(GetNexts, AModeThatDoesNotExistIsModeZero) {
  EXPECT_EQ(segments_of("abcdef", 7, 1, 3, kPlain), (std::vector<Segment>{{"ab", "cdef"}}));
  EXPECT_EQ(segments_of("abcdef", -1, 1, 3, kPlain), (std::vector<Segment>{{"ab", "cdef"}}));
}

TEST(GetNexts, AStreamOfOneByteFillsOnlyHalfAHead) {
  FILE* const stream = tmpfile();
  fputc('x', stream);
  rewind(stream);
  CLidFacs facs;
  ASSERT_EQ(facs.init(stream, 0, 0, -1, 0, 0, 0, 0), 1);
  int len = 0;
  unsigned char* head = nullptr;
  EXPECT_EQ(facs.get_nexts(&len, &head), nullptr);
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(head[0], 'x');
  fclose(stream);
}

TEST(GetNexts, AnEmptyStreamDeliversNothing) {
  EXPECT_TRUE(segments_of("", 0, 0, -1, kPlain).empty());
}

TEST(GetNexts, PiecesThatPreprocessingEmptiesAreReadOver) {
  EXPECT_EQ(segments_of(std::string(3000, '7') + "abc", 0, 0, -1, kUsual),
            (std::vector<Segment>{{"ab", "c"}}));
}

TEST(GetNexts, RunsThatCrossPiecesAreCutInEach) {
  EXPECT_EQ(segments_of(std::string(1030, 'a'), 0, 0, -1, kUsual),
            (std::vector<Segment>{{"aa", "aaaa"}}));
}

TEST(GetNexts, ADirectoryOpensAndDeliversNothing) {
  CLidFacs facs;
  ASSERT_EQ(facs.init("/tmp", 0, 0, -1, 0, 0, 0, 0), 1);
  EXPECT_TRUE(delivered(&facs).empty());
}

TEST(GetNexts, BufferOnlyUseDeliversNothing) {
  CLidFacs facs;
  facs.init(1, 1, 1, 0);
  EXPECT_TRUE(delivered(&facs).empty());
}

TEST(GetNexts, EverySmallSelectionAgreesWithTheNaiveOne) {
  std::mt19937 random(5);
  for (int mode = 0; mode <= 3; ++mode) {
    for (int start = -1; start <= 6; ++start) {
      for (int end = -1; end <= 9; ++end) {
        for (const size_t length : {0U, 1U, 2U, 3U, 8U, 25U}) {
          expect_as_naive(random_text(&random, length), mode, start, end, kPlain);
        }
      }
    }
  }
}

TEST(GetNexts, SelectionsAcrossPiecesAgreeWithTheNaiveOne) {
  std::mt19937 random(6);
  for (int i = 0; i < 1500; ++i) {
    const int mode = static_cast<int>(random() % 4);
    const int start = static_cast<int>(random() % (i % 2 == 0 ? 4 : 1500));
    const int end = i % 5 == 0 ? -1 : start + static_cast<int>(random() % (i % 3 == 0 ? 4 : 1200));
    const Switches s = {i & 1, i & 2, i & 4, i & 8};
    expect_as_naive(random_text(&random, 900 + random() % 2500), mode, start, end, s);
  }
}

TEST(Init, ANullPathOrStreamFails) {
  CLidFacs facs;
  EXPECT_EQ(facs.init(static_cast<const char*>(nullptr), 0, 0, -1, 0, 0, 0, 0), 0);
  EXPECT_EQ(facs.init(static_cast<FILE*>(nullptr), 0, 0, -1, 0, 0, 0, 0), 0);
}

TEST(Init, AMissingFileFailsAndLeavesNothing) {
  CLidFacs facs;
  EXPECT_EQ(facs.init("/nonexistent", 0, 0, -1, 0, 0, 0, 0), 0);
  EXPECT_EQ(facs.reinit(), 0);
  EXPECT_TRUE(delivered(&facs).empty());
}

TEST(Init, ACallersStreamStaysOpen) {
  FILE* const stream = tmpfile();
  {
    CLidFacs facs;
    facs.init(stream, 0, 0, -1, 0, 0, 0, 0);
  }
  EXPECT_EQ(fputs("still open", stream) >= 0, true);
  EXPECT_EQ(fclose(stream), 0);
}

TEST(Init, AStreamOpenedByNameIsClosed) {
  const TempDir dir;
  const std::string path = dir.file("text", "abc");
  const int before = dup(0);
  close(before);
  {
    CLidFacs facs;
    ASSERT_EQ(facs.init(path.c_str(), 0, 0, -1, 0, 0, 0, 0), 1);
    ASSERT_EQ(facs.init(path.c_str(), 0, 0, -1, 0, 0, 0, 0), 1);
  }
  const int after = dup(0);
  close(after);
  EXPECT_EQ(after, before);
}

TEST(Reinit, ReadsTheFileAgain) {
  const TempDir dir;
  CLidFacs facs;
  ASSERT_EQ(facs.init(dir.file("text", "abcdefgh").c_str(), 2, 1, 4, 0, 0, 0, 0), 1);
  const std::vector<Segment> first = delivered(&facs);
  ASSERT_EQ(facs.reinit(), 1);
  EXPECT_EQ(delivered(&facs), first);
}

TEST(Reinit, AfterModeThreeItDoesNotSkipAgain) {
  const TempDir dir;
  CLidFacs facs;
  ASSERT_EQ(facs.init(dir.file("text", "abcdefgh").c_str(), 3, 4, 1, 0, 0, 0, 0), 1);
  EXPECT_EQ(delivered(&facs), (std::vector<Segment>{{"ef", "g"}}));
  ASSERT_EQ(facs.reinit(), 1);
  EXPECT_EQ(delivered(&facs), (std::vector<Segment>{{"ab", "c"}}));
}

TEST(Reinit, WithoutANameItFails) {
  FILE* const stream = tmpfile();
  CLidFacs facs;
  ASSERT_EQ(facs.init(stream, 0, 0, -1, 0, 0, 0, 0), 1);
  EXPECT_EQ(facs.reinit(), 0);
  fclose(stream);
}

TEST(Reinit, AFileThatIsGoneFailsAndItsNameIsDropped) {
  const TempDir dir;
  const std::string path = dir.file("text", "abc");
  CLidFacs facs;
  ASSERT_EQ(facs.init(path.c_str(), 0, 0, -1, 0, 0, 0, 0), 1);
  remove(path.c_str());
  EXPECT_EQ(facs.reinit(), 0);
  dir.file("text", "abc");
  EXPECT_EQ(facs.reinit(), 0);
}
