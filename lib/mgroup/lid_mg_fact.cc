#include "lib/mgroup/lid_mg_fact.h"

#include <algorithm>
#include <cassert>

void CLidMGFact::init(const int* fact_of_model_in, int nb_models_in) {
  assert(nb_models_in >= 0 && nb_models_in <= kMaxModels);
  nb_models = nb_models_in;
  nb_facts = 0;
  std::fill_n(fact_of_model, kMaxModels, -1);
  std::fill_n(set_models, kMaxModels, 0);
  std::fill_n(set_first, kMaxModels, nullptr);
  std::fill_n(set_size, kMaxModels, 0);
  for (int m = 0; m < nb_models; ++m) {
    const int fact = fact_of_model_in[m];
    assert(fact >= -1 && fact < kMaxModels);
    fact_of_model[m] = fact;
    if (fact < 0) continue;
    nb_facts = std::max(nb_facts, fact + 1);
    ++set_size[fact];
  }
  int next = 0;
  for (int f = 0; f < nb_facts; ++f) {
    if (set_size[f] == 0) continue;
    set_first[f] = set_models + next;
    for (int m = 0; m < nb_models; ++m) {
      if (fact_of_model[m] == f) set_models[next++] = m;
    }
  }
}
