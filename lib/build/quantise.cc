// Quantisation and factorisation of the build data.

#include "lib/build/quantise.h"

#include <cstdio>

#include "lib/build/lid_mg_build_data.h"
#include "lib/util/accounting.h"

namespace {

// "Factorised: pairs before and after"; then per set the entries it is shared in and the pairs that
// saves.
constexpr char kMsgFactorised[] = "\nFactorisation: Init %d  Fact %d  (%5.2f %%)\n";
constexpr char kMsgFactVals[] = "FactVals:\n";
constexpr char kMsgFact[] = "  F %2d :  Factd %4d  (sauve %d)\n";
constexpr char kMsgFactOk[] = "FactOK.\n";

int quantise_table(TCExpndTable<LidMgbdWord>& table, int nb, const LidMgbdModel* models,
                   float LidMgbdModel::*lpmin, float LidMgbdModel::*grad) {
  for (int i = 0; i < nb; ++i) {
    LidMgbdWord& word = table[static_cast<unsigned>(i)];
    if (word.nb == 0) continue;
    word.qvals = static_cast<unsigned char*>(malloc_chk(word.cap));
    if (word.qvals == nullptr) return -1;
    for (int k = 0; k < word.nb; ++k) {
      const LidMgbdModel& model = models[word.vals[k].model];
      word.qvals[k] = orva::quantised(word.vals[k].cost, model.*lpmin, model.*grad);
    }
  }
  return 0;
}

// Kept: like the pairs of the single bytes, their codes are never given back.
[[gnu::noinline]] int quantise_unigrams(CLidMGBuildData* bd) {
  return quantise_table(bd->uch_words, CLidMGBuildData::kNbBytes, bd->models,
                        &LidMgbdModel::uch_lpmin, &LidMgbdModel::uch_grad);
}

// Which models an entry has, and their codes.
struct Present {
  explicit Present(const LidMgbdWord& word) {
    for (int k = 0; k < word.nb; ++k) {
      has[word.vals[k].model] = true;
      code[word.vals[k].model] = word.qvals[k];
    }
  }
  // Whether every model of set `f` is there with one code.
  bool shares(const CLidMGFact& fact, int f) const {
    const int size = fact.set_size[f];
    const int* members = fact.set_first[f];
    if (size == 0) return false;
    for (int i = 0; i < size; ++i) {
      if (!has[members[i]] || code[members[i]] != code[members[0]]) return false;
    }
    return true;
  }
  bool has[CLidMGBuildData::kMaxModels] = {};
  unsigned char code[CLidMGBuildData::kMaxModels] = {};
};

// Rewrites one entry and counts each shared set in `shared_counts`.
void factorize_word(LidMgbdWord& word, const CLidMGFact& fact, int nb_models, int* shared_counts) {
  const Present present(word);
  bool shared[CLidMGFact::kMaxModels] = {};
  for (int f = 0; f < fact.nb_facts; ++f) shared[f] = present.shares(fact, f);
  int kept = 0;
  for (int k = 0; k < word.nb; ++k) {
    const int model = word.vals[k].model;
    const int f = fact.fact_of_model[model];
    if (f >= 0 && shared[f]) continue;
    word.vals[kept] = {model, 0.0f};
    word.qvals[kept] = word.qvals[k];
    ++kept;
  }
  for (int f = 0; f < fact.nb_facts; ++f) {
    if (!shared[f]) continue;
    word.vals[kept] = {nb_models + f, 0.0f};
    word.qvals[kept] = present.code[fact.set_first[f][0]];
    ++kept;
    ++shared_counts[f];
  }
  word.nb = kept;
}

void report(const CLidMGFact& fact, const int* shared_counts, int before, int after) {
  const double percent = before == 0 ? 0.0 : 100.0 * after / before;
  fprintf(stderr, kMsgFactorised, before, after, percent);
  fprintf(stderr, kMsgFactVals);
  for (int f = 0; f < fact.nb_facts; ++f) {
    fprintf(stderr, kMsgFact, f, shared_counts[f], (fact.set_size[f] - 1) * shared_counts[f]);
  }
  fprintf(stderr, kMsgFactOk);
}

}  // namespace

int CLidMGBuildData::uch_lp_convert(const CLidMGFact* /*fact*/) {
  for (int m = 0; m < nb_models; ++m) {
    LidMgbdModel& model = models[m];
    model.tri_grad = orva::step_of(model.tri_lpmin, model.tri_lpmax);
    model.uch_grad = orva::step_of(model.uch_lpmin, model.uch_lpmax);
  }
  if (quantise_table(words, nb_words, models, &LidMgbdModel::tri_lpmin, &LidMgbdModel::tri_grad) !=
      0) {
    return -1;
  }
  return quantise_unigrams(this);
}

int CLidMGBuildData::table_factorize(TCExpndTable<LidMgbdWord>& table, int nb,
                                     const CLidMGFact* fact, int* nb_vals_out) {
  int shared_counts[CLidMGFact::kMaxModels] = {};
  int before = 0;
  int after = 0;
  for (int i = 0; i < nb; ++i) {
    LidMgbdWord& word = table[static_cast<unsigned>(i)];
    before += word.nb;
    factorize_word(word, *fact, nb_models, shared_counts);
    after += word.nb;
  }
  *nb_vals_out = after;
  if (verbose != 0) report(*fact, shared_counts, before, after);
  return 0;
}
