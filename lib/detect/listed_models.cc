#include "lib/detect/listed_models.h"

#include <immintrin.h>

#include <algorithm>
#include <utility>

namespace orva {

namespace {

// What is known to fewer models has no row.
constexpr uint32_t kFewestForRow = 12;

void add_rows_plain(const ListedSums::Rows& rows, size_t count, size_t width,
                    const ListedSums::RowSums& sums) {
  for (size_t r = 0; r < count; ++r) {
    const uint8_t* const marks = rows.costs[r] + width;
    for (size_t k = 0; k < width; ++k) {
      sums.costs[k] += rows.costs[r][k];
      sums.unigrams[k] += marks[k] & rows.unigrams[r][k];
      sums.known[k] += marks[k] & 1U;
    }
  }
}

__attribute__((target("avx2"))) inline __m128i load(const uint8_t* bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

// Adds sixteen numbers to as many of 32 bits.
__attribute__((target("avx2"))) inline void add_to(__m256i numbers, uint32_t* sums) {
  for (const __m128i half :
       {_mm256_castsi256_si128(numbers), _mm256_extracti128_si256(numbers, 1)}) {
    auto* const at = reinterpret_cast<__m256i*>(sums);
    _mm256_storeu_si256(at, _mm256_add_epi32(_mm256_loadu_si256(at), _mm256_cvtepu16_epi32(half)));
    sums += 8;
  }
}

// kSteps times sixteen columns from the `first` one on, whose sums stay in registers. So few rows
// do not overflow.
template <size_t kSteps>
__attribute__((target("avx2"))) void add_steps(const ListedSums::Rows& rows, size_t count,
                                               size_t first, size_t width,
                                               const ListedSums::RowSums& sums) {
  constexpr size_t kStep = ListedModels::kRowStep;
  __m256i costs[kSteps] = {};
  __m256i unigrams[kSteps] = {};
  __m256i known[kSteps] = {};
  for (size_t r = 0; r < count; ++r) {
    const uint8_t* const row = rows.costs[r] + first;
    const uint8_t* const unigram = rows.unigrams[r] + first;
#pragma GCC unroll 2
    for (size_t s = 0; s < kSteps; ++s) {
      // All bits of a lane: -1.
      const __m256i marks = _mm256_cvtepi8_epi16(load(row + width + s * kStep));
      const __m256i unigram_costs = _mm256_cvtepu8_epi16(load(unigram + s * kStep));
      costs[s] = _mm256_add_epi16(costs[s], _mm256_cvtepu8_epi16(load(row + s * kStep)));
      unigrams[s] = _mm256_add_epi16(unigrams[s], _mm256_and_si256(marks, unigram_costs));
      known[s] = _mm256_sub_epi16(known[s], marks);
    }
  }
#pragma GCC unroll 2
  for (size_t s = 0; s < kSteps; ++s) {
    add_to(costs[s], sums.costs + first + s * kStep);
    add_to(unigrams[s], sums.unigrams + first + s * kStep);
    add_to(known[s], sums.known + first + s * kStep);
  }
}

void add_rows_avx2(const ListedSums::Rows& rows, size_t count, size_t width,
                   const ListedSums::RowSums& sums) {
  constexpr size_t kTwo = 2 * ListedModels::kRowStep;
  size_t first = 0;
  for (; first + kTwo <= width; first += kTwo) add_steps<2>(rows, count, first, width, sums);
  if (first < width) add_steps<1>(rows, count, first, width, sums);
}

// Neither half of a number grows into the other, so halves may be multiplied as numbers of their
// own.
__attribute__((always_inline)) inline void add_all_bytes(const uint64_t* unigrams, uint32_t times,
                                                         size_t width, uint64_t* all) {
  using Halves = uint32_t __attribute__((vector_size(32)));
  constexpr size_t kStep = sizeof(Halves) / sizeof(uint64_t);
  for (size_t k = 0; k < width; k += kStep) {
    Halves of_byte;
    Halves sums;
    __builtin_memcpy(&of_byte, unigrams + k, sizeof of_byte);
    __builtin_memcpy(&sums, all + k, sizeof sums);
    sums += of_byte * times;
    __builtin_memcpy(all + k, &sums, sizeof sums);
  }
}

void add_bytes_plain(const uint64_t* unigrams, uint32_t times, size_t width, uint64_t* all) {
  add_all_bytes(unigrams, times, width, all);
}

__attribute__((target("avx2"))) void add_bytes_avx2(const uint64_t* unigrams, uint32_t times,
                                                    size_t width, uint64_t* all) {
  add_all_bytes(unigrams, times, width, all);
}

}  // namespace

ListedSums::Adders ListedSums::plain_adders() { return {add_rows_plain, add_bytes_plain}; }

ListedSums::Adders ListedSums::best_adders() {
  if (__builtin_cpu_supports("avx2") == 0) return plain_adders();
  return {add_rows_avx2, add_bytes_avx2};
}

ListedModels::ListedModels(const ModelTables& tables, std::vector<int> models)
    : tables_(tables),
      models_(std::move(models)),
      width_((models_.size() + kRowStep - 1) / kRowStep * kRowStep),
      folding_(tables.switches()),
      columns_(static_cast<size_t>(tables.nb_indices())),
      unigrams_(kNbBytes * width_, 0),
      row_unigrams_(kNbBytes * width_, 0) {
  std::vector<int> column_of(static_cast<size_t>(tables.nb_models()), -1);
  for (size_t i = 0; i < models_.size(); ++i) {
    column_of[static_cast<size_t>(models_[i])] = static_cast<int>(i);
    columns_[static_cast<size_t>(models_[i])].push_back(static_cast<uint8_t>(i));
    const int fact = info(i).fact;
    if (fact >= 0) columns_[static_cast<size_t>(fact)].push_back(static_cast<uint8_t>(i));
  }
  for (size_t b = 0; b < kNbBytes; ++b) {
    tables.for_each_unigram(static_cast<unsigned char>(b), [&](const UnigramEntry& entry) {
      const int column = column_of[static_cast<size_t>(entry.model)];
      if (column < 0) return;
      unigrams_[b * width_ + static_cast<size_t>(column)] += static_cast<uint64_t>(entry.q) + kOne;
      row_unigrams_[b * width_ + static_cast<size_t>(column)] = static_cast<uint8_t>(entry.q);
    });
  }
}

void ListedModels::set(uint32_t trigram, int index, int q) {
  for (const uint8_t column : columns_[static_cast<size_t>(index)]) {
    if (trigrams_.empty() || trigrams_.back() != trigram) {
      trigrams_.push_back(trigram);
      places_.emplace_back(entries_.size(), uint16_t{0});
    }
    ++places_.back().count;
    entries_.push_back({column, static_cast<uint8_t>(q)});
  }
}

// Whether many models know a trigram, each once, and its last byte too, by one cost.
bool ListedModels::suits_row(const TrigramPlace& place, unsigned char last) const {
  if (place.count < kFewestForRow) return false;
  std::vector<bool> seen(models_.size(), false);
  for (uint32_t i = 0; i < place.count; ++i) {
    const uint8_t column = entries_[place.first() + i].column;
    if (seen[column] || unigrams(last)[column] >> 32 != 1) return false;
    seen[column] = true;
  }
  return true;
}

void ListedModels::make_row(TrigramPlace* place) {
  const size_t from = rows_.size();
  rows_.resize(from + 2 * width_, 0);
  for (uint32_t i = 0; i < place->count; ++i) {
    const Entry& entry = entries_[place->first() + i];
    rows_[from + entry.column] = entry.q;
    rows_[from + width_ + entry.column] = kKnown;
  }
  *place = {from / (2 * width_), TrigramPlace::kRow};
}

void ListedModels::finish() {
  index_ = KnownTrigrams(trigrams_);
  std::vector<Entry> listed;
  for (size_t i = 0; i < places_.size(); ++i) {
    TrigramPlace& place = places_[i];
    if (suits_row(place, static_cast<unsigned char>(trigrams_[i]))) {
      make_row(&place);
      continue;
    }
    const auto begin = entries_.begin() + static_cast<ptrdiff_t>(place.first());
    place = {listed.size(), place.count};
    listed.insert(listed.end(), begin, begin + place.count);
  }
  listed.shrink_to_fit();
  rows_.shrink_to_fit();
  places_.shrink_to_fit();
  entries_ = std::move(listed);
  trigrams_ = {};
  columns_ = {};
}

ListedSums::ListedSums(const ListedModels& models, Adders adders)
    : models_(models),
      adders_(adders),
      known_(models.width()),
      row_costs_(models.width(), 0),
      row_unigrams_(models.width(), 0),
      row_known_(models.width(), 0),
      unigrams_(models.width(), 0),
      totals_(models.nb_models(), 0) {}

void ListedSums::reset() {
  std::fill(known_.begin(), known_.end(), Known());
  for (std::vector<uint32_t>* sums : {&row_costs_, &row_unigrams_, &row_known_}) {
    std::fill(sums->begin(), sums->end(), 0);
  }
  std::fill(unigrams_.begin(), unigrams_.end(), 0);
  std::fill(std::begin(counts_), std::end(counts_), 0);
  scored_ = 0;
}

void ListedSums::add(std::string_view text) {
  walk_trigrams(text, 0, models_.folding(), [this](const unsigned char* bytes, size_t count) {
    Rows rows;
    size_t nb_rows = 0;
    // Looked up before any is looked at, so that look-ups do not wait for what was guessed wrong.
    int numbers[kTrigramsAtOnce];
    KnownTrigrams::Cursor cursor(models_.index(), bytes);
    for (size_t i = 0; i < count; ++i) numbers[i] = cursor.next(bytes[i + 2]);
    for (size_t i = 0; i < count; ++i) {
      const unsigned char last = bytes[i + 2];
      ++counts_[last];
      const int number = numbers[i];
      if (number == KnownTrigrams::kNone) continue;
      const ListedModels::Entries found = models_.entries(number);
      rows.costs[nb_rows] = found.row;
      rows.unigrams[nb_rows] = models_.row_unigrams(last);
      nb_rows += found.row != nullptr ? 1 : 0;
      const uint64_t* const unigrams = models_.unigrams(last);
      for (const auto* entry = found.begin; entry != found.end; ++entry) {
        Known& known = known_[entry->column];
        known.trigrams += entry->q + ListedModels::kOne;
        known.unigrams += unigrams[entry->column];
      }
    }
    if (nb_rows == 0) return;
    adders_.rows(rows, nb_rows, models_.width(),
                 {row_costs_.data(), row_unigrams_.data(), row_known_.data()});
  });
}

void ListedSums::take_bytes() {
  for (unsigned b = 0; b < 256; ++b) {
    if (counts_[b] == 0) continue;
    const uint64_t* const unigrams = models_.unigrams(static_cast<unsigned char>(b));
    adders_.bytes(unigrams, counts_[b], models_.width(), unigrams_.data());
    scored_ += counts_[b];
    counts_[b] = 0;
  }
}

double ListedSums::total(size_t column) const {
  const auto low = [](uint64_t both) { return static_cast<int64_t>(both & 0xFFFFFFFF); };
  const auto high = [](uint64_t both) { return static_cast<int64_t>(both >> 32); };
  const ModelInfo& info = models_.info(column);
  const Known& known = known_[column];
  const int64_t in_rows = row_known_[column];
  const int64_t sum = low(known.trigrams) + row_costs_[column];
  const int64_t count = high(known.trigrams) + in_rows;
  const int64_t by_byte = high(unigrams_[column]) - high(known.unigrams) - in_rows;
  const int64_t by_byte_sum = low(unigrams_[column]) - low(known.unigrams) - row_unigrams_[column];
  const int64_t unseen = static_cast<int64_t>(scored_) - count - by_byte;
  return static_cast<double>(sum) * info.step + static_cast<double>(count) * info.least +
         static_cast<double>(by_byte_sum) * info.unigram_step +
         static_cast<double>(by_byte) * info.unigram_least +
         kUnseenCost * static_cast<double>(unseen);
}

const std::vector<double>& ListedSums::totals() {
  take_bytes();
  for (size_t i = 0; i < totals_.size(); ++i) totals_[i] = total(i);
  return totals_;
}

}  // namespace orva
