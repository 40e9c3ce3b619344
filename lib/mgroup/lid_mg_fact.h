// CLidMGFact: the fact sets of a group, that is, which models share stored values.
#ifndef ORVA_LIB_MGROUP_LID_MG_FACT_H_
#define ORVA_LIB_MGROUP_LID_MG_FACT_H_

#include <cstdint>

class CLidMGFact {
 public:
  static constexpr int kMaxModels = 256;

  // `fact_of_model` gives the set of each of `nb_models` models, -1 for none.
  // REQUIRES: 0 <= nb_models <= 256, every entry between -1 and 255.
  CLidMGFact(const int* fact_of_model, int nb_models) { init(fact_of_model, nb_models); }
  void init(const int* fact_of_model, int nb_models);

  CLidMGFact(const CLidMGFact&) = delete;
  CLidMGFact& operator=(const CLidMGFact&) = delete;

  int32_t fact_of_model[kMaxModels];
  int set_models[kMaxModels];  // members of set 0, then of set 1, ..., each in ascending order
  int* set_first[kMaxModels];  // into set_models; null for a set without models
  int set_size[kMaxModels];
  int nb_models;
  int nb_facts;  // largest set number in use plus one
};

#endif  // ORVA_LIB_MGROUP_LID_MG_FACT_H_
