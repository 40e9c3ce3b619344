// CUniChrMG: the unigram part of a group, a cost per byte value, model and fact set.
#ifndef ORVA_LIB_MGROUP_UNI_CHR_MG_H_
#define ORVA_LIB_MGROUP_UNI_CHR_MG_H_

#include <cstdint>
#include <cstdio>
#include <string>

class CLidMGBuildData;
class CLidMGFact;

// One cost: accumulator index (model, or nb_models + fact set) and quantised value.
struct UchPair {
  uint8_t index;
  uint8_t q;
};
static_assert(sizeof(UchPair) == 2);

class CUniChrMG {
 public:
  CUniChrMG() { init0(); }
  ~CUniChrMG() { clean(); }
  CUniChrMG(const CUniChrMG&) = delete;
  CUniChrMG& operator=(const CUniChrMG&) = delete;

  void init0();
  // Releases the arrays; harmless when there are none.
  void clean();
  // Allocates the four arrays for nb_models and uch_lps_buff_tsize. 0 or -1.
  int allocs();

  int f_read(FILE* stream, std::string* why = nullptr);
  int f_write(FILE* stream) const;

  // Part of the offline library.
  int build(CLidMGBuildData* bd, CLidMGFact* fact);
  int f_hc_write(FILE* c_file, FILE* h_file) const;
  int f_hc_read();

  int nb_models;
  int nb_facts;
  float* models_normlp;
  float* models_lpmin;
  float* models_grad;
  UchPair* uch_lps_buff;  // runs of the byte values, in ascending byte order
  int uch_lps_buff_tsize;
  uint32_t uch_lps[256];  // one run per byte value: see unigram_first and unigram_count
  int allocated;
  int verbose;
};

#endif  // ORVA_LIB_MGROUP_UNI_CHR_MG_H_
