// CLidMGroup: a set of character-trigram models compiled into one automaton over byte trigrams.
//
//   CLidMGroup group;
//   if (group.load("Model.grp") == kGroupOk) printf("%d models\n", group.nb_models);
//
// Internal states stand for the trigram prefixes of 0, 1 and 2 bytes (state 0 is the root); leaves,
// numbered from nb_istates on, carry quantised costs for models or for fact sets. A value q of
// model m stands for q * grad + lpmin of that model.
//
// Life cycle: empty after construction or init0; filled by load, f_read or build; saved any number
// of
//             times; clean releases everything and may be called twice.
// Ownership:  arrays come from the accounted allocator, names from the plain one; both are owned
// here. Results:    0, or one of the codes below. Threads:    the position of a walk lives here, so
// a group serves one walk at a time.
#ifndef ORVA_LIB_MGROUP_LID_MGROUP_H_
#define ORVA_LIB_MGROUP_LID_MGROUP_H_

#include <cstdint>
#include <cstdio>
#include <string>

#include "lib/mgroup/cmg_models.h"
#include "lib/mgroup/lid_mg_fact.h"
#include "lib/mgroup/uni_chr_mg.h"

class CLidMGBuildData;

enum GroupResult {
  kGroupOk = 0,
  kGroupCannotOpen = -1,
  kGroupOtherVersion = -2,
  kGroupBadFormat = -3,
  kGroupOtherPlatform = -5,
};

// An internal state. info tells which reference holds: lib/mgroup/group_format.h reads its bits.
struct CLidMGState {
  union {
    unsigned char* chrs;  // sparse: its ascending outgoing bytes in istates_chrs
    int32_t* dnxts;       // direct: 256 successor numbers in istates_dnxts, 0 for none
    uintptr_t unused;     // records beyond nb_istates: the stored word
  } ref;
  uint32_t info;
};
static_assert(sizeof(void*) != 4 || sizeof(CLidMGState) == 8);

class CLidMGroup {
 public:
  CLidMGroup() { init0(); }
  ~CLidMGroup();
  CLidMGroup(const CLidMGroup&) = delete;
  CLidMGroup& operator=(const CLidMGroup&) = delete;

  void init0();
  // Allocates the six arrays at their sizes. 0, or -1 at the first failure (a size of 0 among
  // them).
  int allocs();
  void frees();
  void clean();

  // Opens `path`, checks its header, reads the body and refuses what a walk could not trust.
  // kGroupOk or a failure code; on failure after the opening the stream is left open.
  int load(const char* path);
  // The same on an open stream at its start, which is not closed. With `why`, a failure says what
  // is wrong and where.
  int load(FILE* stream, std::string* why = nullptr);
  // Reads the body alone. 0, or -1 with what was read left in place for clean.
  int f_read(FILE* stream, std::string* why = nullptr);

  // 0, or -1 when the file cannot be created or written.
  int save(const char* path) const;
  int save(FILE* stream) const;
  int f_write(FILE* stream) const;

  // Compiles trigram model files; part of the offline library. 0 or -1.
  int build(char** model_paths, char** model_names, int* fact_of_model, int count,
            int min_for_direct_in);
  int build_enum_trie(CLidMGBuildData* bd);
  int build_def_so();

  // Exports C tables "hardcoded_mg.C" and "hardcoded_mg.H" in the current directory; part of the
  // offline library. 0, or -1 when the table file cannot be opened.
  int hc_save() const;
  int f_hc_write(FILE* c_file, FILE* h_file) const;
  int f_hc_read();

  // The outgoing bytes of a state, their number and its first successor. A direct state's bytes are
  // written to `chrs` (room for 256) and returned from there.
  unsigned char* istate_get_chrs_and_offset(int istate, unsigned char* chrs, int* nchrs,
                                            int* offset) const;

  // The state of internal state `istate` by byte `c`, 0 for none.
  int child(int istate, unsigned char c) const;

  CLidMGFact* fact_table;
  CmgModels models_part;
  int nb_models;
  CUniChrMG unigram_part;
  int min_for_direct;
  CLidMGState* istates;
  int istates_tsize;
  unsigned char* istates_chrs;
  int istates_chrs_tsize;
  int32_t* istates_dnxts;
  int istates_dnxts_tsize;
  int nb_istates;
  uint32_t* lstates;
  int lstates_tsize;
  uint16_t* lstates_vals;
  int lstates_vals_tsize;
  uint16_t* def_so;
  int def_so_tsize;
  int allocated;
  int walk_last_byte;
  int walk_state;
  int verbose;
};

namespace orva {

// Why a walk over `group` could leave one of its arrays; empty when none can.
std::string group_defect(const CLidMGroup& group);

// Internal state `istate` as files hold it, its reference an offset from the start of its array.
struct StoredState;
StoredState stored_state(const CLidMGroup& group, int istate);

}  // namespace orva

#endif  // ORVA_LIB_MGROUP_LID_MGROUP_H_
