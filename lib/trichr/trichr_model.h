// CTrichrModel: the character trigrams of one language in one charset, and what each costs.
//
//   CLidFacs facs;
//   CTrichrModel model;
//   if (facs.init("text.txt", 0, 0, -1, 1, 1, 1, 0)) {
//     model.build(facs, 4000, 0, 0.9f, 0.0f, 1, 1, 1, 0);
//     model.save("frISO-8859-1.tri", 0.9f);
//   }
//
// A cost is the negative natural logarithm of a smoothed probability: small for the likely. The
// model is itself the table of its keys, trigrams written as six hexadecimal digits; the index of a
// key is that of its cost in tri_lps.
//
// Life cycle: construct empty; build or load, which both begin by emptying the model; save as often
//             as wanted; init to empty it.
// Ownership:  the costs; a caller's facs and streams stay the caller's.
// Results:    load and save: 0 or a code below. build has none: without memory it leaves the model
//             empty when failures return, or ends the process (lib/util/accounting.h).
#ifndef ORVA_LIB_TRICHR_TRICHR_MODEL_H_
#define ORVA_LIB_TRICHR_TRICHR_MODEL_H_

#include <cstdio>

#include "lib/facs/lid_facs.h"
#include "lib/tc/hashtabl.h"

enum TrichrResult {
  kTrichrOk = 0,
  kTrichrCannotOpen = -1,
  kTrichrOtherVersion = -2,
  kTrichrBadFormat = -3,
};

namespace orva {

// What one training counted, in the text as it was preprocessed.
struct TrainingCounts {
  int nb_bytes = 0;     // bytes that end a counted trigram
  int nb_trigrams = 0;  // distinct ones
  int nb_bigrams = 0;   // distinct pairs that begin a trigram
};

}  // namespace orva

class CTrichrModel : public CHashTable {
 public:
  static constexpr int kNbBytes = 256;
  // Text beyond this many bytes is not counted.
  static constexpr int kMaxText = 2147483645;

  CTrichrModel();
  ~CTrichrModel();

  // Sets the counts and flags to nothing and forgets the costs; releases nothing.
  void init0();
  // Releases the costs; the counts stay as they are.
  void clean();
  // Empties the model.
  void init();

  // Reads a V25a file (v25a_format.h).
  int load(const char* path);
  // Writes one; a weight above -0.5 is noted in the header. To a stream the result is always 0.
  int save(FILE* stream, float tri_weight) const;
  int save(const char* path, float tri_weight) const;

  // Trains the model on the text that `facs` delivers. At most `max_tri` trigrams are kept: those
  // seen `min_freq` times or more when that is above 0; else, when `coverage` is above 0, the most
  // frequent ones that make up this part of the text, however many; else the most frequent ones.
  // The flags say how the text was preprocessed. REQUIRES: max_tri >= 0, 0 <= tri_weight < 1.
  void build(CLidFacs& facs, int max_tri, int min_freq, float tri_weight, float coverage,
             int rm_tridups_in, int rm_caps_in, int rm_digits_in, int rm_blks_in);

  int nb_tri;
  int rm_tridups;
  int rm_caps;
  int rm_digits;
  int rm_blks;
  float* tri_lps;
  int tri_lps_tsize;
  float lp_unseen = 30.0f;
  float lp_base = 0.0f;
  float lp_scale = 0.0f;
  float uch_lps[kNbBytes] = {};
  float lp_const = 0.0f;
  int verbose = 0;
  orva::TrainingCounts training;  // of the last build

 private:
  int load_stream(FILE* stream);
  int load_trigrams(FILE* stream);
  void grow_costs();
};

#endif  // ORVA_LIB_TRICHR_TRICHR_MODEL_H_
