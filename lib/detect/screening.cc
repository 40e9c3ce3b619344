#include "lib/detect/screening.h"

#include <algorithm>

namespace orva {

namespace {

constexpr uint8_t kFirst = 0x80;
// A word may come again and again.
constexpr uint32_t kMostAlike = 8;

bool is_small(char c) { return c >= 'a' && c <= 'z'; }
bool is_letter(char c) { return is_small(static_cast<char>(c | 0x20)); }

}  // namespace

void Screening::count(const std::string& text, size_t at) {
  const auto b = static_cast<uint8_t>(static_cast<uint8_t>(text[at]) - kFirst);
  Counts& counts = counts_[b];
  ++seen_;
  if (counts.all++ == 0) present_.push_back(b);
  if (counts.all > kMostAlike) return;
  ++counted_;
  const char last = at > 0 ? text[at - 1] : '\n';
  const char next = at + 1 < text.size() ? text[at + 1] : '\n';
  const uint32_t beside = (is_letter(last) ? 1U : 0U) + (is_letter(next) ? 1U : 0U);
  if (beside == 0) return;
  if (counts.beside == 0) near_ascii_.push_back(b);
  counts.beside += beside;
  counts.within += is_small(last) ? 1 : 0;
  counts.between += beside == 2 ? 1 : 0;
}

void Screening::start(const std::vector<std::string>& texts) {
  for (const uint8_t b : present_) counts_[b] = {};
  present_.clear();
  near_ascii_.clear();
  counted_ = 0;
  seen_ = 0;
  for (const std::string& text : texts) {
    for (size_t i = 0; i < text.size(); ++i) {
      if (static_cast<uint8_t>(text[i]) < kFirst) continue;
      if (seen_ == kMostSeen) return;
      count(text, i);
    }
  }
}

double Screening::cost(const LetterCost* costs) const {
  uint32_t sum = 0;
  for (const uint8_t b : present_) sum += std::min(counts_[b].all, kMostAlike) * costs[b].alone;
  for (const uint8_t b : near_ascii_) {
    sum += counts_[b].within * costs[b].within + counts_[b].beside * costs[b].beside +
           counts_[b].between * costs[b].between;
  }
  return sum * LetterCost::kUnit;
}

double Screening::margin() const {
  constexpr double kLeast = 30;
  constexpr double kPerByte = 0.75;
  constexpr double kLeastOfFew = 16;
  constexpr double kPerByteOfFew = 2;
  const auto counted = static_cast<double>(counted_);
  return std::min(kLeast + kPerByte * counted, kLeastOfFew + kPerByteOfFew * counted);
}

}  // namespace orva
