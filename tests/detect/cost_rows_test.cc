// What trigrams cost in rows, against a look-up of each.
#include "lib/detect/cost_rows.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace orva {
namespace {

// Trigrams of few letters, of which every other one is known: by a row, or by entries.
class CostRowsTest : public testing::TestWithParam<size_t> {
 protected:
  CostRowsTest() : random_(7) {
    for (uint32_t a = 'a'; a < 'i'; ++a) {
      for (uint32_t b = 'a'; b < 'i'; ++b) {
        for (uint32_t c = 'a'; c < 'i'; ++c) {
          if (random_() % 2 == 0) trigrams_.push_back(a << 16 | b << 8 | c);
        }
      }
    }
    index_ = KnownTrigrams(trigrams_);
    for (size_t i = 0; i < 256 * width(); ++i) rows_.push_back(any_cost());
    for (size_t t = 0; t < trigrams_.size(); ++t) add_place();
    for (int i = 0; i < 500; ++i) text_.push_back(static_cast<unsigned char>('a' + random_() % 9));
  }

  static size_t width() { return GetParam(); }
  uint16_t any_cost() { return static_cast<uint16_t>(random_() >> 4); }

  void add_place() {
    if (random_() % 2 == 0) {
      places_.emplace_back(rows_.size() / width(), TrigramPlace::kRow);
      for (size_t k = 0; k < width(); ++k) rows_.push_back(any_cost());
      return;
    }
    const auto count = static_cast<uint16_t>(random_() % 4);
    places_.emplace_back(entries_.size(), count);
    for (uint16_t i = 0; i < count; ++i) entries_.push_back({i, any_cost()});
  }

  std::vector<uint32_t> expected(size_t count, bool listed) const {
    std::vector<uint32_t> sums(width(), 3);
    for (size_t i = 0; i < count; ++i) {
      const unsigned char last = text_[i + 2];
      const int known = index_.find(text_[i], text_[i + 1], last);
      const bool has_row = known >= 0 && (!listed || places_[static_cast<size_t>(known)].count ==
                                                         TrigramPlace::kRow);
      const size_t own = known < 0 ? 0
                         : listed  ? places_[static_cast<size_t>(known)].first()
                                   : 256 + static_cast<size_t>(known);
      std::vector<uint32_t> costs;
      for (size_t k = 0; k < width(); ++k) {
        costs.push_back(rows_[(has_row ? own : last) * width() + k]);
      }
      for (size_t e = 0; known >= 0 && !has_row && e < places_[static_cast<size_t>(known)].count;
           ++e) {
        costs[entries_[own + e].column] = entries_[own + e].cost;
      }
      for (size_t k = 0; k < width(); ++k) sums[k] += costs[k];
    }
    return sums;
  }

  void expect_all(const CostAdders& adders) {
    // Rows of all trigrams, as many as there are.
    std::vector<uint16_t> rows = rows_;
    rows_.resize((256 + trigrams_.size()) * width(), 9);
    for (const size_t count : {size_t{0}, size_t{1}, size_t{63}, size_t{64}, size_t{498}}) {
      std::vector<uint32_t> sums(width(), 3);
      adders.all({index_, rows_.data(), width()}, text_.data(), count, sums.data());
      EXPECT_EQ(sums, expected(count, false)) << count;
      sums.assign(width(), 3);
      adders.listed({index_, rows_.data(), width(), places_.data(), entries_.data()}, text_.data(),
                    count, sums.data());
      EXPECT_EQ(sums, expected(count, true)) << count;
    }
    rows_ = rows;
  }

  std::mt19937 random_;
  std::vector<uint32_t> trigrams_;
  KnownTrigrams index_;
  std::vector<uint16_t> rows_;
  std::vector<TrigramPlace> places_;
  std::vector<CostEntry> entries_;
  std::vector<unsigned char> text_;
};

TEST_P(CostRowsTest, PlainLoopsAddUpWhatEachTrigramCosts) { expect_all(plain_cost_adders()); }

TEST_P(CostRowsTest, VectorsAddUpWhatEachTrigramCosts) { expect_all(best_cost_adders()); }

INSTANTIATE_TEST_SUITE_P(Widths, CostRowsTest, testing::Values(8, 16, 24, 32, 64));

}  // namespace
}  // namespace orva
