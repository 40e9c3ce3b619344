#include "lib/detect/utf8_pricing.h"

#include <algorithm>
#include <string>
#include <utility>

#include "lib/detect/focus.h"
#include "lib/detect/readings.h"
#include "lib/detect/sample.h"
#include "lib/detect/scripts.h"
#include "lib/detect/small_letters.h"

namespace orva {

namespace {

// Bytes of a piece, and how many of them are asked about first.
constexpr size_t kPiece = 64;
constexpr size_t kFirst = 4;

// Feeds every `step`th piece of `text`, from the `first` one on; returns how many bytes.
size_t feed_pieces(std::string_view text, size_t first, size_t step, ListedSums* sums) {
  size_t fed = 0;
  for (size_t from = first * kPiece; from < text.size(); from += step * kPiece) {
    const std::string_view to_its_end = text.substr(0, from + kPiece);
    const size_t context = context_before(text, from);
    sums->add(to_its_end.substr(context));
    fed += to_its_end.size() - from;
  }
  return fed;
}

}  // namespace

Utf8Pricing::Utf8Pricing(const ModelTables& tables)
    : tables_(tables), models_(tables.homes().utf8()), sums_(models_) {}

std::vector<double> Utf8Pricing::costs_so_far() {
  std::vector<double> costs(tables_.languages().size(), kNoCost);
  sums_.take_bytes();
  for (const size_t column : columns_) {
    double& cost = costs[language_of(column)];
    cost = std::min(cost, sums_.total(column));
  }
  return costs;
}

// Whether more of the text would change nothing.
bool Utf8Pricing::is_told(const std::vector<double>& costs, double most) const {
  TwoLeast two;
  for (const double cost : costs) two.add(cost);
  return two.next >= two.least + margin_ || two.least >= most + margin_;
}

std::vector<double> Utf8Pricing::price(std::string_view text, const std::vector<char>& languages,
                                       double most) {
  ScriptCounts scripts;
  const std::string_view small = with_small_letters(main_text(text, &main_), &scripts, &small_);
  const std::string_view plain = normalised(small, &plain_);
  bool can_be[kAnyScript + 1];
  for (int s = 0; s <= kAnyScript; ++s) can_be[s] = scripts.can_be(static_cast<Script>(s));
  const std::vector<Script>& script_of = tables_.homes().scripts();
  columns_.clear();
  for (size_t column = 0; column < models_.nb_models(); ++column) {
    const size_t language = language_of(column);
    const bool allowed = languages.empty() || languages[language] != 0;
    if (allowed && can_be[script_of[language]]) columns_.push_back(column);
  }
  sums_.reset();
  // Pieces this far apart are asked about so far: each time those halfway between them.
  size_t step = 1;
  while (step * kFirst * kPiece < plain.size()) step *= 2;
  size_t fed = feed_pieces(plain, 0, step, &sums_);
  std::vector<double> costs = costs_so_far();
  const auto share = [&] { return static_cast<double>(fed) / static_cast<double>(plain.size()); };
  for (; step > 1 && !is_told(costs, most * share()); step /= 2) {
    fed += feed_pieces(plain, step / 2, step, &sums_);
    costs = costs_so_far();
  }
  if (fed < plain.size()) {
    for (double& cost : costs) cost /= share();
  }
  return costs;
}

}  // namespace orva
