#include "lib/detect/charset_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <sstream>
#include <string>

#include "lib/detect/single_byte_tables.h"

namespace {

using orva::find_charset;
using orva::kCharsetCount;
using orva::kCharsets;

std::string iana(const char* name) {
  const orva::Charset* c = find_charset(name);
  return c == nullptr ? "" : c->iana;
}

TEST(CharsetTable, NamesAreFoundWhateverTheirCaseAndPunctuation) {
  EXPECT_EQ(iana("utf8"), "UTF-8");
  EXPECT_EQ(iana("Latin1"), "ISO-8859-1");
  EXPECT_EQ(iana("iso_8859-7"), "ISO-8859-7");
  EXPECT_EQ(iana("cp1251"), "windows-1251");
  EXPECT_EQ(iana("KZ1048"), "KZ-1048");
  EXPECT_EQ(iana("maccentraleurope"), "x-mac-ce");
}

TEST(CharsetTable, SupersetsAnswerToTheNamesThatDocumentsBear) {
  EXPECT_EQ(iana("windows-31J"), "Shift_JIS");
  EXPECT_EQ(iana("windows-949"), "EUC-KR");
  EXPECT_EQ(iana("windows-950"), "Big5");
}

TEST(CharsetTable, UnknownAndEmptyNamesAreNotFound) {
  EXPECT_EQ(find_charset("no-such-charset"), nullptr);
  EXPECT_EQ(find_charset(""), nullptr);
  EXPECT_EQ(find_charset("--"), nullptr);
  EXPECT_EQ(orva::find_charset_index("utf"), -1);
}

TEST(CharsetTable, RegisteredNamesAreFoundAsThemselves) {
  for (int i = 0; i < kCharsetCount; ++i) {
    EXPECT_EQ(orva::find_charset_index(kCharsets[i].iana), i) << kCharsets[i].iana;
  }
}

TEST(CharsetTable, CharsetsWithTheEuroAnswerToBothNames) {
  EXPECT_STREQ(orva::find_charset("IBM00858")->iana, "IBM858");
  EXPECT_STREQ(orva::find_charset("IBM858")->iana, "IBM858");
  EXPECT_STREQ(orva::find_charset("IBM01140")->iana, "IBM1140");
}

TEST(CharsetTable, AliasesBelongToOneCharset) {
  for (int i = 0; i < kCharsetCount; ++i) {
    std::istringstream words(kCharsets[i].aliases);
    for (std::string word; words >> word;) {
      EXPECT_EQ(orva::find_charset_index(word), i) << word << " of " << kCharsets[i].iana;
    }
  }
}

TEST(CharsetTable, NamesForReadersThatLackTheCharsetAreNull) {
  const orva::Charset& hz = *find_charset("HZ-GB-2312");
  EXPECT_EQ(charset_name(hz, orva::NameScheme::kIconv), nullptr);
  EXPECT_STREQ(charset_name(hz, orva::NameScheme::kPython), "hz");
  EXPECT_EQ(charset_name(*find_charset("VISCII"), orva::NameScheme::kWeb), nullptr);
  EXPECT_STREQ(charset_name(*find_charset("ISO-8859-1"), orva::NameScheme::kWeb), "windows-1252");
  EXPECT_STREQ(charset_name(*find_charset("EUC-KR"), orva::NameScheme::kIconv), "UHC");
}

TEST(CharsetTable, EverySingleByteTableBelongsToACharsetAndTheOthersAreMultiByte) {
  std::set<std::string> with_table;
  for (int i = 0; i < orva::kSingleByteTableCount; ++i) {
    with_table.insert(orva::kSingleByteTables[i].name);
  }
  int found = 0;
  for (int i = 0; i < kCharsetCount; ++i) {
    const bool single = orva::single_byte_table(i) != nullptr;
    if (single) {
      ++found;
      EXPECT_EQ(with_table.count(kCharsets[i].iana), 1U);
    }
    EXPECT_EQ(single, (kCharsets[i].flags & orva::kMultiByte) == 0) << kCharsets[i].iana;
  }
  EXPECT_EQ(found, orva::kSingleByteTableCount);
  EXPECT_EQ(orva::single_byte_table(-1), nullptr);
  EXPECT_EQ(orva::single_byte_table(kCharsetCount), nullptr);
}

TEST(CharsetTable, AsciiCompatibleTablesKeepLettersAndMarkup) {
  for (int i = 0; i < kCharsetCount; ++i) {
    const uint16_t* table = orva::single_byte_table(i);
    if (table == nullptr) continue;
    bool ascii = true;
    for (const char c : std::string("AZaz09<>\n ")) {
      const auto b = static_cast<unsigned char>(c);
      ascii = ascii && table[b] == b;
    }
    EXPECT_EQ(ascii, (kCharsets[i].flags & orva::kAsciiCompatible) != 0) << kCharsets[i].iana;
  }
}

TEST(CharsetTable, MacCyrillicHoldsTheUkrainianLettersAndTheEuro) {
  const uint16_t* table = orva::single_byte_table(orva::find_charset_index("x-mac-cyrillic"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table[0xA2], 0x0490);
  EXPECT_EQ(table[0xB6], 0x0491);
  EXPECT_EQ(table[0xFF], 0x20AC);
}

}  // namespace
