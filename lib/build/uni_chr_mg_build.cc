// CUniChrMG::build: the unigram part of a group.

#include <cstdio>

#include "lib/build/lid_mg_build_data.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/uni_chr_mg.h"

namespace {

// The unigram part, and its pairs: number, size, bytes.
constexpr char kMsgUchMG[] = "UchMG: \n";
constexpr char kMsgPairs[] = "NbFact %5d * %d = %6d\n";

}  // namespace

int CUniChrMG::build(CLidMGBuildData* bd, CLidMGFact* fact) {
  nb_models = bd->nb_models;
  nb_facts = fact->nb_facts;
  uch_lps_buff_tsize = bd->nb_uch_vals;
  if (allocs() != 0) return -1;
  for (int m = 0; m < nb_models; ++m) {
    models_normlp[m] = bd->models[m].uch_normlp;
    models_lpmin[m] = bd->models[m].uch_lpmin;
    models_grad[m] = bd->models[m].uch_grad;
  }
  int at = 0;
  for (unsigned c = 0; c < orva::kNbBytes; ++c) {
    const LidMgbdWord& word = bd->uch_words[c];
    uch_lps[c] = orva::unigram_word(at, word.nb);
    for (int k = 0; k < word.nb; ++k) {
      uch_lps_buff[at++] = {static_cast<uint8_t>(word.vals[k].model), word.qvals[k]};
    }
  }
  if (verbose != 0) {
    const int pair_size = static_cast<int>(sizeof(UchPair));
    printf(kMsgUchMG);
    printf(kMsgPairs, uch_lps_buff_tsize, pair_size, uch_lps_buff_tsize * pair_size);
  }
  return 0;
}
