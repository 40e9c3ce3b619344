#include "lib/api/markup.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What is kept of `text` when it comes in these two calls.
std::string stripped(const std::string& text, size_t cut = std::string::npos) {
  int in_markup = 0;
  std::string result;
  for (const std::string& piece :
       {text.substr(0, cut), cut < text.size() ? text.substr(cut) : ""}) {
    std::string out(piece.size(), '#');
    out.resize(orva::strip_markup(piece.data(), piece.size(), out.data(), &in_markup));
    result += out;
  }
  return result;
}

}  // namespace

TEST(Markup, TagsAreDropped) { EXPECT_EQ(stripped("<p>word</p>"), "word"); }

TEST(Markup, OfARunOfBlanksTheFirstIsKept) {
  EXPECT_EQ(stripped("a  \t b"), "a b");
  EXPECT_EQ(stripped("a\r\n b"), "a\rb");
}

TEST(Markup, BlanksAroundATagAreOneRun) { EXPECT_EQ(stripped("a <b> c"), "a c"); }

TEST(Markup, AGreaterThanSignOutsideATagIsKept) { EXPECT_EQ(stripped("one > two"), "one > two"); }

TEST(Markup, ALessThanSignInsideATagChangesNothing) { EXPECT_EQ(stripped("a<b<c>d"), "ad"); }

TEST(Markup, OtherControlCharactersAreNoBlanks) { EXPECT_EQ(stripped("a\v\v\f\fb"), "a\v\v\f\fb"); }

TEST(Markup, AQuotedGreaterThanSignEndsTheTag) {
  EXPECT_EQ(stripped("<a title=\"x>y\">z"), "y\">z");
}

TEST(Markup, ATagMaySpanCalls) {
  const std::string text = "ab<tag>cd";
  for (size_t cut = 0; cut <= text.size(); ++cut) EXPECT_EQ(stripped(text, cut), "abcd") << cut;
}

TEST(Markup, ARunOfBlanksThatSpansCallsKeepsOneOfEach) { EXPECT_EQ(stripped("a    b", 3), "a  b"); }

TEST(Markup, NothingGivesNothing) {
  EXPECT_EQ(stripped(""), "");
  EXPECT_EQ(stripped("<never closed"), "");
}
