// HomeModels: what text costs under some models of a group, by rows of complete costs.
//
//   orva::HomeModels models(tables, {0, 7}, orva::HomeModels::kAnyBytes);
//   tables.for_each_trigram([&](auto a, auto b, auto c, int leaf) { ... models.set(...); });
//   models.finish();
//   orva::CostSums sums(models);
//   sums.add(text, 0);
//   double nats = sums.total(1);   // under model 7
//
// The automaton's values are turned around: a row holds what one trigram costs each of the models,
// the cost of its last byte where a model does not know it. A text then costs one row a byte,
// however many models of the group know its trigrams. Where rows are wide and few of the models
// know a trigram, it shares the row of its last byte, and what differs from that is put right.
// Costs are rounded to 1/65535 of the largest one.
//
// Life cycle: constructor, set for what the models know, trigram by trigram, finish; then constant.
// Threads:    any number may read; CostSums are used by one at a time.
#ifndef ORVA_LIB_DETECT_HOME_MODELS_H_
#define ORVA_LIB_DETECT_HOME_MODELS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/cost_rows.h"
#include "lib/detect/known_trigrams.h"
#include "lib/detect/model_tables.h"
#include "lib/detect/trigram_place.h"
#include "lib/detect/trigram_walk.h"

namespace orva {

class HomeModels {
 public:
  // Which trigrams are scored; the others cost nothing.
  enum Kind { kAnyBytes, kAsciiOnly };

  HomeModels(const ModelTables& tables, const std::vector<int>& models, Kind kind);

  // The column'th model knows the trigram at the quantised cost `q`. Calls for one trigram follow
  // each other.
  void set(uint32_t trigram, size_t column, int q);
  void finish();

  size_t nb_models() const { return nb_models_; }
  size_t width() const { return width_; }
  // Nats for one unit of a row.
  double unit() const { return unit_; }
  const Folding& folding() const { return folding_; }
  // Nats for a byte behind two that it does not follow in any text of the model.
  double unseen_cost(unsigned char byte, size_t model) const {
    return rows_[byte * width_ + model] * unit_;
  }

  // Adds what `count` trigrams cost that begin at bytes[0], bytes[1] and so on to `sums`, width()
  // of them, in units. REQUIRES: bytes are folded, and the sums do not grow beyond 32 bits.
  void add_costs(const unsigned char* bytes, size_t count, uint32_t* sums) const;

 private:
  void add_byte_rows(const ModelTables& tables, const std::vector<int>& models);
  uint16_t units(double nats) const;
  void end_trigram();
  bool suits_row() const;
  void add_ascii(const unsigned char* bytes, size_t count, uint32_t* sums) const;
  CostRows cost_rows() const;

  size_t nb_models_;
  size_t width_;
  double unit_ = 0;
  Kind kind_;
  Folding folding_;
  std::vector<uint16_t> rows_;        // of the 256 bytes, then of trigrams
  std::vector<TrigramPlace> places_;  // by trigram; empty if each has a row
  std::vector<CostEntry> entries_;    // of trigrams without one
  std::vector<uint32_t> trigrams_;    // empty when finished
  std::vector<CostEntry> now_;        // of the last one, until it is complete
  std::vector<uint16_t> units_;       // of trigram costs, by column and quantised cost
  KnownTrigrams index_;
};

// The cost of a text, added up.
class CostSums {
 public:
  CostSums() = default;
  explicit CostSums(const HomeModels& models) { start(models); }

  // Begins again, with other models.
  void start(const HomeModels& models);

  // The trigrams of `text` that end at `from` or behind it. The text is normalised as the group
  // asks: runs cut, capitals folded, digits and blanks removed.
  void add(std::string_view text, size_t from);
  // Nats, under the models'th of the models.
  double total(size_t model) const {
    const uint64_t folded = folded_.empty() ? 0 : folded_[model];
    return static_cast<double>(folded + sums_[model]) * models_->unit();
  }

 private:
  // So many rows cannot overflow 32 bits.
  static constexpr uint32_t kFoldAfter = 65536 - 64;

  void fold();

  const HomeModels* models_ = nullptr;
  std::vector<uint32_t> sums_;    // of the rows since the last fold
  std::vector<uint64_t> folded_;  // empty before the first fold
  uint32_t pending_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_HOME_MODELS_H_
