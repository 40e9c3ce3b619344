#include "lib/detect/listed_models.h"

#include <algorithm>
#include <utility>

namespace orva {

namespace {

// What is known to fewer models has no row.
constexpr uint32_t kFewestForRow = 12;

__attribute__((always_inline)) inline void add_all_rows(const uint8_t* const* rows,
                                                        const uint8_t* const* by_byte, size_t count,
                                                        size_t width, ListedSums::Known* all) {
  constexpr size_t kStep = ListedModels::kRowStep;
  for (size_t k = 0; k < width; k += kStep) {
    // So few rows do not overflow. Loops of fixed length become vector operations.
    uint16_t costs[kStep] = {};
    uint16_t unigrams[kStep] = {};
    uint8_t known[kStep] = {};
    for (size_t r = 0; r < count; ++r) {
      const uint8_t* const row = rows[r] + k;
      const uint8_t* const marks = row + width;
      const uint8_t* const unigram = by_byte[r] + k;
      for (size_t j = 0; j < kStep; ++j) costs[j] = static_cast<uint16_t>(costs[j] + row[j]);
      for (size_t j = 0; j < kStep; ++j) {
        unigrams[j] = static_cast<uint16_t>(unigrams[j] + (marks[j] & unigram[j]));
      }
      for (size_t j = 0; j < kStep; ++j) known[j] = static_cast<uint8_t>(known[j] - marks[j]);
    }
    for (size_t j = 0; j < kStep; ++j) {
      const uint64_t times = known[j] * ListedModels::kOne;
      all[k + j].trigrams += costs[j] + times;
      all[k + j].unigrams += unigrams[j] + times;
    }
  }
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

void add_rows_plain(const uint8_t* const* rows, const uint8_t* const* by_byte, size_t count,
                    size_t width, ListedSums::Known* all) {
  add_all_rows(rows, by_byte, count, width, all);
}

void add_bytes_plain(const uint64_t* unigrams, uint32_t times, size_t width, uint64_t* all) {
  add_all_bytes(unigrams, times, width, all);
}

__attribute__((target("avx2"))) void add_rows_avx2(const uint8_t* const* rows,
                                                   const uint8_t* const* by_byte, size_t count,
                                                   size_t width, ListedSums::Known* all) {
  add_all_rows(rows, by_byte, count, width, all);
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

void ListedModels::find_entries(const unsigned char* bytes, size_t count, Entries* found) const {
  index_.find_all(bytes, count, [&](size_t i, int known) {
    found[i] = {};
    if (known == KnownTrigrams::kNone) return;
    const TrigramPlace& place = places_[static_cast<size_t>(known)];
    if (place.count == TrigramPlace::kRow) {
      found[i].row = rows_.data() + place.first() * 2 * width_;
    } else {
      found[i].begin = entries_.data() + place.first();
      found[i].end = found[i].begin + place.count;
    }
  });
}

ListedSums::ListedSums(const ListedModels& models, Adders adders)
    : models_(models),
      adders_(adders),
      known_(models.width()),
      unigrams_(models.width(), 0),
      totals_(models.nb_models(), 0) {}

void ListedSums::reset() {
  std::fill(known_.begin(), known_.end(), Known());
  std::fill(unigrams_.begin(), unigrams_.end(), 0);
  std::fill(std::begin(counts_), std::end(counts_), 0);
  scored_ = 0;
}

void ListedSums::add(std::string_view text) {
  walk_trigrams(text, 0, models_.folding(), [this](const unsigned char* bytes, size_t count) {
    ListedModels::Entries found[kTrigramsAtOnce];
    models_.find_entries(bytes, count, found);
    const uint8_t* rows[kTrigramsAtOnce];
    unsigned char lasts[kTrigramsAtOnce];
    size_t nb_rows = 0;
    for (size_t i = 0; i < count; ++i) {
      const unsigned char last = bytes[i + 2];
      ++counts_[last];
      rows[nb_rows] = found[i].row;
      lasts[nb_rows] = last;
      nb_rows += found[i].row != nullptr ? 1 : 0;
      const uint64_t* const unigrams = models_.unigrams(last);
      for (const auto* entry = found[i].begin; entry != found[i].end; ++entry) {
        Known& known = known_[entry->column];
        known.trigrams += entry->q + ListedModels::kOne;
        known.unigrams += unigrams[entry->column];
      }
    }
    add_rows(rows, lasts, nb_rows);
  });
}

void ListedSums::add_rows(const uint8_t* const* rows, const unsigned char* lasts, size_t count) {
  if (count == 0) return;
  const uint8_t* by_byte[kTrigramsAtOnce];
  for (size_t r = 0; r < count; ++r) by_byte[r] = models_.row_unigrams(lasts[r]);
  adders_.rows(rows, by_byte, count, models_.width(), known_.data());
}

void ListedSums::add_unigrams() {
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
  const int64_t count = high(known.trigrams);
  const int64_t by_byte = high(unigrams_[column]) - high(known.unigrams);
  const int64_t by_byte_sum = low(unigrams_[column]) - low(known.unigrams);
  const int64_t unseen = static_cast<int64_t>(scored_) - count - by_byte;
  return static_cast<double>(low(known.trigrams)) * info.step +
         static_cast<double>(count) * info.least +
         static_cast<double>(by_byte_sum) * info.unigram_step +
         static_cast<double>(by_byte) * info.unigram_least +
         kUnseenCost * static_cast<double>(unseen);
}

const std::vector<double>& ListedSums::totals() {
  add_unigrams();
  for (size_t i = 0; i < totals_.size(); ++i) totals_[i] = total(i);
  return totals_;
}

}  // namespace orva
