// Life cycle of the model group and reading access to its states.
#include "lib/mgroup/lid_mgroup.h"

#include "lib/mgroup/group_format.h"
#include "lib/util/accounting.h"

namespace {

// States with at least this many outgoing bytes are searched by halving.
constexpr int kBinaryFrom = 5;

template <typename T>
void release(T** array, int* tsize, int elem_size) {
  if (*array != nullptr) free_chk(*array, *tsize * elem_size);
  *array = nullptr;
  *tsize = 0;
}

}  // namespace

CLidMGroup::~CLidMGroup() { clean(); }

void CLidMGroup::init0() {
  fact_table = nullptr;
  models_part = CmgModels();
  nb_models = 0;
  min_for_direct = 256;
  istates = nullptr;
  istates_tsize = 0;
  istates_chrs = nullptr;
  istates_chrs_tsize = 0;
  istates_dnxts = nullptr;
  istates_dnxts_tsize = 0;
  nb_istates = -1;
  lstates = nullptr;
  lstates_tsize = 0;
  lstates_vals = nullptr;
  lstates_vals_tsize = 0;
  def_so = nullptr;
  def_so_tsize = 0;
  allocated = 0;
  walk_last_byte = 0;
  walk_state = 0;
  verbose = 0;
}

int CLidMGroup::allocs() {
  allocated = 1;
  istates = static_cast<CLidMGState*>(
      malloc_chk_as(istates_tsize * orva::kStoredStateSize,
                    static_cast<size_t>(istates_tsize) * sizeof(CLidMGState)));
  istates_chrs = static_cast<unsigned char*>(malloc_chk(istates_chrs_tsize));
  istates_dnxts = static_cast<int32_t*>(malloc_chk(istates_dnxts_tsize * 4));
  lstates = static_cast<uint32_t*>(malloc_chk(lstates_tsize * 4));
  lstates_vals = static_cast<uint16_t*>(malloc_chk(lstates_vals_tsize * 2));
  def_so = static_cast<uint16_t*>(malloc_chk(def_so_tsize * 2));
  const bool ok = istates != nullptr && istates_chrs != nullptr && istates_dnxts != nullptr &&
                  lstates != nullptr && lstates_vals != nullptr && def_so != nullptr;
  return ok ? 0 : -1;
}

void CLidMGroup::frees() {
  if (allocated == 0) return;
  release(&istates, &istates_tsize, orva::kStoredStateSize);
  release(&istates_chrs, &istates_chrs_tsize, 1);
  release(&istates_dnxts, &istates_dnxts_tsize, 4);
  release(&lstates, &lstates_tsize, 4);
  release(&lstates_vals, &lstates_vals_tsize, 2);
  release(&def_so, &def_so_tsize, 2);
  allocated = 0;
}

void CLidMGroup::clean() {
  delete fact_table;
  fact_table = nullptr;
  frees();
  models_part.clean();
}

unsigned char* CLidMGroup::istate_get_chrs_and_offset(int istate, unsigned char* chrs, int* nchrs,
                                                      int* offset) const {
  const CLidMGState& state = istates[istate];
  const int first = orva::state_first(state.info);
  if (first != 0) {
    *nchrs = orva::state_count(state.info);
    *offset = first;
    return state.ref.chrs;
  }
  *nchrs = 0;
  *offset = 0;
  for (int c = 0; c < orva::kNbBytes; ++c) {
    const int next = state.ref.dnxts[c];
    if (next == 0) continue;
    if (*nchrs == 0) *offset = next;
    chrs[(*nchrs)++] = static_cast<unsigned char>(c);
  }
  return chrs;
}

int CLidMGroup::child(int istate, unsigned char c) const {
  const CLidMGState& state = istates[istate];
  const int first = orva::state_first(state.info);
  if (first == 0) return state.ref.dnxts[c];
  const unsigned char* chrs = state.ref.chrs;
  const int count = orva::state_count(state.info);
  if (count < kBinaryFrom) {
    int k = 0;
    while (k < count && chrs[k] < c) ++k;
    return k < count && chrs[k] == c ? first + k : 0;
  }
  int lo = 0;
  int hi = count - 1;
  while (lo <= hi) {
    const int mid = (lo + hi + 1) >> 1;
    if (chrs[mid] == c) return first + mid;
    if (chrs[mid] > c) {
      hi = mid - 1;
    } else {
      lo = mid + 1;
    }
  }
  return 0;
}
