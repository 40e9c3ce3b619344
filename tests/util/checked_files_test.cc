#include "lib/util/checked_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "tests/support/streams.h"
#include "tests/support/temp_dir.h"

using orva::Ended;
using orva::run_to_end;
using orva::TempDir;

namespace {

constexpr char kNowhere[] = "/nonexistent/file";

// The first line of a file with these bytes, read with room for `size`.
std::string line_of(const TempDir& dir, std::string_view bytes, int size) {
  FILE* const stream = fopen_chk(dir.file("line", bytes).c_str(), "rb", "test");
  std::array<char, 64> buffer;
  buffer.fill('#');
  char* const line = fgets_chk(buffer.data(), size, stream);
  std::string result = line == nullptr ? "(end)" : std::string(line);
  EXPECT_TRUE(line == nullptr || line == buffer.data());
  fclose_chk(stream);
  return result;
}

}  // namespace

TEST(FopenChk, AnOpenedStreamIsCountedUntilItIsClosed) {
  const TempDir dir;
  const std::string path = dir.file("a", "text");
  const int before = FilesOpened;
  FILE* const first = fopen_chk(path.c_str(), "rb", "test");
  FILE* const second = tfopen_chk(path.c_str(), "rb", "test");
  EXPECT_EQ(FilesOpened, before + 2);
  EXPECT_EQ(getc(first), 't');
  EXPECT_EQ(getc(second), 't');
  EXPECT_EQ(fclose_chk(first), 0);
  EXPECT_EQ(fclose_chk(second), 0);
  EXPECT_EQ(FilesOpened, before);
}

TEST(FopenChk, AFailureEndsTheProcessWithItsMessageOnStandardOutput) {
  const Ended ended = run_to_end([] { fopen_chk(kNowhere, "rb", "modele"); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "** FOpenError: incapable d'ouvrir (modele) '/nonexistent/file'\n");
  EXPECT_EQ(ended.err, "");
}

TEST(TfopenChk, FailsExactlyAsFopenChk) {
  const Ended ended = run_to_end([] { tfopen_chk(kNowhere, "rb", "modele"); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "** FOpenError: incapable d'ouvrir (modele) '/nonexistent/file'\n");
  EXPECT_EQ(ended.err, "");
}

TEST(OpenChk, GivesADescriptorAndCountsNothing) {
  const TempDir dir;
  const std::string path = dir.file("a", "text");
  const int before = FilesOpened;
  const int fd = open_chk(path.c_str(), O_RDONLY, "test");
  char first = 0;
  EXPECT_EQ(read(fd, &first, 1), 1);
  EXPECT_EQ(first, 't');
  close(fd);
  EXPECT_EQ(FilesOpened, before);
}

TEST(OpenChk, CreatesWithAccessForTheOwnerAndReadingForAll) {
  const TempDir dir;
  const std::string path = dir / "new";
  const mode_t mask = umask(0);
  close(open_chk(path.c_str(), O_WRONLY | O_CREAT, "test"));
  umask(mask);
  struct stat info = {};
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0644U);
}

TEST(OpenChk, AFailureEndsTheProcessWithMessageAndErrno) {
  const Ended ended = run_to_end([] { open_chk(kNowhere, O_RDONLY, "sortie"); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out,
            "** OpenError: incapable d'ouvrir (sortie) '/nonexistent/file'\n"
            "**   ErrNo = " +
                std::to_string(ENOENT) + "\n");
  EXPECT_EQ(ended.err, "");
}

TEST(FcloseChk, AFailureEndsTheProcessWithItsMessageOnStandardOutput) {
  const TempDir dir;
  const std::string path = dir.file("a", "text");
  const Ended ended = run_to_end([&] {
    FILE* const stream = fopen_chk(path.c_str(), "rb", "test");
    close(fileno(stream));
    fclose_chk(stream);
  });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "Erreur FClose!\n");
  EXPECT_EQ(ended.err, "");
}

TEST(FgetsChk, ALineOfSevenCharactersFitsInTen) {
  EXPECT_EQ(line_of(TempDir(), "1234567\nnext\n", 10), "1234567");
}

TEST(FgetsChk, ALineOfEightCharactersInTenEndsTheProcess) {
  const TempDir dir;
  const Ended ended = run_to_end([&] { line_of(dir, "12345678\n", 10); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "** FGetS: essai de lire une ligne trop longue (Max = 9)\n");
  EXPECT_EQ(ended.out, "");
}

TEST(FgetsChk, TheLengthOfATooLongLineIsWhatWasRead) {
  const TempDir dir;
  const Ended ended = run_to_end([&] { line_of(dir, std::string(50, 'x'), 10); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "** FGetS: essai de lire une ligne trop longue (Max = 9)\n");
}

TEST(FgetsChk, TheEndOfTheFileGivesNull) { EXPECT_EQ(line_of(TempDir(), "", 10), "(end)"); }

TEST(FgetsChk, AnEmptyLineIsEmpty) { EXPECT_EQ(line_of(TempDir(), "\nabc\n", 10), ""); }

TEST(FgetsChk, ALastLineWithoutNewlineLosesItsLastCharacter) {
  EXPECT_EQ(line_of(TempDir(), "abcd", 10), "abc");
}

TEST(FgetsChk, ALineThatBeginsWithNulIsEmpty) {
  EXPECT_EQ(line_of(TempDir(), std::string_view("\0bc\n", 4), 10), "");
}

TEST(FgetsChk, ACarriageReturnStays) { EXPECT_EQ(line_of(TempDir(), "ab\r\n", 10), "ab\r"); }

TEST(Fexists, AReadableFileExistsAndNothingStaysOpen) {
  const TempDir dir;
  const std::string path = dir.file("a", "");
  const int before = FilesOpened;
  const int next = dup(0);
  close(next);
  EXPECT_EQ(fexists(path.c_str()), 1);
  const int after = dup(0);
  close(after);
  EXPECT_EQ(after, next);
  EXPECT_EQ(FilesOpened, before);
}

TEST(Fexists, AMissingFileDoesNot) { EXPECT_EQ(fexists(kNowhere), 0); }

TEST(FnameTail, IsThePartAfterTheLastSlash) {
  char path[] = "/usr/share/Model.grp";
  EXPECT_EQ(fname_tail(path), path + 11);
}

TEST(FnameTail, IsTheWholePathWithoutASlash) {
  char path[] = "Model.grp";
  EXPECT_EQ(fname_tail(path), path);
}

TEST(FnameTail, IsEmptyAfterATrailingSlash) {
  char path[] = "dir/";
  EXPECT_STREQ(fname_tail(path), "");
}
