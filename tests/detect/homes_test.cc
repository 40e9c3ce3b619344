// Costs by rows against the sums of the automaton's values, and readings that give up against all
// of them asked to the end.
#include "lib/detect/homes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lib/detect/builtin_models.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/focus.h"
#include "lib/detect/trials.h"
#include "tests/reference/scorer.h"

namespace orva {
namespace {

constexpr char kGerman[] =
    "Am Morgen gingen wir zum Fluß, um Fische zu fangen, aber das Wasser war so kühl, daß niemand "
    "länger als nötig blieb. Später aßen wir Brötchen, tranken süßen Tee und hörten den Vögeln zu.";

const std::vector<const char*> kReadings = {"windows-1252", "IBM850", "macintosh", "KOI8-R",
                                            "windows-1251"};

std::string in(const char* charset, const std::string& text) {
  Conversion out;
  EXPECT_EQ(encode_text(*find_charset(charset), text, &out), kConverted) << charset;
  return out.bytes;
}

std::string random_bytes(size_t size) {
  std::mt19937 random(3);
  std::string bytes;
  while (bytes.size() < size) bytes.push_back(static_cast<char>(random() & 0xFF));
  return bytes;
}

class HomesTest : public testing::Test {
 protected:
  void SetUp() override {
    tables_ = builtin_models();
    if (tables_ == nullptr) GTEST_SKIP() << "no models are built in";
  }

  // Costs of `text` in all homes are those that the scorer finds.
  void expect_twin(const std::string& text) {
    Scorer scorer(*tables_);
    scorer.feed(text);
    const std::vector<double> totals = scorer.totals();
    const double most_off = 0.001 * static_cast<double>(text.size());
    for (const Home& home : tables_->homes().all()) {
      CostSums sums(home.models);
      sums.add(text, 0);
      for (size_t i = 0; i < home.languages.size(); ++i) {
        EXPECT_NEAR(sums.total(i), totals[model_of(home, i)], most_off) << home.charset;
      }
    }
  }

  size_t model_of(const Home& home, size_t i) const {
    for (int m = 0; m < tables_->nb_models(); ++m) {
      const ModelInfo& info = tables_->model(m);
      if (info.charset == home.charset && static_cast<size_t>(info.language) == home.languages[i]) {
        return static_cast<size_t>(m);
      }
    }
    ADD_FAILURE() << "a home without a model";
    return 0;
  }

  // The costs of one reading, all readings asked until they are so many nats behind.
  std::vector<std::vector<double>> costs(const std::string& bytes, double margin,
                                         const std::vector<const char*>& names = kReadings,
                                         double told = kNoCost) {
    const TrialText text(normalised(bytes));
    const std::vector<double> base(tables_->languages().size(), 0);
    const PossibleLanguages possible = tables_->homes().possible(kAllScripts, {});
    std::vector<Reading> readings;
    for (const char* name : names) {
      Reading reading;
      reading.charsets = {find_charset_index(name)};
      reading.table = single_byte_table(reading.charsets.front());
      reading.costs.assign(base.size(), kNoCost);
      reading.possible = &possible;
      reading.language_extra = &base;
      readings.push_back(reading);
    }
    Trials trials(tables_->homes());
    trials.start(&text, &base, &base);
    trials.set_margin(margin);
    trials.set_told(told);
    for (Reading& reading : readings) trials.add(&reading);
    trials.run();
    std::vector<std::vector<double>> all;
    for (const Reading& reading : readings) all.push_back(reading.costs);
    return all;
  }

