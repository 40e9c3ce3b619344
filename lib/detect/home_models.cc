#include "lib/detect/home_models.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "lib/detect/byte_blocks.h"

namespace orva {

namespace {

constexpr size_t kNarrow = 16;      // rows no wider than that are all there
constexpr size_t kWidthPerFew = 6;  // where fewer columns know a trigram, it has no row
constexpr double kMostUnits = 65535;
constexpr int kMostQuantised = 255;

double byte_cost(const ModelInfo& info, int q) {
  return q * info.unigram_step + info.unigram_least;
}

double trigram_cost(const ModelInfo& info, int q) { return q * info.step + info.least; }

}  // namespace

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
  for (CostEntry& entry : now_) {
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
    for (const CostEntry& entry : now_) rows_[row + entry.column] = entry.cost;
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

CostRows HomeModels::cost_rows() const {
  const TrigramPlace* const places = places_.empty() ? nullptr : places_.data();
  return {index_, rows_.data(), width_, places, entries_.data()};
}

void HomeModels::add_costs(const unsigned char* bytes, size_t count, uint32_t* sums) const {
  if (kind_ == kAsciiOnly) {
    add_ascii(bytes, count, sums);
  } else if (places_.empty()) {
    best_cost_adders().all(cost_rows(), bytes, count, sums);
  } else {
    best_cost_adders().listed(cost_rows(), bytes, count, sums);
  }
}

// Of the runs of ASCII: what is not scored costs nothing.
void HomeModels::add_ascii(const unsigned char* bytes, size_t count, uint32_t* sums) const {
  const std::string_view all(reinterpret_cast<const char*>(bytes), count + 2);
  const CostAdders& adders = best_cost_adders();
  for (size_t at = 0; at < all.size();) {
    const size_t end = skip_ascii(all, at);
    if (end - at > 2) {
      const auto add = places_.empty() ? adders.all : adders.listed;
      add(cost_rows(), bytes + at, end - at - 2, sums);
    }
    at = skip_high(all, end);
  }
}

void CostSums::start(const HomeModels& models) {
  models_ = &models;
  sums_.assign(models.width(), 0);
  folded_.clear();
  pending_ = 0;
}

void CostSums::fold() {
  folded_.resize(sums_.size(), 0);
  for (size_t k = 0; k < sums_.size(); ++k) folded_[k] += std::exchange(sums_[k], 0);
  pending_ = 0;
}

void CostSums::add(std::string_view text, size_t from) {
  walk_trigrams(text, from, models_->folding(), [this](const unsigned char* bytes, size_t count) {
    models_->add_costs(bytes, count, sums_.data());
    pending_ += static_cast<uint32_t>(count);
    if (pending_ >= kFoldAfter) fold();
  });
}

}  // namespace orva
