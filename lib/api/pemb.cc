#include "lib/api/pemb.h"

#include <climits>
#include <cstdint>
#include <cstdlib>

#include "lib/eval/lid_mgroup_eval.h"
#include "lib/facs/lid_facs.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"

struct PembHandle {
  CLidMGroup* group;
  CLidMGroupEval* eval;
  CLidFacs* facs;
  uint8_t first_char;
  uint8_t second_char;
  int32_t state;
};

namespace {

enum FeedingState : int32_t {
  kNotLoaded = -1,  // no document was started yet
  kNoChar = 0,
  kFirstChar = 1,
  kPlaced = 2,  // the automaton stands on the first two characters
  kScored = 3,
};

// Identifies the library in a binary; never printed.
__attribute__((used)) const char kBanner[] =
    "**LibPemb: Orva identification library, release 0.1.0\n"
    "**LibPemb: language and character set of undeclared bytes, by trigram model groups\n"
    "**LibPemb: by the Orva developers, under the Apache License 2.0\n";

// A handle's record, which pemb_dispose leaves allocated.
__attribute__((noinline)) PembHandle* alloc_pemb_handle() {
  return static_cast<PembHandle*>(calloc(1, sizeof(PembHandle)));
}

// Releases the three objects, each only if it exists.
void release_objects(PembHandle* handle) {
  delete handle->facs;
  delete handle->eval;
  delete handle->group;
  handle->facs = nullptr;
  handle->eval = nullptr;
  handle->group = nullptr;
}

bool open_objects(PembHandle* handle, const char* path) {
  handle->group = new CLidMGroup;
  if (handle->group->load(path) != kGroupOk) return false;
  handle->eval = new CLidMGroupEval(handle->group);
  handle->facs = new CLidFacs;
  const CmgModels& switches = handle->group->models_part;
  handle->facs->init(switches.rm_tridups, switches.rm_caps, switches.rm_digits, switches.rm_blks);
  return true;
}

// Takes the first two characters of a document off [*p, end) and places the automaton on them.
void place_first_chars(PembHandle* handle, unsigned char** p, const unsigned char* end) {
  if (handle->state == kNoChar && *p < end) {
    handle->first_char = *(*p)++;
    handle->state = kFirstChar;
  }
  if (handle->state == kFirstChar && *p < end) {
    handle->second_char = *(*p)++;
    handle->state = kPlaced;
    handle->eval->auto_init(handle->first_char, handle->second_char);
  }
}

}  // namespace

PembHandle* pemb_init(const char* path) {
  if (path == nullptr) return nullptr;
  PembHandle* handle = alloc_pemb_handle();
  if (handle == nullptr) return nullptr;
  _MallocChkExitOnErr = 0;
  handle->state = kNotLoaded;
  bool opened = false;
  try {
    opened = open_objects(handle, path);
  } catch (...) {
    opened = false;  // out of memory
  }
  if (opened) return handle;
  release_objects(handle);
  free(handle);
  return nullptr;
}

int pemb_load(PembHandle* handle) {
  if (handle == nullptr || handle->eval == nullptr) return -1;
  handle->state = kNoChar;
  return handle->eval->init();
}

int pemb_nexts(PembHandle* handle, unsigned char* bytes, unsigned int length) {
  if (length > PEMB_MAX_PIECE || bytes == nullptr) return -1;
  if (handle == nullptr || handle->eval == nullptr || handle->state == kNotLoaded) return -1;
  if (handle->eval->total() > INT_MAX - static_cast<int>(length)) return -1;
  const int kept = handle->facs->preprocess(bytes, static_cast<int>(length));
  unsigned char* p = bytes;
  const unsigned char* const end = bytes + kept;
  place_first_chars(handle, &p, end);
  if (p < end) {
    handle->state = kScored;
    handle->eval->auto_nexts(p, static_cast<int>(end - p));
  }
  return 0;
}

float* pemb_get_scores(PembHandle* handle, int* best, float* score) {
  if (handle == nullptr || handle->eval == nullptr || best == nullptr || score == nullptr) {
    return nullptr;
  }
  if (handle->state != kScored) return nullptr;
  try {
    float* scores = handle->eval->get_lprobs();
    if (scores == nullptr) return nullptr;
    *score = handle->eval->calcul_ratio(scores, best);
    return *best == -1 ? nullptr : scores;
  } catch (...) {
    return nullptr;  // out of memory
  }
}

char* pemb_model_name(PembHandle* handle, int index) {
  if (handle == nullptr || handle->group == nullptr) return nullptr;
  if (index < 0 || index >= handle->group->nb_models) return nullptr;
  return handle->group->models_part.models[index].name;
}

int pemb_nb_models(PembHandle* handle) {
  return handle == nullptr || handle->group == nullptr ? 0 : handle->group->nb_models;
}

// Kept: the handle record itself is not freed.
void pemb_dispose(PembHandle* handle) {
  if (handle != nullptr) release_objects(handle);
}
