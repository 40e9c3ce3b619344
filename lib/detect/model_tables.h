// The models as the detector reads them: a model group and the charset names of its models, laid
// out for looking trigrams up without a walk position, so that any number of threads share one
// copy.
//
//   std::string why;
//   const auto tables = orva::ModelTables::load_files("Model.grp", "Model.stc", &why);
//   if (tables == nullptr) puts(why.c_str());
//
// The group's automaton always stands on the state of the longest known suffix of at most two
// bytes. A leaf is therefore found from three bytes alone: the state of the first two, a bit for
// each of its outgoing bytes, and the number of bits below.
//
// Life cycle: made whole by load, constant from then on.
// Ownership:  owns the group; leaves point into it.
// Threads:    any number may read; loading is serialised within.
#ifndef ORVA_LIB_DETECT_MODEL_TABLES_H_
#define ORVA_LIB_DETECT_MODEL_TABLES_H_

#include <bit>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {

class Homes;

// Nats that a byte costs a model that knows neither its trigram nor the byte.
inline constexpr double kUnseenCost = 30.0;

struct ModelInfo {
  int language = 0;  // index in languages()
  int charset = -1;  // index in the charset table; -1 for a name that it lacks
  int fact = -1;     // accumulator index of the model's fact set
  double step = 0;   // trigram costs are q * step + least
  double least = 0;
  double unigram_step = 0;
  double unigram_least = 0;
};

// One unigram cost of a byte value.
struct UnigramEntry {
  int model;
  int fact;  // accumulator index of the set whose trigrams cover the byte too, or -1
  int q;
};

class ModelTables {
 public:
  static constexpr int kNoLeaf = -1;

  // Null, with the reason in `why`, when a file cannot be read or is damaged, or when the two do
  // not go together.
  static std::unique_ptr<const ModelTables> load_files(const std::string& group_path,
                                                       const std::string& names_path,
                                                       std::string* why);
  // The same from bytes in memory, which may go away afterwards.
  static std::unique_ptr<const ModelTables> load_memory(std::string_view group,
                                                        std::string_view names, std::string* why);

  ~ModelTables();
  ModelTables(const ModelTables&) = delete;
  ModelTables& operator=(const ModelTables&) = delete;

  int nb_models() const { return group_.nb_models; }
  // Accumulators: models, then fact sets.
  int nb_indices() const { return group_.nb_models + group_.models_part.nb_facts; }
  int nb_leaves() const { return group_.lstates_tsize; }
  const CmgModels& switches() const { return group_.models_part; }
  const ModelInfo& model(int i) const { return models_[static_cast<size_t>(i)]; }
  // The languages of the models, in order of first appearance.
  const std::vector<std::string>& languages() const { return languages_; }
  const std::vector<UnigramEntry>& unigrams(unsigned char byte) const { return unigrams_[byte]; }

  // The leaf of the trigram a, b, c; kNoLeaf when no model knows it.
  int leaf(unsigned char a, unsigned char b, unsigned char c) const {
    const uint32_t at = row_of_pair_[static_cast<size_t>(a) << 8 | b];
    if (at == 0) return kNoLeaf;
    const Row& row = rows_[at];
    if (row.direct != nullptr) {
      const int next = row.direct[c];
      return next >= group_.nb_istates ? next - group_.nb_istates : kNoLeaf;
    }
    const unsigned word = c >> 6;
    const uint64_t bit = uint64_t{1} << (c & 63);
    if ((row.bits[word] & bit) == 0) return kNoLeaf;
    return row.first + row.below[word] + std::popcount(row.bits[word] & (bit - 1));
  }

  // Calls visit(a, b, c, leaf) for every known trigram.
  template <typename Visit>
  void for_each_trigram(Visit visit) const {
    for (size_t pair = 0; pair < row_of_pair_.size(); ++pair) {
      const uint32_t at = row_of_pair_[pair];
      if (at == 0) continue;
      const Row& row = rows_[at];
      const auto a = static_cast<unsigned char>(pair >> 8);
      const auto b = static_cast<unsigned char>(pair);
      int next = row.first;
      for (unsigned w = 0; w < 4 && row.direct == nullptr; ++w) {
        for (uint64_t bits = row.bits[w]; bits != 0; bits &= bits - 1) {
          const unsigned c = w << 6 | static_cast<unsigned>(std::countr_zero(bits));
          visit(a, b, static_cast<unsigned char>(c), next++);
        }
      }
      for (int c = 0; c < kNbBytes && row.direct != nullptr; ++c) {
        const int found = leaf(a, b, static_cast<unsigned char>(c));
        if (found != kNoLeaf) visit(a, b, static_cast<unsigned char>(c), found);
      }
    }
  }

  // What is derived from the tables at its first use.
  const Homes& homes() const;

  // The values of a leaf: `*count` words as group_format.h reads them.
  const uint16_t* leaf_values(int leaf, int* count) const {
    const uint32_t word = group_.lstates[leaf];
    *count = leaf_count(word);
    return group_.lstates_vals + leaf_first(word);
  }

 private:
  // What may follow one byte pair.
  struct Row {
    uint64_t bits[4] = {};
    int below[4] = {};                // bits set in the words before
    int first = 0;                    // leaf of the lowest bit
    const int32_t* direct = nullptr;  // a state kept as a table instead
  };

  ModelTables();
  static std::unique_ptr<const ModelTables> finish(std::unique_ptr<ModelTables> tables,
                                                   const std::vector<std::string>& names,
                                                   std::string* why);
  int language_index(const std::string& name);
  void add_models(const std::vector<std::string>& names);
  void add_rows();
  void add_row(int state, size_t pair);
  void add_unigrams();

  std::unique_ptr<CLidMGroup> owned_;
  CLidMGroup& group_;
  std::vector<ModelInfo> models_;
  std::vector<std::string> languages_;
  std::vector<uint32_t> row_of_pair_;  // 0: the pair is unknown
  std::vector<Row> rows_;
  std::vector<UnigramEntry> unigrams_[kNbBytes];
  mutable std::once_flag homes_made_;
  mutable std::unique_ptr<const Homes> homes_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_MODEL_TABLES_H_
