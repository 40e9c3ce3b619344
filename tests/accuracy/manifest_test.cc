#include "lib/accuracy/manifest.h"

#include <gtest/gtest.h>

namespace orva {
namespace {

std::vector<LabelledDocument> documents_of(std::string_view text, const std::string& piece = "") {
  std::vector<LabelledDocument> documents;
  std::string error;
  EXPECT_TRUE(read_manifest(text, piece, &documents, &error)) << error;
  return documents;
}

std::string error_of(std::string_view text, const std::string& piece = "") {
  std::vector<LabelledDocument> documents;
  std::string error;
  EXPECT_FALSE(read_manifest(text, piece, &documents, &error));
  return error;
}

TEST(Manifest, ColumnsAreFoundByTheirNames) {
  const auto documents = documents_of("size\tlanguage\tcharset\tpath\n12\tru\tKOI8-R\ta b.txt\n");
  ASSERT_EQ(documents.size(), 1U);
  EXPECT_EQ(documents[0].path, "a b.txt");
  EXPECT_EQ(documents[0].charsets, std::vector<std::string>{"KOI8-R"});
  EXPECT_EQ(documents[0].language, "ru");
}

TEST(Manifest, LanguageMayBeUnknownAndItsFieldLeftOut) {
  for (const char* text : {"path\tcharset\na\tUTF-8\n", "path\tcharset\tlanguage\na\tUTF-8\n",
                           "path\tcharset\tlanguage\na\tUTF-8\t\n"}) {
    const auto documents = documents_of(text);
    ASSERT_EQ(documents.size(), 1U) << text;
    EXPECT_EQ(documents[0].language, "") << text;
  }
}

TEST(Manifest, EmptyLinesRemarksAndWindowsLineEndsDoNotCount) {
  const auto documents = documents_of("# mine\r\npath\tcharset\r\n\r\na\tUTF-8\r\n# b\tUTF-8");
  ASSERT_EQ(documents.size(), 1U);
  EXPECT_EQ(documents[0].charsets[0], "UTF-8");
}

TEST(Manifest, OtherCharsetsAreAsRightAsTheLabel) {
  const auto documents = documents_of("path\tcharset\talt\na\tcp1252\tlatin1,ISO-8859-15\n");
  const std::vector<std::string> expected = {"cp1252", "latin1", "ISO-8859-15"};
  EXPECT_EQ(documents.at(0).charsets, expected);
}

TEST(Manifest, AnIdNamesAFileOfTheFolderFiles) {
  EXPECT_EQ(documents_of("id\tcharset\n00017\tUTF-8\n").at(0).path, "files/00017");
  EXPECT_EQ(documents_of("id\tpath\tcharset\n00017\tx/y\tUTF-8\n").at(0).path, "x/y");
}

TEST(Manifest, PiecesComeFromTheirColumnAndEmptyOnesLeaveTheDocumentOut) {
  const auto documents =
      documents_of("path\tcharset\tw\na\tUTF-8\t128:64\nb\tUTF-8\t\nc\tUTF-8\t7:0\n", "w");
  ASSERT_EQ(documents.size(), 2U);
  EXPECT_EQ(documents[0].offset, 128U);
  EXPECT_EQ(documents[0].length, 64U);
  EXPECT_EQ(documents[1].path, "c");
  EXPECT_EQ(documents[1].length, 0U);
}

TEST(Manifest, APieceIsWhatThereIsOfIt) {
  LabelledDocument document;
  const auto piece = [&document](uint64_t offset, uint64_t length) {
    document.offset = offset;
    document.length = length;
    std::string bytes = "abcdef";
    return cut_piece(document, &bytes) ? bytes : "none";
  };
  EXPECT_EQ(piece(0, 0), "abcdef");
  EXPECT_EQ(piece(2, 3), "cde");
  EXPECT_EQ(piece(4, 9), "ef");
  EXPECT_EQ(piece(6, 1), "");
  EXPECT_EQ(piece(7, 1), "none");
  EXPECT_EQ(piece(UINT64_MAX, UINT64_MAX), "none");
}

TEST(Manifest, ErrorsNameTheLine) {
  EXPECT_EQ(error_of("\n\n"), "is empty");
  EXPECT_EQ(error_of("file\tcharset\n"), "line 1: no column \"path\"");
  EXPECT_EQ(error_of("path\tencoding\n"), "line 1: no column \"charset\"");
  EXPECT_EQ(error_of("path\tcharset\n", "w64"), "line 1: no column \"w64\"");
  EXPECT_EQ(error_of("path\tcharset\n\na\tklingon-8\n"), "line 3: unknown charset \"klingon-8\"");
  EXPECT_EQ(error_of("path\tcharset\na\n"), "line 2: unknown charset \"\"");
  EXPECT_EQ(error_of("path\tcharset\n\tUTF-8\n"), "line 2: no document named");
  for (const char* piece : {"1", "1:", ":1", "a:1", "1:2:3", "-1:4", "99999999999999999999:1"}) {
    const std::string text = std::string("path\tcharset\tw\na\tUTF-8\t") + piece + "\n";
    EXPECT_EQ(error_of(text, "w"),
              std::string("line 2: \"") + piece + "\" is no piece OFFSET:LENGTH");
  }
}

}  // namespace
}  // namespace orva
