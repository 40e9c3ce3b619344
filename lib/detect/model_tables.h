// The models as the detector reads them: a model group and the charset names of its models, so that
// any number of threads share one copy. What is made of them for scoring is made when it is first
// asked for.
//
//   std::string why;
//   const auto tables = orva::ModelTables::load_files("Model.grp", "Model.stc", &why);
//   if (tables == nullptr) puts(why.c_str());
//
// Life cycle: made whole by load, constant from then on.
// Ownership:  owns the group; leaves point into it.
// Threads:    any number may read; loading is serialised within.
#ifndef ORVA_LIB_DETECT_MODEL_TABLES_H_
#define ORVA_LIB_DETECT_MODEL_TABLES_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/lazy.h"
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
  const CLidMGroup& group() const { return group_; }

  // Calls visit(entry) for every unigram cost of a byte.
  template <typename Visit>
  void for_each_unigram(unsigned char byte, Visit visit) const {
    const uint32_t word = group_.unigram_part.uch_lps[byte];
    const UchPair* pair = group_.unigram_part.uch_lps_buff + unigram_first(word);
    for (int left = unigram_count(word); left > 0; --left, ++pair) {
      if (pair->index < group_.nb_models) {
        visit(UnigramEntry{pair->index, model(pair->index).fact, pair->q});
        continue;
      }
      for (const int m : models_of_fact_[static_cast<size_t>(pair->index - group_.nb_models)]) {
        visit(UnigramEntry{m, pair->index, pair->q});
      }
    }
  }

  // Calls visit(a, b, c, leaf) for every known trigram, in their order.
  template <typename Visit>
  void for_each_trigram(Visit visit) const {
    for_each_child(0, [&](unsigned char a, int one) {
      if (is_leaf(one)) return;
      for_each_child(one, [&](unsigned char b, int two) {
        if (is_leaf(two)) return;
        for_each_child(two, [&](unsigned char c, int three) {
          if (is_leaf(three)) visit(a, b, c, three - group_.nb_istates);
        });
      });
    });
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
  bool is_leaf(int state) const { return state >= group_.nb_istates; }

  // Calls visit(byte, next) for every successor of an internal state.
  template <typename Visit>
  void for_each_child(int state, Visit visit) const {
    const CLidMGState& record = group_.istates[state];
    const int first = state_first(record.info);
    for (int k = 0; k < state_count(record.info) && first != 0; ++k) {
      visit(record.ref.chrs[k], first + k);
    }
    for (int c = 0; c < kNbBytes && first == 0; ++c) {
      if (record.ref.dnxts[c] != 0) visit(static_cast<unsigned char>(c), record.ref.dnxts[c]);
    }
  }

  ModelTables();
  static std::unique_ptr<const ModelTables> finish(std::unique_ptr<ModelTables> tables,
                                                   const std::vector<std::string>& names,
                                                   std::string* why);
  int language_index(const std::string& name);
  void add_models(const std::vector<std::string>& names);

  std::unique_ptr<CLidMGroup> owned_;
  CLidMGroup& group_;
  std::vector<ModelInfo> models_;
  std::vector<std::string> languages_;
  std::vector<std::vector<int>> models_of_fact_;
  Lazy<Homes> homes_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_MODEL_TABLES_H_
