// The names that other readers give charsets: whatever the table says, the reader knows.
#include <gtest/gtest.h>
#include <iconv.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "lib/detect/charset_table.h"
#include "lib/detect/orva.h"

namespace {

// What a command prints, and its status.
int run(const std::string& command, std::string* out) {
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return -1;
  for (int c = getc(pipe); c != EOF; c = getc(pipe)) out->push_back(static_cast<char>(c));
  return pclose(pipe);
}

TEST(Names, TheCLibraryConvertsFromEveryIconvName) {
  // A C library without its converters can say nothing about names.
  const iconv_t probe = iconv_open("UTF-8", "KOI8-R");
  if (probe == iconv_t(-1)) GTEST_SKIP() << "no converters installed";
  iconv_close(probe);
  int asked = 0;
  for (int i = 0; i < orva_nb_charsets(); ++i) {
    const char* name = orva_charset_name(orva_charset(i), ORVA_NAMES_ICONV);
    if (name == nullptr) continue;
    const iconv_t converter = iconv_open("UTF-8", name);
    EXPECT_NE(converter, iconv_t(-1)) << name << " of " << orva_charset(i);
    if (converter != iconv_t(-1)) iconv_close(converter);
    ++asked;
  }
  EXPECT_GT(asked, 70);
}

TEST(Names, PythonFindsACodecForEveryPythonName) {
  std::string ignored;
  if (run("python3 -c 'import codecs' 2>/dev/null", &ignored) != 0) GTEST_SKIP() << "no python3";
  std::string program = "import codecs\nfor name in (";
  for (int i = 0; i < orva_nb_charsets(); ++i) {
    const char* name = orva_charset_name(orva_charset(i), ORVA_NAMES_PYTHON);
    if (name != nullptr) program += "\"" + std::string(name) + "\",";
  }
  program += "):\n  try: codecs.lookup(name)\n  except LookupError: print(name)\n";
  std::string unknown;
  EXPECT_EQ(run("python3 -c '" + program + "'", &unknown), 0);
  EXPECT_EQ(unknown, "");
}

TEST(Names, WebNamesAreThoseThatTheEncodingStandardLists) {
  // Source: the names of the Encoding Standard, which every browser decodes and no others.
  const std::string known =
      " UTF-8 IBM866 ISO-8859-2 ISO-8859-3 ISO-8859-4 ISO-8859-5 ISO-8859-6 ISO-8859-7 ISO-8859-8 "
      "ISO-8859-10 ISO-8859-13 ISO-8859-14 ISO-8859-15 ISO-8859-16 KOI8-R KOI8-U macintosh "
      "windows-874 windows-1250 windows-1251 windows-1252 windows-1253 windows-1254 windows-1255 "
      "windows-1256 windows-1257 windows-1258 x-mac-cyrillic GBK gb18030 Big5 EUC-JP ISO-2022-JP "
      "Shift_JIS EUC-KR UTF-16BE UTF-16LE ";
  for (int i = 0; i < orva_nb_charsets(); ++i) {
    const char* name = orva_charset_name(orva_charset(i), ORVA_NAMES_WEB);
    const bool decoded = (orva::kCharsets[i].flags & orva::kWeb) != 0;
    EXPECT_EQ(name != nullptr, decoded) << orva_charset(i);
    if (name == nullptr) continue;
    EXPECT_NE(known.find(" " + std::string(name) + " "), std::string::npos) << name;
  }
}

TEST(Names, RegisteredNamesAreTheirOwn) {
  for (int i = 0; i < orva_nb_charsets(); ++i) {
    EXPECT_STREQ(orva_charset_name(orva_charset(i), ORVA_NAMES_IANA), orva_charset(i));
  }
}

TEST(Names, NamesForBothByteOrdersHaveNamesToo) {
  EXPECT_STREQ(orva_charset_name("utf16", ORVA_NAMES_ICONV), "UTF-16");
  EXPECT_STREQ(orva_charset_name("UTF-32", ORVA_NAMES_PYTHON), "utf-32");
  EXPECT_EQ(orva_charset_name("UTF-32", ORVA_NAMES_WEB), nullptr);
}

TEST(Names, WhatAReaderLacksHasNoNameForIt) {
  EXPECT_EQ(orva_charset_name("HZ-GB-2312", ORVA_NAMES_ICONV), nullptr);
  EXPECT_EQ(orva_charset_name("EUC-TW", ORVA_NAMES_PYTHON), nullptr);
  EXPECT_EQ(orva_charset_name("IBM850", ORVA_NAMES_WEB), nullptr);
  EXPECT_EQ(orva_charset_name(nullptr, ORVA_NAMES_WEB), nullptr);
}

}  // namespace
