#include "lib/detect/screening.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>

namespace orva {

namespace {

constexpr uint8_t kFirst = 0x80;
// A word may come again and again.
constexpr uint16_t kMostAlike = 8;

bool is_small(char c) { return c >= 'a' && c <= 'z'; }
bool is_letter(char c) { return is_small(static_cast<char>(c | 0x20)); }

}  // namespace

void Screening::count(std::string_view text, size_t at) {
  const auto b = static_cast<uint8_t>(static_cast<uint8_t>(text[at]) - kFirst);
  Counts& counts = counts_[b];
  if (counts.alone == kMostAlike) return;
  if (counts.alone++ == 0) present_.push_back(b);
  ++counted_;
  const char last = at > 0 ? text[at - 1] : '\n';
  const char next = at + 1 < text.size() ? text[at + 1] : '\n';
  const unsigned beside = (is_letter(last) ? 1U : 0U) + (is_letter(next) ? 1U : 0U);
  if (beside == 0) return;
  const auto add = [](unsigned more, uint16_t* to) { *to = static_cast<uint16_t>(*to + more); };
  add(beside, &counts.beside);
  add(is_small(last) ? 1 : 0, &counts.within);
  add(beside == 2 ? 1 : 0, &counts.between);
}

void Screening::count_all(const std::vector<std::string_view>& texts) {
  for (const uint8_t b : present_) counts_[b] = {};
  present_.clear();
  counted_ = 0;
  seen_ = 0;
  for (const std::string_view text : texts) {
    for (size_t i = 0; i < text.size(); ++i) {
      if (static_cast<uint8_t>(text[i]) < kFirst) continue;
      if (seen_ == kMostSeen) return;
      ++seen_;
      count(text, i);
    }
  }
}

void Screening::start(const std::vector<std::string_view>& texts, const LetterCosts& costs) {
  costs_ = &costs;
  count_all(texts);
  sums_.resize(costs.width());
  for (size_t k = 0; k < costs.width(); k += LetterCosts::kStep) add_up(k);
}

// Adds up some columns. Two charsets fill a vector, in which each number is multiplied by its count
// and added to the next one; none of them grows beyond its bits.
void Screening::add_up(size_t first) {
  constexpr size_t kVectors = LetterCosts::kStep / 2;
  __m128i sums[kVectors] = {};
  for (const uint8_t b : present_) {
    long long counts;
    memcpy(&counts, &counts_[b], sizeof counts);
    const __m128i times = _mm_set1_epi64x(counts);
    const LetterCost* const costs = costs_->row(static_cast<uint8_t>(kFirst + b)) + first;
#pragma GCC unroll 4
    for (size_t v = 0; v < kVectors; ++v) {
      __m128i two;
      memcpy(&two, costs + 2 * v, sizeof two);
      sums[v] = _mm_add_epi32(sums[v], _mm_madd_epi16(two, times));
    }
  }
#pragma GCC unroll 4
  for (size_t v = 0; v < kVectors; ++v) {
    int32_t parts[4];
    memcpy(parts, &sums[v], sizeof parts);
    sums_[first + 2 * v] = parts[0] + parts[1];
    sums_[first + 2 * v + 1] = parts[2] + parts[3];
  }
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
