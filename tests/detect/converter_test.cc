#include "lib/detect/converter.h"

#include <gtest/gtest.h>

#include <string>

#include "lib/detect/iconv_codec.h"

namespace {

using orva::Conversion;

const orva::Charset& charset(const char* name) {
  const orva::Charset* c = orva::find_charset(name);
  EXPECT_NE(c, nullptr) << name;
  return *c;
}

std::string decoded(const char* name, const std::string& bytes) {
  Conversion out;
  const orva::ConvertResult result = decode_bytes(charset(name), bytes, &out);
  if (result == orva::kNoConverter) return "no converter";
  return result == orva::kConverted ? out.bytes : "bad at " + std::to_string(out.offset);
}

std::string encoded(const char* name, const std::string& text) {
  Conversion out;
  const orva::ConvertResult result = encode_text(charset(name), text, &out);
  if (result == orva::kNoConverter) return "no converter";
  return result == orva::kConverted ? out.bytes : "bad at " + std::to_string(out.offset);
}

TEST(Decoding, SingleByteCharsetsGoThroughTheirTables) {
  EXPECT_EQ(decoded("windows-1251", "\xCF\xF0\xE8\xE2\xE5\xF2"), "Привет");
  EXPECT_EQ(decoded("IBM037", "\xC8\x85\x93\x93\x96"), "Hello");
  EXPECT_EQ(decoded("x-mac-greek", "\xE1\xEC\xF9\xF2"), "αλυρ");
}

TEST(Decoding, TheFirstByteThatStandsForNothingIsNamed) {
  EXPECT_EQ(decoded("windows-1253", "ab\xD2"), "bad at 2");
  EXPECT_EQ(decoded("UTF-8", "ab\xC3\xA9\xFFz"), "bad at 4");
  EXPECT_EQ(decoded("US-ASCII", "a\x80"), "bad at 1");
}

TEST(Decoding, OverlongFormsAndSurrogatesAreBad) {
  EXPECT_EQ(decoded("UTF-8", "\xC0\x80"), "bad at 0");
  EXPECT_EQ(decoded("UTF-8", "\xE0\x80\x80"), "bad at 0");
  EXPECT_EQ(decoded("UTF-8", "\xED\xA0\x80"), "bad at 0");
  EXPECT_EQ(decoded("UTF-8", "\xF4\x90\x80\x80"), "bad at 0");
  EXPECT_EQ(decoded("UTF-16BE", std::string("\x00\x61\xDC\x00", 4)), "bad at 2");
  EXPECT_EQ(decoded("UTF-32LE", std::string("\x00\x00\x11\x00", 4)), "bad at 0");
}

TEST(Decoding, ACharacterCutAtTheEndIsLeftOut) {
  for (const char* name : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE", "Shift_JIS",
                           "EUC-JP", "GB18030", "Big5", "EUC-KR", "HZ-GB-2312"}) {
    const std::string whole = encoded(name, "一");
    if (whole == "no converter") continue;
    const size_t cut = std::string(name) == "HZ-GB-2312" ? 3 : whole.size() - 1;
    Conversion out;
    EXPECT_EQ(decode_bytes(charset(name), whole.substr(0, cut), &out), orva::kConverted) << name;
    EXPECT_TRUE(out.cut) << name;
    EXPECT_EQ(out.bytes, "") << name;
  }
}

TEST(Encoding, WhatTheCharsetCannotHoldIsLeftOutAndCounted) {
  for (const char* name : {"ISO-8859-1", "IBM850", "EUC-KR", "HZ-GB-2312"}) {
    Conversion out;
    const orva::ConvertResult result = encode_text(charset(name),
                                                   "a\xF0\x9F\x98\x80"
                                                   "bกc",
                                                   &out);
    if (result == orva::kNoConverter) continue;
    EXPECT_EQ(result, orva::kConverted) << name;
    EXPECT_EQ(out.bytes, "abc") << name;
    EXPECT_EQ(out.dropped, 2U) << name;
  }
}

TEST(Encoding, InputThatIsNotUtf8IsRefusedWithItsOffset) {
  for (const char* name : {"ISO-8859-1", "UTF-8", "UTF-16LE", "Big5", "HZ-GB-2312"}) {
    EXPECT_EQ(encoded(name, "ab\xFF"), "bad at 2") << name;
    EXPECT_EQ(encoded(name, "ab\xC3"), "bad at 2") << name;
  }
}

TEST(Encoding, VietnameseLettersBecomeBaseAndToneIn1258) {
  EXPECT_EQ(encoded("windows-1258", "ế"), "\xEA\xEC");
  EXPECT_EQ(encoded("windows-1258", "à"), "\xE0");
  EXPECT_EQ(encoded("windows-1258", "Ữ"), "\xDD\xDE");
}

