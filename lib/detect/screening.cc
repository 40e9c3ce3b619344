#include "lib/detect/screening.h"

#include <immintrin.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace orva {

namespace {

constexpr uint8_t kFirst = 0x80;
// A word may come again and again.
constexpr uint16_t kMostAlike = 8;

bool is_small(char c) { return c >= 'a' && c <= 'z'; }
bool is_letter(char c) { return is_small(static_cast<char>(c | 0x20)); }

void add_plain(const LetterCosts& costs, const Screening::Counts* counts,
               const std::vector<uint8_t>& present, int32_t* sums) {
  std::fill_n(sums, costs.width(), 0);
  for (const uint8_t b : present) {
    const LetterCost* const row = costs.row(static_cast<uint8_t>(kFirst + b));
    const Screening::Counts& n = counts[b];
    for (size_t k = 0; k < costs.width(); ++k) {
      sums[k] += n.alone * row[k].alone + n.within * row[k].within + n.beside * row[k].beside +
                 n.between * row[k].between;
    }
  }
}

// Four charsets fill a vector, in which each number is multiplied by its count and added to the
// next one; none of them grows beyond its bits.
__attribute__((target("avx2"))) void add_avx2(const LetterCosts& costs,
                                              const Screening::Counts* counts,
                                              const std::vector<uint8_t>& present, int32_t* sums) {
  constexpr size_t kVectors = LetterCosts::kStep / 4;
  for (size_t first = 0; first < costs.width(); first += LetterCosts::kStep) {
    __m256i all[kVectors] = {};
    for (const uint8_t b : present) {
      long long packed;
      memcpy(&packed, &counts[b], sizeof packed);
      const __m256i times = _mm256_set1_epi64x(packed);
      const LetterCost* const row = costs.row(static_cast<uint8_t>(kFirst + b)) + first;
#pragma GCC unroll 6
      for (size_t v = 0; v < kVectors; ++v) {
        __m256i four;
        memcpy(&four, row + 4 * v, sizeof four);
        all[v] = _mm256_add_epi32(all[v], _mm256_madd_epi16(four, times));
      }
    }
#pragma GCC unroll 6
    for (size_t v = 0; v < kVectors; ++v) {
      int32_t parts[8];
      memcpy(parts, &all[v], sizeof parts);
      for (size_t k = 0; k < 4; ++k) sums[first + 4 * v + k] = parts[2 * k] + parts[2 * k + 1];
    }
  }
}

}  // namespace

Screening::Adder Screening::plain_adder() { return add_plain; }

Screening::Adder Screening::best_adder() {
  return __builtin_cpu_supports("avx2") != 0 ? add_avx2 : add_plain;
}

void Screening::count(std::string_view text, size_t at) {
  const auto b = static_cast<uint8_t>(static_cast<uint8_t>(text[at]) - kFirst);
  Counts& counts = counts_[b];
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
  // All of them: memory may have run out before the last ones were listed.
  std::fill(std::begin(counts_), std::end(counts_), Counts());
  present_.clear();
  counted_ = 0;
  seen_ = 0;
  for (const std::string_view text : texts) {
    for (size_t i = 0; i < text.size(); ++i) {
      const auto byte = static_cast<uint8_t>(text[i]);
      if (byte < kFirst) continue;
      if (seen_ == kMostSeen) return;
      ++seen_;
      if (counts_[byte - kFirst].alone < kMostAlike) count(text, i);
    }
  }
}

void Screening::start(const std::vector<std::string_view>& texts, const LetterCosts& costs) {
  costs_ = &costs;
  count_all(texts);
  sums_.resize(costs.width());
  adder_(costs, counts_, present_, sums_.data());
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
