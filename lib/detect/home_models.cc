#include "lib/detect/home_models.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "lib/detect/byte_blocks.h"

namespace orva {

namespace {

constexpr size_t kRowStep = 8;      // a row fills whole vectors of 16 bytes
constexpr size_t kNarrow = 16;      // rows no wider than that are all there
constexpr size_t kWidthPerFew = 6;  // where fewer columns know a trigram, it has no row
constexpr size_t kUnscored = 0x80;  // a byte that costs nothing where ASCII alone is scored
constexpr double kMostUnits = 65535;
constexpr int kMostQuantised = 255;

double byte_cost(const ModelInfo& info, int q) {
  return q * info.unigram_step + info.unigram_least;
}

double trigram_cost(const ModelInfo& info, int q) { return q * info.step + info.least; }

template <size_t kColumns>
__attribute__((always_inline)) inline void add_columns(const uint16_t* const* rows, size_t count,
                                                       size_t k, uint32_t* all) {
  // Loops of fixed length become vector additions.
  uint32_t sums[kColumns] = {};
  for (size_t r = 0; r < count; ++r) {
    const uint16_t* const row = rows[r] + k;
    for (size_t j = 0; j < kColumns; ++j) sums[j] += row[j];
  }
  for (size_t j = 0; j < kColumns; ++j) all[k + j] += sums[j];
}

__attribute__((always_inline)) inline void add_all(const uint16_t* const* rows, size_t count,
                                                   uint32_t* all, size_t width) {
  size_t k = 0;
  for (; k + 2 * kRowStep <= width; k += 2 * kRowStep)
    add_columns<2 * kRowStep>(rows, count, k, all);
  for (; k < width; k += kRowStep) add_columns<kRowStep>(rows, count, k, all);
}

void add_plain(const uint16_t* const* rows, size_t count, uint32_t* sums, size_t width) {
  add_all(rows, count, sums, width);
}

__attribute__((target("avx2"))) void add_avx2(const uint16_t* const* rows, size_t count,
                                              uint32_t* sums, size_t width) {
  add_all(rows, count, sums, width);
}

}  // namespace

RowAdder plain_row_adder() { return add_plain; }

RowAdder best_row_adder() { return __builtin_cpu_supports("avx2") != 0 ? add_avx2 : add_plain; }

HomeModels::HomeModels(const ModelTables& tables, const std::vector<int>& models, Kind kind)
    : nb_models_(models.size()),
      width_((models.size() + kRowStep - 1) / kRowStep * kRowStep),
      kind_(kind),
      folding_(tables.switches()) {
  double most = kUnseenCost;
  for (const int m : models) {
    const ModelInfo& info = tables.model(m);
    most = std::max({most, byte_cost(info, kMostQuantised), trigram_cost(info, kMostQuantised)});
  }
  unit_ = most / kMostUnits;
  add_byte_rows(tables, models);
  for (const int m : models) {
    for (int q = 0; q <= kMostQuantised; ++q) {
      units_.push_back(units(trigram_cost(tables.model(m), q)));
    }
  }
}

uint16_t HomeModels::units(double nats) const {
  return static_cast<uint16_t>(std::lround(std::clamp(nats / unit_, 0.0, kMostUnits)));
}

// What a byte costs behind two that it does not follow in any text of the model.
void HomeModels::add_byte_rows(const ModelTables& tables, const std::vector<int>& models) {
  rows_.assign(kNbBytes * width_, 0);
  std::vector<int> column_of(static_cast<size_t>(tables.nb_models()), -1);
  for (size_t i = 0; i < models.size(); ++i) {
    column_of[static_cast<size_t>(models[i])] = static_cast<int>(i);
  }
  for (int b = 0; b < kNbBytes; ++b) {
    if (kind_ == kAsciiOnly && b >= 0x80) break;
    uint16_t* row = rows_.data() + static_cast<size_t>(b) * width_;
    std::fill_n(row, nb_models_, units(kUnseenCost));
    tables.for_each_unigram(static_cast<unsigned char>(b), [&](const UnigramEntry& entry) {
      const int column = column_of[static_cast<size_t>(entry.model)];
      if (column >= 0) row[column] = units(byte_cost(tables.model(entry.model), entry.q));
    });
  }
}

void HomeModels::set(uint32_t trigram, size_t column, int q) {
  if (trigrams_.empty() || trigrams_.back() != trigram) {
    end_trigram();
    trigrams_.push_back(trigram);
  }
  const uint16_t cost = units_[column * (kMostQuantised + 1) + static_cast<size_t>(q)];
  for (Entry& entry : now_) {
    if (entry.column == column) {
      entry.cost = cost;
      return;
    }
  }
  now_.push_back({static_cast<uint16_t>(column), cost});
}

bool HomeModels::suits_row() const {
  return width_ <= kNarrow || now_.size() >= width_ / kWidthPerFew;
}

// Puts what is known about the last trigram where it belongs.
void HomeModels::end_trigram() {
  if (trigrams_.empty()) return;
  if (suits_row()) {
    if (width_ > kNarrow) places_.emplace_back(rows_.size() / width_, TrigramPlace::kRow);
    const size_t from = (trigrams_.back() & 0xFF) * width_;
    const size_t row = rows_.size();
    rows_.resize(row + width_);
    std::copy_n(rows_.begin() + static_cast<ptrdiff_t>(from), width_,
                rows_.begin() + static_cast<ptrdiff_t>(row));
    for (const Entry& entry : now_) rows_[row + entry.column] = entry.cost;
  } else {
    places_.emplace_back(entries_.size(), static_cast<uint16_t>(now_.size()));
    entries_.insert(entries_.end(), now_.begin(), now_.end());
  }
  now_.clear();
}

void HomeModels::finish() {
  end_trigram();
  index_ = KnownTrigrams(trigrams_);
  rows_.shrink_to_fit();
  places_.shrink_to_fit();
  entries_.shrink_to_fit();
  trigrams_ = {};
  now_ = {};
  units_ = {};
}

size_t HomeModels::find_rows(const unsigned char* bytes, size_t count, const uint16_t** rows,
                             Fix* fixes) const {
  size_t nb_fixes = 0;
  if (places_.empty()) {
    index_.find_all(bytes, count, [&](size_t i, int known) {
      const size_t row =
          known == KnownTrigrams::kNone ? bytes[i + 2] : kNbBytes + static_cast<size_t>(known);
      rows[i] = rows_.data() + row * width_;
    });
  } else {
    index_.find_all(bytes, count, [&](size_t i, int known) {
      rows[i] = rows_.data() + bytes[i + 2] * width_;
      if (known == KnownTrigrams::kNone) return;
      const TrigramPlace place = places_[static_cast<size_t>(known)];
      if (place.count == TrigramPlace::kRow) {
        rows[i] = rows_.data() + place.first() * width_;
        return;
      }
      const Entry* const entries = entries_.data() + place.first();
      fixes[nb_fixes++] = {rows[i], entries, entries + place.count};
    });
  }
  const std::string_view all(reinterpret_cast<const char*>(bytes), count + 2);
  if (kind_ == kAnyBytes || skip_ascii(all, 0) == all.size()) return nb_fixes;
  // What is not scored costs what a byte costs that is not. No model here knows such a trigram.
  for (size_t i = 0; i < count; ++i) {
    if ((bytes[i] | bytes[i + 1] | bytes[i + 2]) >= 0x80)
      rows[i] = rows_.data() + kUnscored * width_;
  }
  return nb_fixes;
}

void CostSums::start(const HomeModels& models) {
  models_ = &models;
  sums_.assign(models.width(), 0);
  folded_.clear();
  pending_ = 0;
}

void CostSums::add_rows(const uint16_t* const* rows, size_t count) {
  static const RowAdder add = best_row_adder();
  add(rows, count, sums_.data(), sums_.size());
  pending_ += static_cast<uint32_t>(count);
  if (pending_ >= kFoldAfter) fold();
}

void CostSums::fold() {
  folded_.resize(sums_.size(), 0);
  for (size_t k = 0; k < sums_.size(); ++k) folded_[k] += std::exchange(sums_[k], 0);
  pending_ = 0;
}

// REQUIRES: the other has added up less than it folds.
void CostSums::add(const CostSums& other) {
  if (pending_ + other.pending_ >= kFoldAfter) fold();
  for (size_t k = 0; k < sums_.size(); k += kRowStep) {
    for (size_t j = k; j < k + kRowStep; ++j) sums_[j] += other.sums_[j];
  }
  pending_ += other.pending_;
}

void CostSums::add(std::string_view text, size_t from) {
  walk_trigrams(text, from, models_->folding(), [this](const unsigned char* bytes, size_t count) {
    const uint16_t* rows[kTrigramsAtOnce];
    HomeModels::Fix fixes[kTrigramsAtOnce];
    const size_t nb_fixes = models_->find_rows(bytes, count, rows, fixes);
    // A sum may be short of what is taken back until the rows are added.
    for (size_t i = 0; i < nb_fixes; ++i) {
      for (const auto* entry = fixes[i].begin; entry != fixes[i].end; ++entry) {
        sums_[entry->column] += uint32_t{entry->cost} - fixes[i].row[entry->column];
      }
    }
    add_rows(rows, count);
  });
}

}  // namespace orva