  std::shared_ptr<const ModelTables> tables_;
};

double least(const std::vector<double>& costs) {
  return *std::min_element(costs.begin(), costs.end());
}

TEST_F(HomesTest, EveryLanguageOfTheModelsHasOneHome) {
  std::vector<int> homes(tables_->languages().size(), 0);
  for (const Home& home : tables_->homes().all()) {
    for (const size_t l : home.languages) ++homes[l];
  }
  for (size_t l = 0; l < homes.size(); ++l) EXPECT_EQ(homes[l], 1) << tables_->languages()[l];
}

TEST_F(HomesTest, RowsCostWhatTheAutomatonsValuesDo) {
  expect_twin(in("windows-1252", kGerman));
  expect_twin(kGerman);  // as UTF-8
  expect_twin("AAAAAAAAaaaa  12 bb\xC4\xC4\xC4\xC4\xC4");
  expect_twin(random_bytes(20000));
  expect_twin("");
  expect_twin("ab");
}

// Sums of lists are those of the scorer, bit for bit.
TEST_F(HomesTest, ListsCostWhatTheAutomatonsValuesDo) {
  const std::string texts[] = {kGerman,
                               "AAAAAAAAaaaa  12 bb\xC4\xC4\xC4\xC4\xC4",
                               random_bytes(20000),
                               in("Shift_JIS", "今朝は川へ魚を釣りに行きました"),
                               "",
                               "ab"};
  const Homes& homes = tables_->homes();
  for (const ListedModels* models : {&homes.utf8(), &homes.pairs()}) {
    ListedSums sums(*models);
    for (const std::string& text : texts) {
      Scorer scorer(*tables_);
      scorer.feed(text);
      const std::vector<double> totals = scorer.totals();
      sums.reset();
      sums.add(text);
      for (size_t i = 0; i < models->nb_models(); ++i) {
        EXPECT_EQ(sums.totals()[i], totals[static_cast<size_t>(models->models()[i])]) << text;
      }
    }
  }
}

TEST_F(HomesTest, TextsOneAfterTheOtherAddUp) {
  ListedSums apart(tables_->homes().utf8());
  apart.add("the river");
  apart.totals();
  apart.add("was cold");
  ListedSums first(tables_->homes().utf8());
  first.add("the river");
  ListedSums second(tables_->homes().utf8());
  second.add("was cold");
  EXPECT_NEAR(apart.totals()[0], first.totals()[0] + second.totals()[0], 1e-9);
}

TEST_F(HomesTest, ReadingsThatWriteAlikeCostWhatEachDoesAlone) {
  const double never = std::numeric_limits<double>::infinity();
  const std::string bytes = in("windows-1252", kGerman);
  const std::vector<const char*> names = {"windows-1252", "ISO-8859-15", "ISO-8859-2", "IBM850"};
  const auto together = costs(bytes, never, names);
  for (size_t r = 0; r < names.size(); ++r) {
    EXPECT_EQ(costs(bytes, never, {names[r]}).front(), together[r]) << names[r];
  }
}

TEST_F(HomesTest, TrialsMayBeginAgain) {
  const std::string bytes = in("windows-1252", kGerman);
  EXPECT_EQ(costs(bytes, 60), costs(bytes, 60));
}

TEST_F(HomesTest, AsciiIsCountedAlone) {
  const Homes& homes = tables_->homes();
  const auto ascii_cost = [&homes](const std::string& text, size_t column) {
    CostSums sums(homes.ascii());
    sums.add(text, 0);
    return sums.total(column);
  };
  const std::string text = "In the morning we went down to the river to fish, but it was cold.";
  Scorer scorer(*tables_);
  scorer.feed(text);
  const std::vector<double> totals = scorer.totals();
  for (const Home& home : homes.all()) {
    for (size_t i = 0; i < home.languages.size(); ++i) {
      const auto at =
          std::find(homes.languages().begin(), homes.languages().end(), home.languages[i]);
      const auto column = static_cast<size_t>(at - homes.languages().begin());
      EXPECT_NEAR(ascii_cost(text, column), totals[model_of(home, i)], 0.1);
      EXPECT_DOUBLE_EQ(ascii_cost("the\xE4"
                                  "and",
                                  column),
                       ascii_cost("the", column) + ascii_cost("and", column));
    }
  }
}

TEST_F(HomesTest, VectorsAddUpWhatPlainLoopsDo) {
  const std::string texts[] = {kGerman, in("windows-1252", kGerman), random_bytes(5000)};
  const Homes& homes = tables_->homes();
  for (const std::string& text : texts) {
    for (const ListedModels* models : {&homes.utf8(), &homes.pairs()}) {
      ListedSums plain(*models, ListedSums::plain_adders());
      ListedSums best(*models, ListedSums::best_adders());
      plain.add(text);
      best.add(text);
      EXPECT_EQ(plain.totals(), best.totals());
    }
  }
}

TEST_F(HomesTest, ManyBytesDoNotOverflow) {
  std::string varied;
  for (size_t i = 0; i < 300000; ++i) varied += (i % 2) != 0 ? '\x81' : '\x8D';
  const Home& home = tables_->homes().all().front();
  CostSums once(home.models);
  once.add(varied.substr(0, 3002), 0);
  CostSums often(home.models);
  often.add(varied.substr(0, 300002), 0);
  EXPECT_NEAR(often.total(0) / once.total(0), 299998.0 / 3000, 0.01);
}

TEST_F(HomesTest, PiecesCostAsMuchAsTheWhole) {
  const std::string bytes = in("windows-1252", kGerman);
  const TrialText text(normalised(bytes));
  size_t length = 0;
  for (const std::string_view segment : text.segments) length += segment.size();
  EXPECT_EQ(text.length, length);
  EXPECT_GT(text.pieces.size(), text.segments.size() / 2);
}

TEST_F(HomesTest, OneLanguageAheadIsAskedAboutNoMore) {
  std::string german;
  for (int i = 0; i < 40; ++i) german += kGerman;
  const std::string bytes = in("windows-1252", german);
  const std::vector<const char*> names = {"windows-1252", "KOI8-R"};
  const std::vector<double> all = costs(bytes, 60, names).front();
  const std::vector<double> told = costs(bytes, 60, names, 80).front();
  EXPECT_NE(least(told), least(all));
  EXPECT_NEAR(least(told) / least(all), 1, 0.2);
  EXPECT_EQ(std::min_element(told.begin(), told.end()) - told.begin(),
            std::min_element(all.begin(), all.end()) - all.begin());
}

TEST_F(HomesTest, ReadingsFarBehindARivalGiveUp) {
  const TrialText text(normalised(in("windows-1252", kGerman)));
  const std::vector<double> base(tables_->languages().size(), 0);
  const PossibleLanguages possible = tables_->homes().possible(kAllScripts, {});
  const auto cost_beside = [&](double rival) {
    Reading reading;
    reading.charsets = {find_charset_index("windows-1251")};
    reading.table = single_byte_table(reading.charsets.front());
    reading.costs.assign(base.size(), kNoCost);
    reading.possible = &possible;
    reading.language_extra = &base;
    Trials trials(tables_->homes());
    trials.start(&text, &base, &base);
    trials.set_rival(rival);
    trials.add(&reading);
    trials.run();
    return least(reading.costs);
  };
  // Of what a few bytes cost the rest is guessed.
  EXPECT_EQ(cost_beside(1e6), cost_beside(kNoCost));
  EXPECT_NE(cost_beside(1), cost_beside(kNoCost));
  EXPECT_GT(cost_beside(1), 100);
}

TEST_F(HomesTest, GivingUpDoesNotChangeTheBest) {
  std::string german;
  std::string russian;
  for (int i = 0; i < 20; ++i) {
    german += kGerman;
    russian += "Утром мы пошли на реку ловить рыбу, но вода была очень холодной. ";
  }
  const double never = std::numeric_limits<double>::infinity();
  const std::string texts[] = {in("windows-1252", german), in("IBM850", german),
                               in("macintosh", german), in("KOI8-R", russian),
                               in("windows-1251", russian)};
  const size_t best[] = {0, 1, 2, 3, 4};
  for (size_t t = 0; t < std::size(texts); ++t) {
    const auto quick = costs(texts[t], 60);
    const auto full = costs(texts[t], never);
    for (size_t r = 0; r < full.size(); ++r) {
      if (r == best[t]) {
        EXPECT_DOUBLE_EQ(least(quick[r]), least(full[r]));
      } else {
        EXPECT_GT(least(quick[r]), least(quick[best[t]]) + 60) << t << " " << r;
      }
    }
  }
}

}  // namespace
}  // namespace orva
