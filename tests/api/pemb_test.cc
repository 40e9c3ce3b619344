// The interface's functions on the tiny group.
#include "lib/api/pemb.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "lib/util/accounting.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/streams.h"
#include "tests/support/temp_dir.h"

namespace {

// A handle over these bytes; null when they are refused.
PembHandle* handle_of(const std::string& bytes) {
  const orva::TempDir dir;
  return pemb_init(dir.file("Model.grp", bytes).c_str());
}

class Pemb : public ::testing::Test {
 protected:
  void SetUp() override {
    handle_ = handle_of(orva::TinyGroup().bytes());
    ASSERT_NE(handle_, nullptr);
    ASSERT_EQ(pemb_load(handle_), 0);
  }
  void TearDown() override {
    pemb_dispose(handle_);
    free(handle_);
  }

  int feed(std::string text) {
    return pemb_nexts(handle_, reinterpret_cast<unsigned char*>(text.data()),
                      static_cast<unsigned>(text.size()));
  }
  // The scores of the document so far, empty when there are none.
  std::vector<float> scores() {
    const float* const all = pemb_get_scores(handle_, &best_, &ratio_);
    return all == nullptr ? std::vector<float>() : std::vector<float>(all, all + 3);
  }

  PembHandle* handle_ = nullptr;
  int best_ = 77;
  float ratio_ = 7.5F;
};

}  // namespace

TEST_F(Pemb, ADocumentOfTwoBytesHasNoScoresAndLeavesTheOutputsAlone) {
  for (const char* text : {"", "a", "ab"}) {
    ASSERT_EQ(pemb_load(handle_), 0);
    EXPECT_EQ(feed(text), 0);
    EXPECT_TRUE(scores().empty());
    EXPECT_EQ(best_, 77);
    EXPECT_EQ(ratio_, 7.5F);
  }
}

TEST_F(Pemb, TheThirdByteIsScored) {
  EXPECT_EQ(feed("aba"), 0);
  EXPECT_EQ(scores(), (std::vector<float>{3.0F, 3.5F, 5.0F}));
  EXPECT_EQ(best_, 0);
  EXPECT_GT(ratio_, 0.6F);
  EXPECT_LT(ratio_, 0.7F);
}

TEST_F(Pemb, BytesMayComeOneByOne) {
  EXPECT_EQ(feed("a"), 0);
  EXPECT_EQ(feed("b"), 0);
  EXPECT_TRUE(scores().empty());
  EXPECT_EQ(feed("a"), 0);
  EXPECT_EQ(scores(), (std::vector<float>{3.0F, 3.5F, 5.0F}));
}

TEST_F(Pemb, BytesThatPreprocessingRemovesLeaveTheStateAsItWas) {
  EXPECT_EQ(feed("12"), 0);
  EXPECT_EQ(feed("a"), 0);
  EXPECT_EQ(feed("345"), 0);
  EXPECT_EQ(feed("b67"), 0);
  EXPECT_EQ(feed("89"), 0);
  EXPECT_TRUE(scores().empty());
  EXPECT_EQ(feed("0a"), 0);
  EXPECT_EQ(scores(), (std::vector<float>{3.0F, 3.5F, 5.0F}));
}

TEST_F(Pemb, TheSwitchesOfTheGroupAreApplied) {
  EXPECT_EQ(feed("A1B2A3"), 0);
  EXPECT_EQ(scores(), (std::vector<float>{3.0F, 3.5F, 5.0F}));
}

TEST_F(Pemb, TheBytesAreRewrittenInPlace) {
  unsigned char bytes[] = "AB1A";
  EXPECT_EQ(pemb_nexts(handle_, bytes, 4), 0);
  EXPECT_EQ(memcmp(bytes, "aba", 3), 0);
}

TEST_F(Pemb, TenThousandBytesAreAccepted) { EXPECT_EQ(feed(std::string(10000, 'a')), 0); }

TEST_F(Pemb, OneByteMoreIsRefusedAndChangesNothing) {
  EXPECT_EQ(feed("ab"), 0);
  std::string text(10001, 'A');
  EXPECT_EQ(feed(text), -1);
  EXPECT_TRUE(scores().empty());
  EXPECT_EQ(feed("a"), 0);
  EXPECT_EQ(scores(), (std::vector<float>{3.0F, 3.5F, 5.0F}));
}

TEST_F(Pemb, ANewDocumentForgetsTheFormer) {
  EXPECT_EQ(feed("ababxyzz"), 0);
  EXPECT_EQ(pemb_load(handle_), 0);
  EXPECT_TRUE(scores().empty());
  EXPECT_EQ(feed("aba"), 0);
  EXPECT_EQ(scores(), (std::vector<float>{3.0F, 3.5F, 5.0F}));
}

TEST_F(Pemb, ScoresCarryOnWithMoreInput) {
  EXPECT_EQ(feed("aba"), 0);
  scores();
  EXPECT_EQ(feed("b"), 0);
  EXPECT_EQ(scores(), (std::vector<float>{16.5F, 3.75F, 6.0F}));
  EXPECT_EQ(best_, 1);
}

