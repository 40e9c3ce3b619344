#include "lib/detect/listed_models.h"

#include <algorithm>
#include <utility>

namespace orva {

ListedModels::ListedModels(const ModelTables& tables, std::vector<int> models)
    : tables_(tables),
      models_(std::move(models)),
      folding_(tables.switches()),
      columns_(static_cast<size_t>(tables.nb_indices())),
      unigrams_(kNbBytes * models_.size(), 0) {
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
      unigrams_[b * models_.size() + static_cast<size_t>(column)] +=
          static_cast<uint64_t>(entry.q) + kOne;
    });
  }
}

void ListedModels::set(uint32_t trigram, int index, int q) {
  for (const uint8_t column : columns_[static_cast<size_t>(index)]) {
    if (trigrams_.empty() || trigrams_.back() != trigram) {
      trigrams_.push_back(trigram);
      firsts_.push_back(static_cast<uint32_t>(entries_.size()));
    }
    entries_.push_back({column, static_cast<uint8_t>(q)});
  }
}

void ListedModels::finish() {
  index_ = TrigramIndex(trigrams_);
  firsts_.push_back(static_cast<uint32_t>(entries_.size()));
  firsts_.shrink_to_fit();
  entries_.shrink_to_fit();
  trigrams_ = {};
  columns_ = {};
}

void ListedModels::find_entries(const unsigned char* bytes, size_t count, Entries* found) const {
  index_.find_all(bytes, count, [&](size_t i, int known) {
    const bool any = known != TrigramIndex::kNone;
    const uint32_t* const first = firsts_.data() + (any ? known : 0);
    found[i].begin = entries_.data() + first[0];
    found[i].end = entries_.data() + first[any ? 1 : 0];
  });
}

ListedSums::ListedSums(const ListedModels& models)
    : models_(models),
      known_(models.nb_models()),
      unigrams_(models.nb_models(), 0),
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
    for (size_t i = 0; i < count; ++i) {
      const unsigned char last = bytes[i + 2];
      ++counts_[last];
      const uint64_t* const unigrams = models_.unigrams(last);
      for (const auto* entry = found[i].begin; entry != found[i].end; ++entry) {
        Known& known = known_[entry->column];
        known.trigrams += entry->q + ListedModels::kOne;
        known.unigrams += unigrams[entry->column];
      }
    }
  });
}

void ListedSums::add_unigrams() {
  for (unsigned b = 0; b < 256; ++b) {
    if (counts_[b] == 0) continue;
    const uint64_t* const unigrams = models_.unigrams(static_cast<unsigned char>(b));
    for (size_t i = 0; i < unigrams_.size(); ++i) unigrams_[i] += counts_[b] * unigrams[i];
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
