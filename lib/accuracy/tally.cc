#include "lib/accuracy/tally.h"

#include <algorithm>
#include <cmath>

namespace orva {

namespace {

void count(const Outcome& outcome, Counts* counts) {
  ++counts->documents;
  if (outcome.judgement.same_text) ++counts->same_text;
  if (outcome.judgement.same_name) ++counts->same_name;
  if (outcome.language.empty()) return;
  ++counts->with_language;
  if (outcome.language == outcome.answered_language) ++counts->right_language;
}

std::vector<std::pair<std::string, Counts>> largest_first(
    const std::map<std::string, Counts>& counts) {
  std::vector<std::pair<std::string, Counts>> rows(counts.begin(), counts.end());
  std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) {
    return a.second.documents > b.second.documents;
  });
  return rows;
}

std::vector<Confusion> commonest_first(
    const std::map<std::pair<std::string, std::string>, uint64_t>& counts) {
  std::vector<Confusion> rows;
  for (const auto& [names, documents] : counts) {
    rows.push_back({names.first, names.second, documents});
  }
  std::stable_sort(rows.begin(), rows.end(), [](const Confusion& a, const Confusion& b) {
    return a.documents > b.documents;
  });
  return rows;
}

}  // namespace

void Tally::add(const Outcome& outcome) {
  count(outcome, &all_);
  count(outcome, &charsets_[outcome.charset]);
  if (!outcome.language.empty()) count(outcome, &languages_[outcome.language]);
  if (!outcome.judgement.same_text) {
    ++charset_confusions_[{outcome.charset, outcome.answered_charset}];
  }
  if (!outcome.language.empty() && outcome.language != outcome.answered_language) {
    ++language_confusions_[{outcome.language, outcome.answered_language}];
  }
  if (outcome.answered_charset.empty()) {
    ++unanswered_;
    return;
  }
  const double scaled = outcome.probability * static_cast<double>(kBins);
  const double last = static_cast<double>(kBins - 1);
  Bin& bin = bins_[static_cast<size_t>(std::clamp(scaled, 0.0, last))];
  ++bin.answers;
  bin.probabilities += outcome.probability;
  if (outcome.judgement.same_text) ++bin.right;
}

std::vector<std::pair<std::string, Counts>> Tally::by_charset() const {
  return largest_first(charsets_);
}

std::vector<std::pair<std::string, Counts>> Tally::by_language() const {
  return largest_first(languages_);
}

std::vector<Confusion> Tally::charset_confusions() const {
  return commonest_first(charset_confusions_);
}

std::vector<Confusion> Tally::language_confusions() const {
  return commonest_first(language_confusions_);
}

double Tally::calibration_error() const {
  double distance = 0;
  uint64_t answers = 0;
  for (const Bin& bin : bins_) {
    distance += std::abs(bin.probabilities - static_cast<double>(bin.right));
    answers += bin.answers;
  }
  return answers == 0 ? 0 : distance / static_cast<double>(answers);
}

}  // namespace orva
