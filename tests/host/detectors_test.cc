// Both detectors of the loaded component.
#include <gtest/gtest.h>

#include "tests/host/loaded_component.h"

namespace orva {
namespace {

using Strings = std::vector<std::string>;

class Streaming : public LoadedComponent {
 protected:
  void SetUp() override {
    load();
    detector_ = streaming();
    ASSERT_NE(detector_.get(), nullptr);
  }
  ~Streaming() override { detector_ = static_cast<nsICharsetDetector*>(nullptr); }

  nsCOMPtr<Observer> observer_ = new Observer;
  nsCOMPtr<nsICharsetDetector> detector_;
};

TEST_F(Streaming, DecisionInTheSecondOfFivePiecesIsToldFiveTimes) {
  detector_->Init(observer_);
  EXPECT_FALSE(feed(detector_, "\xF7\xD3"));  // too short for a score
  EXPECT_TRUE(observer_->told.empty());
  for (size_t piece = 1; piece < 5; ++piece) {
    EXPECT_FALSE(feed(detector_, kRussian));
    EXPECT_EQ(observer_->told, Strings(piece, "KOI8-R"));
  }
  EXPECT_EQ(detector_->Done(), NS_OK);
  EXPECT_EQ(observer_->told, Strings(5, "KOI8-R"));
  EXPECT_EQ(observer_->levels, std::vector<nsDetectionConfident>(5, eBestAnswer));
}

TEST_F(Streaming, DocumentTooShortToScoreIsNeverReported) {
  detector_->Init(observer_);
  feed(detector_, "ab");
  EXPECT_EQ(detector_->Done(), NS_OK);
  EXPECT_TRUE(observer_->told.empty());
}

TEST_F(Streaming, NullArgumentsAreInvalid) {
  PRBool dont_feed_me = 7;
  EXPECT_EQ(detector_->Init(nullptr), NS_ERROR_INVALID_ARG);
  EXPECT_EQ(detector_->DoIt(nullptr, 0, &dont_feed_me), NS_ERROR_INVALID_ARG);
  EXPECT_EQ(dont_feed_me, 7);
  EXPECT_EQ(detector_->DoIt("x", 1, nullptr), NS_ERROR_INVALID_ARG);
}

TEST_F(Streaming, WithoutAnObserverNothingHappens) {
  EXPECT_FALSE(feed(detector_, kRussian));
  EXPECT_EQ(detector_->Done(), NS_OK);
}

TEST_F(Streaming, FormerObserverIsNotReleasedAndTheLastOneIs) {
  const nsCOMPtr<Observer> former = new Observer;
  detector_->Init(former);
  detector_->Init(observer_);
  feed(detector_, kRussian);
  EXPECT_TRUE(former->told.empty());
  EXPECT_EQ(observer_->told.size(), 1U);
  EXPECT_EQ(observer_->references(), 2U);
  detector_ = static_cast<nsICharsetDetector*>(nullptr);
  EXPECT_EQ(observer_->references(), 1U);
  EXPECT_EQ(former->references(), 2U);
  former->Release();
}

TEST_F(Streaming, LastReleaseLowersTheCountOfLiveObjects) {
  EXPECT_FALSE(can_unload());
  EXPECT_EQ(detector_->AddRef(), 2U);
  EXPECT_EQ(detector_->Release(), 1U);
  EXPECT_FALSE(can_unload());
  detector_ = static_cast<nsICharsetDetector*>(nullptr);
  EXPECT_TRUE(can_unload());
}

TEST_F(Streaming, AnswersItsInterfaceAndTheRootOnly) {
  for (const nsIID& iid : {nsICharsetDetector::GetIID(), nsISupports::GetIID()}) {
    nsCOMPtr<nsISupports> found;
    EXPECT_EQ(detector_->QueryInterface(iid, getter_AddRefs(found)), NS_OK);
    EXPECT_EQ(found.get(), detector_.get());
  }
  for (const nsIID& iid : {nsIFactory::GetIID(), nsIStringCharsetDetector::GetIID()}) {
    void* none = &none;
    EXPECT_EQ(detector_->QueryInterface(iid, &none), NS_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
  }
  EXPECT_EQ(detector_->QueryInterface(nsISupports::GetIID(), nullptr), NS_ERROR_NULL_POINTER);
}

TEST_F(Streaming, SecondDetectorReportsNothingEvenAfterTheFirstHasFinished) {
  const nsCOMPtr<nsICharsetDetector> second = streaming();
  const nsCOMPtr<Observer> other = new Observer;
  detector_->Init(observer_);
  second->Init(other);
  feed(detector_, kRussian);
  detector_->Done();
  EXPECT_EQ(observer_->told.size(), 2U);
  feed(second, kRussian);
  second->Done();
  EXPECT_TRUE(other->told.empty());
}

TEST_F(Streaming, EarlyDecisionLetsTheNextDetectorIn) {
  feed(detector_, kRussian);
  EXPECT_EQ(answer(whole(), kRussian), "KOI8-R");
}

TEST_F(Streaming, DetectorReleasedBeforeItsEndLocksOutTheNextUntilAnyIsDone) {
  feed(detector_, "x");
  detector_ = static_cast<nsICharsetDetector*>(nullptr);
  // The answer is missed, but its end gives the evaluator back.
  EXPECT_EQ(answer(whole(), kRussian), "-");
  EXPECT_EQ(answer(whole(), kRussian), "KOI8-R");
}

TEST_F(Streaming, TagOpenAtTheEndOfABlockHidesTheStartOfTheNext) {
  detector_->Init(observer_);
  feed(detector_, "ab<");
  feed(detector_, kRussian);
  feed(detector_, kRussian);
  detector_->Done();
  EXPECT_TRUE(observer_->told.empty());
}

class WholeText : public LoadedComponent {
 protected:
  void SetUp() override { load(); }
};

TEST_F(WholeText, NoWinnerGivesNoCharsetAtTheSameLevel) {
  EXPECT_EQ(answer(whole(), ""), "-");
  EXPECT_EQ(answer(whole(), "ab"), "-");
  EXPECT_EQ(answer(whole(), std::string(30000, '\n')), answer(whole(), "\n"));
}

TEST_F(WholeText, SecondCallAfterAnEarlyDecisionRepeatsTheFirstAnswer) {
  const nsCOMPtr<nsIStringCharsetDetector> detector = whole();
  EXPECT_EQ(answer(detector, kRussian), "KOI8-R");
  EXPECT_EQ(answer(detector, "Where the bee sucks, there suck I"), "KOI8-R");
}

TEST_F(WholeText, SecondCallWithoutADecisionContinuesTheFirst) {
  const nsCOMPtr<nsIStringCharsetDetector> detector = whole();
  EXPECT_EQ(answer(detector, "\xF7\xD3"), "-");
  EXPECT_EQ(answer(detector, std::string("\xC5")), answer(whole(), "\xF7\xD3\xC5"));
}

TEST_F(WholeText, WhatCannotBeServedIsInvalid) {
  const nsCOMPtr<nsIStringCharsetDetector> detector = whole();
  const char* charset = nullptr;
  nsDetectionConfident level = eNoAnswerYet;
  EXPECT_EQ(detector->DoIt(nullptr, 5, &charset, level), NS_ERROR_INVALID_ARG);
  EXPECT_EQ(detector->DoIt("x", 1, nullptr, level), NS_ERROR_INVALID_ARG);
  EXPECT_EQ(level, eNoAnswerYet);
  EXPECT_EQ(detector->DoIt(nullptr, 0, &charset, level), NS_OK);
  EXPECT_EQ(level, eBestAnswer);
}

TEST_F(WholeText, AnswersItsInterfaceAndTheRootOnly) {
  const nsCOMPtr<nsIStringCharsetDetector> detector = whole();
  nsCOMPtr<nsISupports> root;
  EXPECT_EQ(detector->QueryInterface(nsISupports::GetIID(), getter_AddRefs(root)), NS_OK);
  EXPECT_EQ(root.get(), detector.get());
  void* none = &none;
  EXPECT_EQ(detector->QueryInterface(nsICharsetDetector::GetIID(), &none), NS_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
}

}  // namespace
}  // namespace orva