TEST(Encoding, UnicodeFormsWriteSurrogatePairs) {
  EXPECT_EQ(encoded("UTF-16BE", "\xF0\x9F\x98\x80"), std::string("\xD8\x3D\xDE\x00", 4));
  EXPECT_EQ(encoded("UTF-32LE", "A"), std::string("A\0\0\0", 4));
}

TEST(Hz, PairsAndTildesRoundTrip) {
  const std::string hz = encoded("HZ-GB-2312", "a~中文b");
  if (hz == "no converter") GTEST_SKIP() << "the C library has no GB2312 here";
  EXPECT_EQ(hz, "a~~~{VPND~}b");
  EXPECT_EQ(decoded("HZ-GB-2312", hz), "a~中文b");
  EXPECT_EQ(decoded("HZ-GB-2312", "a~\nb"), "ab");
}

TEST(Hz, WhatIsNoPairIsNamedByItsOffset) {
  if (encoded("HZ-GB-2312", "中") == "no converter") GTEST_SKIP() << "no GB2312 here";
  EXPECT_EQ(decoded("HZ-GB-2312", "ab~x"), "bad at 2");
  EXPECT_EQ(decoded("HZ-GB-2312", "a\xB0"), "bad at 1");
  EXPECT_EQ(decoded("HZ-GB-2312", "~{VP~}x~{~~"), "bad at 9");
}

TEST(RoundTrip, EverySingleByteCharsetWritesWhatItReads) {
  for (int i = 0; i < orva::kCharsetCount; ++i) {
    const uint16_t* table = orva::single_byte_table(i);
    if (table == nullptr) continue;
    for (int b = 0; b < 256; ++b) {
      const std::string one(1, static_cast<char>(b));
      Conversion text;
      if (decode_bytes(orva::kCharsets[i], one, &text) != orva::kConverted) continue;
      Conversion back;
      ASSERT_EQ(encode_text(orva::kCharsets[i], text.bytes, &back), orva::kConverted);
      ASSERT_EQ(back.bytes.size(), 1U) << orva::kCharsets[i].iana << " " << b;
      EXPECT_EQ(table[static_cast<unsigned char>(back.bytes[0])], table[b]);
    }
  }
}

TEST(RoundTrip, EveryMultiByteCharsetWritesWhatItReads) {
  struct Case {
    const char* name;
    const char* text;
  };
  for (const Case& c :
       {Case{"Shift_JIS", "日本語のテキスト"}, Case{"EUC-JP", "日本語のテキスト"},
        Case{"ISO-2022-JP", "日本語のテキスト"}, Case{"GB18030", "中文文本"},
        Case{"GB2312", "中文文本"}, Case{"GBK", "中文文本"}, Case{"HZ-GB-2312", "中文文本"},
        Case{"ISO-2022-CN", "中文文本"}, Case{"Big5", "中文文本"}, Case{"EUC-TW", "中文文本"},
        Case{"EUC-KR", "한국어 글"}, Case{"ISO-2022-KR", "한국어 글"}, Case{"Johab", "한국어 글"},
        Case{"UTF-16LE", "中a한é"}, Case{"UTF-32BE", "中a한é"}}) {
    const std::string bytes = encoded(c.name, c.text);
    if (bytes == "no converter") continue;
    EXPECT_EQ(decoded(c.name, bytes), c.text) << c.name;
  }
}

// Signs that the C library reads otherwise: newer or older editions of the code page.
bool is_other_edition(const std::string& name, int b) {
  if (name == "IBM856") return b == 0x7F || b == 0xEE || b == 0xFA;
  if (name == "IBM273") return b == 0xBC;
  if (name == "IBM424") return b == 0x78;
  if (name == "IBM875") return b == 0x74 || b == 0xDD;
  if (name == "IBM1026") return b == 0x9D || b == 0xBC;
  if (name == "macintosh") return b == 0xC6 || b == 0xF0;
  return false;
}

// Where the C library has a converter too, the tables say the same but for the signs above.
TEST(Tables, AgreeWithTheConvertersOfTheCLibrary) {
  int compared = 0;
  for (int i = 0; i < orva::kCharsetCount; ++i) {
    const orva::Charset& c = orva::kCharsets[i];
    const uint16_t* table = orva::single_byte_table(i);
    if (table == nullptr || *c.iconv == 0) continue;
    for (int b = 0x20; b < 256; ++b) {
      if (is_other_edition(c.iana, b)) continue;
      const std::string one(1, static_cast<char>(b));
      Conversion theirs;
      const orva::ConvertResult result = orva::iconv_decode(c.iconv, one, &theirs);
      if (result == orva::kNoConverter) break;
      if (result != orva::kConverted || theirs.bytes.empty()) continue;
      Conversion ours;
      if (decode_bytes(c, one, &ours) != orva::kConverted) continue;
      ++compared;
      EXPECT_EQ(ours.bytes, theirs.bytes) << c.iana << " " << std::hex << b;
    }
  }
  if (compared == 0) GTEST_SKIP() << "the C library has no converters here";
}

}  // namespace
