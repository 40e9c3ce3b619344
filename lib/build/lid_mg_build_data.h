// CLidMGBuildData: what the models of a group have to say, gathered before the automaton is made.
//
//   CLidMGBuildData bd;
//   if (bd.get_model_data(paths, nb_models, &fact) == kBuildOk) use(bd.trie, bd.words,
//   bd.uch_words);
//
// Every trigram of any model becomes a word: a path in the trie, and an entry that lists which
// model gives it which cost. The 256 single bytes have entries of the same kind. Costs are
// quantised to one byte per model; where all models of a fact set give a word the same byte, their
// pairs are replaced by one pair of the set.
//
// Life cycle: construct, get_model_data (again starts afresh), read the tables, destroy.
// Ownership:  trie and tables. The pairs of the 256 single bytes stay allocated for good.
// Results:    0 or a code below.
#ifndef ORVA_LIB_BUILD_LID_MG_BUILD_DATA_H_
#define ORVA_LIB_BUILD_LID_MG_BUILD_DATA_H_

#include <cstdint>

#include "lib/mgroup/lid_mg_fact.h"
#include "lib/tc/tc_expnd_table.h"
#include "lib/tc/tc_trie.h"

class CTrichrModel;

enum BuildResult {
  kBuildOk = 0,
  kBuildFailed = -1,      // a model cannot be loaded, or there is no memory
  kBuildOtherFlags = -2,  // a model's preprocessing flags differ from the first one's
};

// A cost that a model gives a word; after factorisation the index may be that of a set.
struct LidMgbdVal {
  int32_t model;
  float cost;
};
static_assert(sizeof(LidMgbdVal) == 8);

struct LidMgbdWord {
  LidMgbdVal* vals;
  unsigned char* qvals;  // the quantised value of each pair; room for `cap`
  int32_t nb;
  int32_t cap;
};
template <>
struct orva::CountedSize<LidMgbdWord> {
  static constexpr int value = 16;
};

struct LidMgbdModel {
  float tri_normlp;
  float uch_normlp;
  float tri_lpmin, tri_lpmax, tri_grad;
  float uch_lpmin, uch_lpmax, uch_grad;
};

class CLidMGBuildData {
 public:
  static constexpr int kMaxModels = 256;
  static constexpr int kNbBytes = 256;
  static constexpr int kCapStep = 4;

  CLidMGBuildData();
  ~CLidMGBuildData();
  CLidMGBuildData(const CLidMGBuildData&) = delete;
  CLidMGBuildData& operator=(const CLidMGBuildData&) = delete;

  void init0();
  void clean();

  // Reads every model and produces the quantised, factorised tables.
  int get_model_data(char** model_paths, int count, const CLidMGFact* fact);

  // Appends the pair (model, cost) to entry `index`, which is created when it equals `nb`. The new
  // number of entries, or -1 without memory.
  int table_insert(TCExpndTable<LidMgbdWord>& table, int nb, int index, int model, float cost);
  void table_elem_init(TCExpndTable<LidMgbdWord>& table, int index);
  void table_clean(TCExpndTable<LidMgbdWord>& table, int nb);

  // Quantises the costs of both tables; `fact` is not used.
  int uch_lp_convert(const CLidMGFact* fact);
  // Replaces pairs by those of shared sets and stores the number of pairs that remain.
  int table_factorize(TCExpndTable<LidMgbdWord>& table, int nb, const CLidMGFact* fact,
                      int* nb_vals_out);

  int rm_tridups = 0;
  int rm_digits = 0;
  int rm_caps = 0;
  int rm_blks = 0;
  LidMgbdModel models[kMaxModels] = {};
  int nb_models = 0;
  TCTrie<unsigned char> trie;  // three bytes to a word index
  TCExpndTable<LidMgbdWord> words;
  int nb_words = 0;
  int nb_word_vals = 0;
  TCExpndTable<LidMgbdWord> uch_words;
  int nb_uch_vals = 0;
  int verbose = 0;

 private:
  int add_model(int m, const char* path, const CLidMGFact* fact);
  int take_flags(int m, const CTrichrModel& model);
  int add_unigrams(int m, const CTrichrModel& model);
  int add_trigrams(int m, const CTrichrModel& model);
};

#endif  // ORVA_LIB_BUILD_LID_MG_BUILD_DATA_H_
