// Documents that are hardly documents: an honest answer, with low probability or none.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/orva.h"

namespace {

// What a text charset may be claimed with for bytes that are no text.
constexpr double kLow = 0.5;

class BadInput : public testing::Test {
 protected:
  void SetUp() override {
    detector_ = orva_new(nullptr);
    if (detector_ == nullptr) GTEST_SKIP() << "built without models";
  }
  void TearDown() override { orva_free(detector_); }

  OrvaResult detect(const std::string& bytes) {
    OrvaResult result;
    EXPECT_EQ(orva_detect(detector_, bytes.data(), bytes.size(), &result), ORVA_OK);
    EXPECT_EQ(result.bytes_read, std::min<uint64_t>(bytes.size(), ORVA_DEFAULT_LIMIT));
    EXPECT_GE(result.probability, 0);
    EXPECT_LE(result.probability, 1);
    EXPECT_EQ(result.charset == nullptr, result.nb_candidates == 0);
    return result;
  }
  static bool decodes(const char* charset, const std::string& bytes) {
    orva::Conversion out;
    const auto end = decode_bytes(*orva::find_charset(charset), bytes, &out);
    return end == orva::kConverted;
  }
  static std::string random_bytes(size_t length, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes(length, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    return bytes;
  }

  OrvaDetector* detector_ = nullptr;
};

TEST_F(BadInput, AnEmptyDocumentHasNoAnswer) {
  const OrvaResult result = detect("");
  EXPECT_EQ(result.kind, ORVA_KIND_EMPTY);
  EXPECT_EQ(result.charset, nullptr);
  EXPECT_EQ(result.language, nullptr);
  EXPECT_EQ(result.probability, 0);
}

TEST_F(BadInput, OneByteOfAnyValueIsAnsweredAndTheAnswerDecodesIt) {
  for (int b = 0; b < 256; ++b) {
    const std::string byte(1, static_cast<char>(b));
    const OrvaResult result = detect(byte);
    if (b >= 0x80 && result.charset != nullptr) {
      EXPECT_LT(result.probability, 0.9) << b;
      EXPECT_TRUE(decodes(result.charset, byte)) << b << " " << result.charset;
    }
    if (b >= 0x20 && b < 0x7F) {
      EXPECT_STREQ(result.charset, "US-ASCII") << b;
    }
  }
}

TEST_F(BadInput, BlanksAndDigitsHaveNoLanguage) {
  for (const std::string& text :
       {std::string(5000, ' '), std::string(" \t\r\n\n \n"), std::string(300, '\n'),
        std::string("0123456789\n98 76 54\n"), std::string(2000, '7')}) {
    const OrvaResult result = detect(text);
    EXPECT_STREQ(result.charset, "US-ASCII");
    EXPECT_EQ(result.language, nullptr);
    EXPECT_EQ(result.language_probability, 0);
  }
}

TEST_F(BadInput, RandomBytesAreNoConfidentText) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    const OrvaResult result = detect(random_bytes(200 + 300 * seed, seed));
    if (result.charset != nullptr) {
      EXPECT_LT(result.probability, kLow) << result.charset;
    }
  }
}

TEST_F(BadInput, RandomBytesAboveTheControlsAreNoConfidentText) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    std::string bytes = random_bytes(100 + 50 * seed, seed);
    for (char& c : bytes) c = static_cast<char>(static_cast<unsigned char>(c) | 0xA0);
    const OrvaResult result = detect(bytes);
    if (result.charset != nullptr) {
      EXPECT_LT(result.probability, 0.9) << result.charset;
    }
  }
}

TEST_F(BadInput, FilesThatAreNoTextAreBinary) {
  const struct {
    const char* name;
    std::string head;
  } kinds[] = {{"ELF", std::string("\x7F"
                                   "ELF\2\1\1\0",
                                   8)},
               {"PNG", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)},
               {"zip", std::string("PK\x03\x04\x14\0\0\0\x08\0", 10)},
               {"gzip", std::string("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10)},
               {"JPEG", std::string("\xFF\xD8\xFF\xE0\0\x10JFIF\0", 11)}};
  for (const auto& kind : kinds) {
    for (const size_t length : {size_t{0}, size_t{50}, size_t{1000}, size_t{300000}}) {
      const OrvaResult result = detect(kind.head + random_bytes(length, 7));
      EXPECT_EQ(result.kind, ORVA_KIND_BINARY) << kind.name << " " << length;
      EXPECT_EQ(result.charset, nullptr) << kind.name << " " << length;
      EXPECT_EQ(result.probability, 0);
    }
  }
}

TEST_F(BadInput, MixedCharsetsGetAnAnswerThatDecodesAllOfIt) {
  const std::string russian = "Утром мы пошли на реку ловить рыбу, но вода была холодной.\n";
  const std::string french = "Le matin, nous sommes allés à la rivière pour pêcher.\n";
  const std::string japanese = "朝、川へ魚を釣りに行ったが、水がとても冷たかった。\n";
  const struct {
    const char* one;
    const char* other;
    std::string first;
    std::string second;
  } mixes[] = {{"UTF-8", "windows-1251", russian, russian},
               {"UTF-8", "ISO-8859-1", french, french},
               {"Shift_JIS", "EUC-JP", japanese, japanese},
               {"KOI8-R", "windows-1251", russian, russian},
               {"UTF-16LE", "UTF-8", french, french}};
  for (const auto& mix : mixes) {
    orva::Conversion one;
    orva::Conversion other;
    ASSERT_EQ(encode_text(*orva::find_charset(mix.one), mix.first, &one), orva::kConverted);
    ASSERT_EQ(encode_text(*orva::find_charset(mix.other), mix.second, &other), orva::kConverted);
    const std::string bytes = one.bytes + other.bytes;
    const OrvaResult result = detect(bytes);
    if (result.charset == nullptr) continue;
    EXPECT_TRUE(decodes(result.charset, bytes)) << mix.one << "+" << mix.other;
    EXPECT_STRNE(result.charset, "UTF-8");
  }
}

TEST_F(BadInput, ALongDocumentIsReadWithinItsLimitAndBeyondItWhenAsked) {
  const std::string text(1 << 20, 'e');
  EXPECT_EQ(detect(text).bytes_read, uint64_t{ORVA_DEFAULT_LIMIT});
  ASSERT_EQ(orva_set_limit(detector_, 0), ORVA_OK);
  OrvaResult result;
  ASSERT_EQ(orva_detect(detector_, text.data(), text.size(), &result), ORVA_OK);
  EXPECT_EQ(result.bytes_read, text.size());
}

}  // namespace
