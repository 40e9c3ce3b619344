// ListedModels: what text costs under some models of a group, by lists of the models that know a
// trigram.
//
//   orva::ListedModels models(tables, {0, 7});
//   tables.for_each_trigram([&](auto a, auto b, auto c, int leaf) { ... models.set(...); });
//   models.finish();
//   orva::ListedSums sums(models);
//   sums.add(text);
//   double nats = sums.totals()[1];   // under model 7
//
// Of many models few know a trigram, as a rule: what they do not know is counted by bytes alone,
// and taken back for those that do. The common trigrams, which many know, have rows instead, of
// costs and of bytes that mark who knows them. Sums are exact.
//
// Life cycle: constructor, set for what the models know, trigram by trigram, finish; then constant.
// Threads:    any number may read; ListedSums are used by one at a time.
#ifndef ORVA_LIB_DETECT_LISTED_MODELS_H_
#define ORVA_LIB_DETECT_LISTED_MODELS_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "lib/detect/known_trigrams.h"
#include "lib/detect/model_tables.h"
#include "lib/detect/trigram_place.h"
#include "lib/detect/trigram_walk.h"

namespace orva {

class ListedModels {
 public:
  // One of the models knows a trigram at a quantised cost.
  struct Entry {
    uint8_t column;
    uint8_t q;
  };
  // Those that know one: a list, or a row.
  struct Entries {
    const Entry* begin;
    const Entry* end;
    const uint8_t* row;  // null: the list; else width() costs, 0 where unknown, and width() marks
  };
  // A mark of a row; 0 where the trigram is unknown.
  static constexpr uint8_t kKnown = 0xFF;
  // Columns of a row that are added up together.
  static constexpr size_t kRowStep = 16;
  // Two numbers added up at once, neither of which grows beyond 32 bits: quantised costs, and how
  // many there are.
  static constexpr uint64_t kOne = uint64_t{1} << 32;

  // REQUIRES: at most 256 models.
  ListedModels(const ModelTables& tables, std::vector<int> models);

  // The accumulator `index`, of a model or of a fact set, has the trigram at the quantised cost
  // `q`. Calls for one trigram follow each other.
  void set(uint32_t trigram, int index, int q);
  void finish();

  size_t nb_models() const { return models_.size(); }
  const std::vector<int>& models() const { return models_; }
  const ModelInfo& info(size_t column) const { return tables_.model(models_[column]); }
  const Folding& folding() const { return folding_; }

  // The numbers of the trigrams that any of the models knows, and what is known about one.
  const KnownTrigrams& index() const { return index_; }
  Entries entries(int number) const {
    const TrigramPlace& place = places_[static_cast<size_t>(number)];
    if (place.count == TrigramPlace::kRow) {
      return {nullptr, nullptr, rows_.data() + place.first() * 2 * width_};
    }
    const Entry* const first = entries_.data() + place.first();
    return {first, first + place.count, nullptr};
  }
  // By column, width() of them: what the byte costs where its trigram is not known.
  const uint64_t* unigrams(unsigned char byte) const { return unigrams_.data() + byte * width_; }
  // The quantised costs alone, width() of them, for the columns that rows mark.
  const uint8_t* row_unigrams(unsigned char byte) const {
    return row_unigrams_.data() + byte * width_;
  }
  size_t width() const { return width_; }

 private:
  bool suits_row(const TrigramPlace& place, unsigned char last) const;
  void make_row(TrigramPlace* place);

  const ModelTables& tables_;
  std::vector<int> models_;
  size_t width_;
  Folding folding_;
  std::vector<std::vector<uint8_t>> columns_;  // by accumulator; empty when finished
  std::vector<uint32_t> trigrams_;             // likewise
  std::vector<TrigramPlace> places_;           // by trigram
  std::vector<Entry> entries_;
  std::vector<uint8_t> rows_;
  std::vector<uint64_t> unigrams_;
  std::vector<uint8_t> row_unigrams_;
  KnownTrigrams index_;
};

// The cost of texts, added up.
class ListedSums {
 public:
  // Of the trigrams that a model knows, and what their last bytes would have cost instead.
  struct Known {
    uint64_t trigrams = 0;
    uint64_t unigrams = 0;
  };
  // Rows of trigrams, and what their last bytes would have cost instead.
  struct Rows {
    const uint8_t* costs[kTrigramsAtOnce];  // and marks
    const uint8_t* unigrams[kTrigramsAtOnce];
  };
  // By column: costs, those of last bytes where a row marks the column, and how many do.
  struct RowSums {
    uint32_t* costs;
    uint32_t* unigrams;
    uint32_t* known;
  };
  // What adds up, for `width` columns: rows, and a byte that came so many times.
  struct Adders {
    void (*rows)(const Rows& rows, size_t count, size_t width, const RowSums& sums);
    void (*bytes)(const uint64_t* unigrams, uint32_t times, size_t width, uint64_t* sums);
  };
  static Adders plain_adders();
  // The fastest for this machine.
  static Adders best_adders();

  explicit ListedSums(const ListedModels& models, Adders adders = best_adders());

  void reset();
  // The trigrams of a text, which does not go on where the last one ended.
  // REQUIRES: fewer than 8 million bytes from one reset to the next.
  void add(std::string_view text);
  // Nats so far, by model.
  const std::vector<double>& totals();
  // The same of one. REQUIRES: take_bytes since the last text.
  double total(size_t column) const;
  // Adds up what is known about bytes alone.
  void take_bytes();

 private:
  const ListedModels& models_;
  const Adders adders_;
  std::vector<Known> known_;            // by column, but for what rows say
  std::vector<uint32_t> row_costs_;     // by column, of rows
  std::vector<uint32_t> row_unigrams_;  // likewise
  std::vector<uint32_t> row_known_;     // likewise
  std::vector<uint64_t> unigrams_;      // of all bytes that were scored
  uint32_t counts_[256] = {};           // of those not in unigrams_ yet
  uint64_t scored_ = 0;
  std::vector<double> totals_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_LISTED_MODELS_H_
