#include "lib/detect/piece_costs.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>

namespace orva {

namespace {

// Texts that differ have other ones, as a rule.
uint64_t print_of(const LetterCode* codes, size_t size) {
  constexpr size_t kAtOnce = sizeof(uint64_t) / sizeof(LetterCode);
  uint64_t print = size;
  const auto mix = [&print](uint64_t word) {
    print = (print ^ word) * 0x9E3779B97F4A7C15U;
    print ^= print >> 29;
  };
  size_t i = 0;
  for (; i + kAtOnce <= size; i += kAtOnce) {
    uint64_t word;
    memcpy(&word, codes + i, sizeof word);
    mix(word);
  }
  for (; i < size; ++i) mix(codes[i]);
  return print;
}

// REQUIRES: an even number of them.
void to_doubles(const uint32_t* numbers, size_t count, double* to) {
  // A number in the lower half of a double with this upper half is that much more than 2 to the
  // 52nd.
  const __m128i upper = _mm_set1_epi32(0x43300000);
  const __m128d less = _mm_set1_pd(4503599627370496.0);
  for (size_t k = 0; k < count; k += 2) {
    const __m128i two = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(numbers + k));
    _mm_storeu_pd(to + k, _mm_sub_pd(_mm_castsi128_pd(_mm_unpacklo_epi32(two, upper)), less));
  }
}

// Grown, but not made smaller, so that it is filled with zeros once.
template <typename T>
void reserve(size_t size, std::vector<T>* all) {
  if (all->size() < size) all->resize(size + size / 2);
}

}  // namespace

void PieceCosts::start(const std::vector<Home>& homes) {
  homes_ = &homes;
  used_ = 0;
  texts_.clear();
  parts_.clear();
  places_.clear();
  nb_sums_ = 0;
}

LetterCode* PieceCosts::room(size_t size) {
  reserve(used_ + size, &codes_);
  return codes_.data() + used_;
}

bool PieceCosts::is_same(const Text& text, const LetterCode* codes, size_t size,
                         const std::vector<Part>& parts) const {
  if (text.size != size || text.nb_parts != parts.size()) return false;
  const auto first = parts_.begin() + static_cast<ptrdiff_t>(text.first_part);
  return memcmp(&codes_[text.first], codes, size * sizeof(LetterCode)) == 0 &&
         std::equal(parts.begin(), parts.end(), first);
}

size_t PieceCosts::add(const LetterCode* end, const std::vector<Part>& parts) {
  const LetterCode* const begin = codes_.data() + used_;
  const auto size = static_cast<size_t>(end - begin);
  const Text text = {print_of(begin, size), used_, size, parts_.size(), parts.size()};
  for (size_t t = 0; t < texts_.size(); ++t) {
    if (texts_[t].print == text.print && is_same(texts_[t], begin, size, parts)) return t;
  }
  used_ += size;
  texts_.push_back(text);
  parts_.insert(parts_.end(), parts.begin(), parts.end());
  places_.resize(places_.size() + homes_->size(), kNowhere);
  return texts_.size() - 1;
}

void PieceCosts::want(size_t text, size_t home) {
  size_t& place = places_[text * homes_->size() + home];
  if (place != kNowhere) return;
  place = nb_sums_;
  nb_sums_ += (*homes_)[home].nb_columns();
}

void PieceCosts::ask() {
  const std::vector<Home>& homes = *homes_;
  reserve(nb_sums_, &sums_);
  for (size_t h = 0; h < homes.size(); ++h) {
    for (size_t t = 0; t < texts_.size(); ++t) {
      const size_t place = places_[t * homes.size() + h];
      if (place != kNowhere) ask(homes[h], texts_[t], sums_.data() + place);
    }
  }
}

void PieceCosts::ask(const Home& home, const Text& text, double* sums) {
  const LetterCode* const codes = codes_.data() + text.first;
  reserve(text.size * LetterForm::kLongest + HomeForms::kSlack, &folded_);
  const size_t width = home.models.width();
  reserve(width, &now_);
  std::fill_n(now_.begin(), width, 0);
  for (size_t p = text.first_part; p < text.first_part + text.nb_parts; ++p) {
    const Part& part = parts_[p];
    const size_t size =
        home.forms.fold(codes + part.begin, codes + part.from, codes + part.end, folded_.data());
    if (size > 2) home.models.add_costs(folded_.data(), size - 2, now_.data());
  }
  to_doubles(now_.data(), home.nb_columns(), sums);
}

}  // namespace orva
