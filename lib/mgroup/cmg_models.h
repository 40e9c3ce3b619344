// CmgModels: the parameters of each model of a group, and the preprocessing switches.
#ifndef ORVA_LIB_MGROUP_CMG_MODELS_H_
#define ORVA_LIB_MGROUP_CMG_MODELS_H_

#include <cstdint>
#include <cstdio>
#include <string>

struct CmgModel {
  char* name;       // language (two letters) and charset; owned
  float normlp;     // normalising value of the model's trigram costs
  float lpmin;      // cost that a quantised value of 0 stands for
  float grad;       // cost of one quantisation step
  int32_t fact_no;  // nb_models + f when the model is in fact set f, else -1
};
static_assert(sizeof(void*) != 4 || sizeof(CmgModel) == 20);

class CmgModels {
 public:
  // Frees the old records and makes `n` zeroed ones. 0 or -1.
  int init(int n);
  // Frees names and records; harmless when there are none.
  void clean();
  // Fills record `index` with a copy of `name`.
  void model_init(int index, const char* name, float normlp, float lpmin, float grad, int fact_no);

  // Section of the group file. 0 or -1.
  int f_read(FILE* stream, int nb_models_in, std::string* why = nullptr);
  int f_write(FILE* stream) const;

  int f_hc_write(FILE* c_file, FILE* h_file) const;
  int f_hc_read(int nb_models_in);

  CmgModel* models = nullptr;
  int nb_models = 0;
  int nb_facts = 0;
  int rm_tridups = 0;
  int rm_caps = 0;
  int rm_digits = 0;
  int rm_blks = 0;
};

#endif  // ORVA_LIB_MGROUP_CMG_MODELS_H_
