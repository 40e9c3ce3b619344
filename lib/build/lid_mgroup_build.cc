// CLidMGroup::build: from trigram models to a group.

#include <cstring>
#include <memory>
#include <new>

#include "lib/build/lid_mg_build_data.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"

namespace {

// Whether models and sets can share one byte.
bool indices_fit(const int* fact_of_model, int count) {
  if (count < 0 || count > orva::kMaxIndices) return false;
  int nb_facts = 0;
  for (int m = 0; m < count; ++m) {
    if (fact_of_model[m] < -1 || fact_of_model[m] >= orva::kMaxIndices) return false;
    if (fact_of_model[m] >= nb_facts) nb_facts = fact_of_model[m] + 1;
  }
  return count + nb_facts <= orva::kMaxIndices;
}

int take_models(CLidMGroup* group, const CLidMGBuildData& bd, char** model_names) {
  CmgModels& part = group->models_part;
  const CLidMGFact& fact = *group->fact_table;
  if (part.init(bd.nb_models) != 0) return -1;
  part.nb_facts = fact.nb_facts;
  part.rm_tridups = bd.rm_tridups;
  part.rm_caps = bd.rm_caps;
  part.rm_digits = bd.rm_digits;
  part.rm_blks = bd.rm_blks;
  for (int m = 0; m < bd.nb_models; ++m) {
    const LidMgbdModel& model = bd.models[m];
    const int set = fact.fact_of_model[m];
    part.model_init(m, model_names[m], model.tri_normlp, model.tri_lpmin, model.tri_grad,
                    set < 0 ? -1 : bd.nb_models + set);
    if (part.models[m].name == nullptr) return -1;
  }
  return 0;
}

}  // namespace

int CLidMGroup::build(char** model_paths, char** model_names, int* fact_of_model, int count,
                      int min_for_direct_in) try {
  const int verbose_before = verbose;
  clean();
  init0();
  unigram_part.clean();
  unigram_part.init0();
  verbose = verbose_before;
  if (!indices_fit(fact_of_model, count) || min_for_direct_in < 0) return -1;
  min_for_direct = min_for_direct_in;
  nb_models = count;
  fact_table = new CLidMGFact(fact_of_model, nb_models);

  auto bd = std::make_unique<CLidMGBuildData>();
  bd->verbose = verbose;
  if (bd->get_model_data(model_paths, nb_models, fact_table) != kBuildOk) return -1;
  if (take_models(this, *bd, model_names) != 0) return -1;
  unigram_part.verbose = verbose;
  if (unigram_part.build(bd.get(), fact_table) != 0) return -1;
  if (build_enum_trie(bd.get()) != 0) return -1;
  def_so = static_cast<uint16_t*>(malloc_chk(lstates_tsize * 2));
  if (def_so == nullptr) return -1;
  def_so_tsize = lstates_tsize;
  return build_def_so();
} catch (const std::bad_alloc&) {
  return -1;
}
