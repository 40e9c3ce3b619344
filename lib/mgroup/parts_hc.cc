// The export of a group's two parts.

#include "lib/mgroup/cmg_models.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/hc_writer.h"
#include "lib/mgroup/uni_chr_mg.h"

int CmgModels::f_hc_write(FILE* c_file, FILE* h_file) const {
  orva::HcWriter out(c_file, h_file);
  out.integer("HC_CmgModels_nb_facts", nb_facts);
  out.integer("HC_CmgModels_rm_tridups", rm_tridups);
  out.integer("HC_CmgModels_rm_caps", rm_caps);
  out.integer("HC_CmgModels_rm_digits", rm_digits);
  out.integer("HC_CmgModels_rm_blks", rm_blks);
  out.begin_bytes("HC_CmgModels_models");
  for (int m = 0; m < nb_models; ++m) {
    const CmgModel& model = models[m];
    // A name's address means nothing in another program.
    const orva::StoredModel stored = {0, model.normlp, model.lpmin, model.grad, model.fact_no};
    out.more_bytes(&stored, sizeof stored);
  }
  out.end_bytes();
  out.begin_names("HC_CmgModels_models_names");
  for (int m = 0; m < nb_models; ++m) out.name(models[m].name != nullptr ? models[m].name : "");
  out.end_names();
  return 0;
}

int CmgModels::f_hc_read(int /*nb_models_in*/) { return -1; }

int CUniChrMG::f_hc_write(FILE* c_file, FILE* h_file) const {
  orva::HcWriter out(c_file, h_file);
  const auto nb_floats = static_cast<size_t>(nb_models);
  out.integer("HC_CUniChrMG_nb_models", nb_models);
  out.integer("HC_CUniChrMG_nb_facts", nb_facts);
  out.integer("HC_CUniChrMG_uch_lps_buff_tsize", uch_lps_buff_tsize);
  out.bytes("HC_CUniChrMG_models_normlp", models_normlp, 4 * nb_floats);
  out.bytes("HC_CUniChrMG_models_lpmin", models_lpmin, 4 * nb_floats);
  out.bytes("HC_CUniChrMG_models_grad", models_grad, 4 * nb_floats);
  out.bytes("HC_CUniChrMG_uch_lps_buff", uch_lps_buff,
            sizeof(UchPair) * static_cast<size_t>(uch_lps_buff_tsize));
  out.bytes("HC_CUniChrMG_uch_lps", uch_lps, sizeof uch_lps);
  return 0;
}

int CUniChrMG::f_hc_read() { return -1; }
