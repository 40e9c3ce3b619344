// The automaton of a group, made from the trie of its trigrams.

#include <algorithm>
#include <climits>

#include "lib/build/lid_mg_build_data.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/tc/trie_fsa_enum.h"
#include "lib/util/accounting.h"

namespace {

constexpr int kMaxInternal = 65536;   // default successors are 16-bit numbers
constexpr int kMaxStates = 16777215;  // successors are 24-bit numbers
constexpr int kMaxValues = 8388607;   // first values are signed 24-bit numbers
constexpr int kMaxCount = 255;        // counts are bytes

// A state as the enumerator tells it.
struct State {
  int nb_chrs = 0;
  int word = -1;
  unsigned char chrs[orva::kNbBytes];

  bool next(TCTrieFsaEnum<unsigned char>& states) { return states.next(&nb_chrs, chrs, &word); }
  bool is_leaf() const { return word >= 0; }
};

// What the counting pass finds.
struct Sizes {
  int nb_istates = 0;
  int nb_direct = 0;
  int nb_chrs = 0;
  bool fits = true;

  Sizes(const TCTrie<unsigned char>& trie, int min_for_direct) {
    TCTrieFsaEnum<unsigned char> states;
    states.init0(&trie);
    State state;
    while (fits && state.next(states) && !state.is_leaf()) {
      ++nb_istates;
      if (state.nb_chrs >= min_for_direct) {
        ++nb_direct;
      } else {
        nb_chrs += state.nb_chrs;
        fits = state.nb_chrs <= kMaxCount;
      }
      fits = fits && nb_istates <= kMaxInternal;
    }
  }
};

bool values_fit(const CLidMGBuildData& bd) {
  if (bd.nb_word_vals > kMaxValues) return false;
  for (int w = 0; w < bd.nb_words; ++w) {
    if (bd.words[static_cast<unsigned>(w)].nb > kMaxCount) return false;
  }
  return true;
}

// Allocates what the automaton needs but its default successors. 0 or -1.
int alloc_states(CLidMGroup* g, const Sizes& sizes, const CLidMGBuildData& bd) {
  g->istates_tsize = sizes.nb_istates;
  g->istates_chrs_tsize = sizes.nb_chrs;
  g->istates_dnxts_tsize = sizes.nb_direct == 0 ? 1 : orva::kNbBytes * sizes.nb_direct;
  g->lstates_tsize = bd.nb_words;
  g->lstates_vals_tsize = bd.nb_word_vals;
  g->def_so_tsize = 0;
  g->allocated = 1;
  g->istates = static_cast<CLidMGState*>(
      malloc_chk_as(g->istates_tsize * orva::kStoredStateSize,
                    static_cast<size_t>(g->istates_tsize) * sizeof(CLidMGState)));
  // Kept: no block is had for a size of 0, so a group with an empty array cannot be built: one
  // without trigrams, or one whose states are all direct.
  g->istates_chrs = static_cast<unsigned char*>(malloc_chk(g->istates_chrs_tsize));
  g->istates_dnxts = static_cast<int32_t*>(malloc_chk(g->istates_dnxts_tsize * 4));
  g->lstates = static_cast<uint32_t*>(malloc_chk(g->lstates_tsize * 4));
  g->lstates_vals = static_cast<uint16_t*>(malloc_chk(g->lstates_vals_tsize * 2));
  const bool ok = g->istates != nullptr && g->istates_chrs != nullptr &&
                  g->istates_dnxts != nullptr && g->lstates != nullptr &&
                  g->lstates_vals != nullptr;
  return ok ? 0 : -1;
}

// Fills the internal states, the first ones that `states` gives.
void fill_internal(CLidMGroup* g, TCTrieFsaEnum<unsigned char>& states) {
  int next_number = 1;
  unsigned char* chrs = g->istates_chrs;
  int32_t* row = g->istates_dnxts;
  // Without direct states the one entry is a 0.
  std::fill_n(g->istates_dnxts, g->istates_dnxts_tsize, 0);
  State state;
  for (int s = 0; s < g->nb_istates && state.next(states); ++s) {
    CLidMGState& out = g->istates[s];
    if (state.nb_chrs >= g->min_for_direct) {
      out.info = 0;
      out.ref.dnxts = row;
      for (int k = 0; k < state.nb_chrs; ++k) row[state.chrs[k]] = next_number + k;
      row += orva::kNbBytes;
    } else {
      out.info = orva::state_info(next_number, state.nb_chrs);
      out.ref.chrs = chrs;
      chrs = std::copy_n(state.chrs, state.nb_chrs, chrs);
    }
    next_number += state.nb_chrs;
  }
}

// Fills the leaves, the states that remain.
void fill_leaves(CLidMGroup* g, TCTrieFsaEnum<unsigned char>& states, const CLidMGBuildData& bd) {
  State state;
  int at = 0;
  for (int leaf = 0; leaf < g->lstates_tsize && state.next(states); ++leaf) {
    const LidMgbdWord& word = bd.words[static_cast<unsigned>(state.word)];
    g->lstates[leaf] = orva::state_info(at, word.nb);
    for (int k = 0; k < word.nb; ++k) {
      g->lstates_vals[at++] =
          static_cast<uint16_t>((word.vals[k].model & 0xff) | word.qvals[k] << 8);
    }
  }
}

// The state that the walk is in after the bytes c2 c3 alone, when c3 alone leads to `by_last`.
int default_successor(const CLidMGroup& g, int by_middle, unsigned char c3, int by_last) {
  const int by_both = by_middle == 0 ? 0 : g.child(by_middle, c3);
  return by_both != 0 ? by_both : by_last;
}

}  // namespace

int CLidMGroup::build_enum_trie(CLidMGBuildData* bd) try {
  const Sizes sizes(bd->trie, min_for_direct);
  if (!sizes.fits || !values_fit(*bd)) return -1;
  if (bd->nb_words > kMaxStates - sizes.nb_istates) return -1;
  nb_istates = sizes.nb_istates;
  if (alloc_states(this, sizes, *bd) != 0) return -1;
  TCTrieFsaEnum<unsigned char> states;
  states.init0(&bd->trie);
  fill_internal(this, states);
  fill_leaves(this, states, *bd);
  return 0;
} catch (const orva::GrowthFailed&) {
  return -1;
}

int CLidMGroup::build_def_so() {
  unsigned char buffers[3][orva::kNbBytes];
  int counts[3];
  int firsts[3];
  int by_last[orva::kNbBytes];
  for (int c = 0; c < orva::kNbBytes; ++c) by_last[c] = child(0, static_cast<unsigned char>(c));

  istate_get_chrs_and_offset(0, buffers[0], &counts[0], &firsts[0]);
  for (int i = 0; i < counts[0]; ++i) {
    const unsigned char* chrs2 =
        istate_get_chrs_and_offset(firsts[0] + i, buffers[1], &counts[1], &firsts[1]);
    for (int j = 0; j < counts[1]; ++j) {
      const unsigned char* chrs3 =
          istate_get_chrs_and_offset(firsts[1] + j, buffers[2], &counts[2], &firsts[2]);
      const int by_middle = by_last[chrs2[j]];
      for (int k = 0; k < counts[2]; ++k) {
        def_so[firsts[2] + k - nb_istates] =
            static_cast<uint16_t>(default_successor(*this, by_middle, chrs3[k], by_last[chrs3[k]]));
      }
    }
  }
  return 0;
}
