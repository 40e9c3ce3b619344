// One document after another: who holds the evaluator, what is fed, when it ends early.
#include <cmath>

#include "tests/host/core_fixture.h"

namespace orva {
namespace {

using Names = std::vector<std::string>;

class CoreRun : public CoreTest {
 protected:
  void SetUp() override { load(); }

  static std::vector<size_t> piece_sizes() {
    std::vector<size_t> sizes;
    for (const std::string& piece : g_library.pieces) sizes.push_back(piece.size());
    return sizes;
  }
  static std::string all_fed() {
    std::string text;
    for (const std::string& piece : g_library.pieces) text += piece;
    return text;
  }
};

TEST_F(CoreRun, FirstInstanceTakesTheEvaluatorAndResetsIt) {
  const Core detector;
  EXPECT_EQ(detector.mActive, 1);
  EXPECT_EQ(detector.mDone, 0);
  EXPECT_EQ(detector.mInMarkup, 0);
  EXPECT_EQ(detector.mBestModel, -1);
  EXPECT_EQ(Core::mLock, 1);
  EXPECT_EQ(g_library.loads, 1);
}

TEST_F(CoreRun, EvaluatorThatIsNotReadyIsNotTaken) {
  g_library.load_result = -1;
  const Core detector;
  EXPECT_EQ(detector.mActive, 0);
  EXPECT_EQ(Core::mLock, 0);
}

TEST_F(CoreRun, InstanceMadeBesideAnActiveOneStaysInactiveForLife) {
  Core first;
  Core second;
  let_win(1, 0.5F);
  first.feed("text");
  first.DataEnd();
  second.feed("text");
  second.DataEnd();
  EXPECT_EQ(first.reports, Names({"second"}));
  EXPECT_TRUE(second.reports.empty());
  EXPECT_EQ(g_library.pieces.size(), 1U);
  EXPECT_EQ(g_library.loads, 1);
}

TEST_F(CoreRun, InstanceDestroyedBeforeItsEndKeepsTheLock) {
  { const Core lost; }
  EXPECT_EQ(Core::mLock, 1);
  EXPECT_EQ(Core().mActive, 0);
}

TEST_F(CoreRun, EndOfAnyInstanceGivesTheEvaluatorBack) {
  const Core owner;
  Core other;
  other.DataEnd();
  EXPECT_EQ(Core::mLock, 0);
  EXPECT_EQ(Core().mActive, 1);
}

TEST_F(CoreRun, LongDataIsFedInPiecesOfTenThousand) {
  Core detector;
  detector.feed(std::string(25000, 'a'));
  EXPECT_EQ(piece_sizes(), std::vector<size_t>({10000, 10000, 5000}));
}

TEST_F(CoreRun, PieceSizesAtTheBoundary) {
  Core detector;
  detector.feed(std::string(10000, 'a'));
  detector.feed(std::string(10001, 'a'));
  detector.feed(std::string(20000, 'a'));
  detector.feed("");
  EXPECT_EQ(piece_sizes(), std::vector<size_t>({10000, 10000, 1, 10000, 10000, 0}));
}

TEST_F(CoreRun, CallersBytesAreNeverWritten) {
  Core detector;
  const std::string text(12000, 'a');
  detector.feed(text);
  EXPECT_EQ(text, std::string(12000, 'a'));
}

TEST_F(CoreRun, WithoutMemoryTheRawBytesAreFedFromALocalCopy) {
  Core detector;
  const std::string text = "<p>" + std::string(25000, 'a') + "</p>";
  g_host_memory_fails = true;
  detector.feed(text);
  g_host_memory_fails = false;
  EXPECT_EQ(piece_sizes(), std::vector<size_t>({10000, 10000, 5007}));
  EXPECT_EQ(all_fed(), text);
  EXPECT_EQ(text.find('X'), std::string::npos);
  EXPECT_EQ(detector.mInMarkup, 0);
}

TEST_F(CoreRun, MarkupIsStrippedBeforeFeeding) {
  Core detector;
  detector.feed("<p>word</p>");
  detector.feed("<a hr");
  detector.feed("ef=x>y");
  EXPECT_EQ(g_library.pieces, Names({"word", "", "y"}));
}

TEST_F(CoreRun, ScoreOfExactlyTheThresholdDoesNotEndEarly) {
  Core detector;
  let_win(0, 0.8F);
  detector.feed("text");
  EXPECT_EQ(detector.mDone, 0);
  EXPECT_EQ(Core::mLock, 1);
}

TEST_F(CoreRun, ScoreAboveTheThresholdEndsEarlyAndGivesTheEvaluatorBack) {
  Core detector;
  let_win(1, std::nextafter(0.8F, 1.0F));
  detector.feed("text");
  EXPECT_EQ(detector.mDone, 1);
  EXPECT_EQ(Core::mLock, 0);
  let_win(0, 0.9F);
  detector.feed("ignored");
  EXPECT_EQ(g_library.pieces.size(), 1U);
  EXPECT_EQ(detector.mBestModel, 1);
}

TEST_F(CoreRun, WithoutScoresThereIsNoEarlyDecision) {
  Core detector;
  g_library.ratio = 1.0F;
  detector.feed("te");
  EXPECT_EQ(detector.mDone, 0);
}

TEST_F(CoreRun, BestModelFollowsTheLibraryDownToNone) {
  Core detector;
  let_win(1, 0.5F);
  detector.feed("text");
  EXPECT_EQ(detector.mBestModel, 1);
  g_library.scores = false;
  g_library.names_best = false;
  detector.feed("");
  EXPECT_EQ(detector.mBestModel, 1);
  g_library.names_best = true;
  g_library.best = -1;
  detector.feed("text");
  EXPECT_EQ(detector.mBestModel, -1);
  detector.DataEnd();
  EXPECT_TRUE(detector.reports.empty());
}

TEST_F(CoreRun, ModelWithoutANameInTheTableIsNotReported) {
  Core detector;
  let_win(2, 0.5F);
  detector.feed("text");
  detector.DataEnd();
  EXPECT_TRUE(detector.reports.empty());
}

TEST_F(CoreRun, NameThatWasNotReadIsReportedEmpty) {
  nsOrvaDetector::Shutdown();
  write_names(word(2) + record("first"));
  ASSERT_EQ(nsOrvaDetector::Initialize(), NS_OK);
  Core detector;
  let_win(1, 0.5F);
  detector.feed("text");
  detector.DataEnd();
  EXPECT_EQ(detector.reports, Names({""}));
}

TEST_F(CoreRun, FeedingGoesThroughTheTextExtractionOfTheDerivedClass) {
  class Failing : public Core {
   public:
    nsresult ExtractText(const char*, unsigned int, char**, unsigned int*) override {
      return NS_ERROR_FAILURE;
    }
  };
  Failing detector;
  detector.feed("<p>raw");
  EXPECT_EQ(g_library.pieces, Names({"<p>raw"}));
}

}  // namespace
}  // namespace orva