TEST_F(Pemb, NamesAreThoseOfTheGroup) {
  EXPECT_EQ(pemb_nb_models(handle_), 3);
  EXPECT_STREQ(pemb_model_name(handle_, 0), "frA");
  EXPECT_STREQ(pemb_model_name(handle_, 2), "enB");
  EXPECT_EQ(pemb_model_name(handle_, -1), nullptr);
  EXPECT_EQ(pemb_model_name(handle_, 3), nullptr);
}

TEST_F(Pemb, NullArgumentsAreRefused) {
  unsigned char byte = 'a';
  EXPECT_EQ(pemb_init(nullptr), nullptr);
  EXPECT_EQ(pemb_load(nullptr), -1);
  EXPECT_EQ(pemb_nexts(nullptr, &byte, 1), -1);
  EXPECT_EQ(pemb_nexts(handle_, nullptr, 1), -1);
  EXPECT_EQ(pemb_get_scores(nullptr, &best_, &ratio_), nullptr);
  EXPECT_EQ(pemb_get_scores(handle_, nullptr, &ratio_), nullptr);
  EXPECT_EQ(pemb_get_scores(handle_, &best_, nullptr), nullptr);
  EXPECT_EQ(pemb_model_name(nullptr, 0), nullptr);
  EXPECT_EQ(pemb_nb_models(nullptr), 0);
  pemb_dispose(nullptr);
}

TEST_F(Pemb, ADisposedHandleRefusesAllButItsRelease) {
  pemb_dispose(handle_);
  pemb_dispose(handle_);
  EXPECT_EQ(pemb_load(handle_), -1);
  EXPECT_EQ(feed("aba"), -1);
  EXPECT_TRUE(scores().empty());
  EXPECT_EQ(pemb_nb_models(handle_), 0);
  EXPECT_EQ(pemb_model_name(handle_, 0), nullptr);
}

TEST(PembInit, NoDocumentIsFedBeforeItWasLoaded) {
  PembHandle* const handle = handle_of(orva::TinyGroup().bytes());
  unsigned char bytes[] = "aba";
  int best = 77;
  float ratio = 7.5F;
  EXPECT_EQ(pemb_nexts(handle, bytes, 3), -1);
  EXPECT_EQ(pemb_get_scores(handle, &best, &ratio), nullptr);
  EXPECT_EQ(best, 77);
  pemb_dispose(handle);
  free(handle);
}

TEST(PembInit, TheRecordOfADisposedHandleStaysAllocated) {
  PembHandle* const handle = handle_of(orva::TinyGroup().bytes());
  pemb_dispose(handle);
  // Still readable; a freed block would stop the sanitizer build.
  EXPECT_EQ(pemb_nb_models(handle), 0);
}

TEST(PembInit, AllocationFailuresNoLongerEndTheProcess) {
  _MallocChkExitOnErr = 1;
  EXPECT_EQ(pemb_init("/nonexistent"), nullptr);
  EXPECT_EQ(_MallocChkExitOnErr, 0);
  _MallocChkExitOnErr = 1;
}

TEST(PembInit, WhatIsNoGroupIsRefused) {
  const orva::TempDir dir;
  EXPECT_EQ(pemb_init((dir / "missing").c_str()), nullptr);
  EXPECT_EQ(pemb_init(dir.path().c_str()), nullptr);
  EXPECT_EQ(handle_of(""), nullptr);
  EXPECT_EQ(handle_of("some text\n"), nullptr);
  EXPECT_EQ(handle_of(orva::TinyGroup().bytes().substr(0, 2000)), nullptr);
}

TEST(PembInit, ARefusedGroupReleasesWhatItTook) {
  const int before = _MallocChkNbBytes;
  EXPECT_EQ(handle_of(orva::TinyGroup().bytes().substr(0, 2000)), nullptr);
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(PembGetScores, WithoutAWinnerTheBestIsMinusOneAndTheRatioToo) {
  // Every unigram of model 0 and its offset made infinite: bits of +infinity.
  std::string bytes = orva::TinyGroup().with_word("model 0 lpmin", 0x7f800000);
  const auto put = [&](const char* field) {
    const std::string infinite = orva::TinyGroup().with_word(field, 0x7f800000);
    const size_t at = orva::TinyGroup().at(field);
    bytes.replace(at, 4, infinite, at, 4);
  };
  put("model 1 lpmin");
  put("model 2 lpmin");
  PembHandle* const handle = handle_of(bytes);
  ASSERT_NE(handle, nullptr);
  ASSERT_EQ(pemb_load(handle), 0);
  unsigned char text[] = "aba";
  EXPECT_EQ(pemb_nexts(handle, text, 3), 0);
  int best = 77;
  float ratio = 7.5F;
  EXPECT_EQ(pemb_get_scores(handle, &best, &ratio), nullptr);
  EXPECT_EQ(best, -1);
  EXPECT_EQ(ratio, -1.0F);
  pemb_dispose(handle);
  free(handle);
}
