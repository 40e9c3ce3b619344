// Reading the models of a group.

#include "lib/build/lid_mg_build_data.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "lib/trichr/trichr_model.h"
#include "lib/util/accounting.h"

template class TCExpndTable<LidMgbdWord>;

namespace {

// The model being read: its index and fact set, or no set; then its path.
constexpr char kMsgModelInFact[] = "[%2d] F %2d  ";
constexpr char kMsgModel[] = "[%2d]       ";
constexpr char kMsgPath[] = "%s\n";
// The preprocessing flags of the group.
constexpr char kMsgFlags[] = "RmDups %d, RmCaps %d, RmDgts %d  RmBlks %d\n";

constexpr float kNoMin = 100000.0f;
constexpr float kNoMax = -1.0f;
// Single-byte costs this close to that of the unseen are not stored.
constexpr double kUnseenMargin = 0.01;
constexpr int kTrigramLength = 3;

// A key as a number: its longest beginning of hexadecimal digits, of which 24 bits count.
unsigned parse_key(const unsigned char* key) {
  unsigned value = 0;
  for (;; ++key) {
    const unsigned c = *key;
    if (c >= '0' && c <= '9') {
      value = value << 4 | (c - '0');
    } else if ((c | 0x20) >= 'a' && (c | 0x20) <= 'f') {
      value = value << 4 | ((c | 0x20) - 'a' + 10);
    } else {
      return value & 0xffffff;
    }
  }
}

void widen(float cost, float* lpmin, float* lpmax) {
  *lpmin = std::min(*lpmin, cost);
  *lpmax = std::max(*lpmax, cost);
}

// Kept: pairs of the single bytes are never given back; this function's name is what the leak
// checker knows them by.
[[gnu::noinline]] int insert_unigram(CLidMGBuildData* bd, int byte, int model, float cost) {
  return bd->table_insert(bd->uch_words, CLidMGBuildData::kNbBytes, byte, model, cost);
}

}  // namespace

CLidMGBuildData::CLidMGBuildData() {
  uch_words.expand(kNbBytes);
  init0();
}

CLidMGBuildData::~CLidMGBuildData() { clean(); }

void CLidMGBuildData::init0() {
  nb_words = 0;
  nb_models = 0;
  nb_word_vals = 0;
  nb_uch_vals = 0;
  // Kept: entries of single bytes are made empty without giving back what they hold.
  for (int c = 0; c < kNbBytes; ++c) table_elem_init(uch_words, c);
}

void CLidMGBuildData::clean() {
  table_clean(words, nb_words);
  // Word indices start again at 0, so the trie starts again with them.
  trie.clean();
  trie.init0();
  nb_words = 0;
  nb_models = 0;
  nb_word_vals = 0;
}

void CLidMGBuildData::table_elem_init(TCExpndTable<LidMgbdWord>& table, int index) {
  table[static_cast<unsigned>(index)] = {nullptr, nullptr, 0, 0};
}

void CLidMGBuildData::table_clean(TCExpndTable<LidMgbdWord>& table, int nb) {
  for (int i = 0; i < nb; ++i) {
    LidMgbdWord& word = table[static_cast<unsigned>(i)];
    if (word.vals != nullptr) {
      free_chk(word.vals, word.cap * static_cast<int>(sizeof(LidMgbdVal)));
    }
    if (word.qvals != nullptr) free_chk(word.qvals, word.cap);
    table_elem_init(table, i);
  }
}

int CLidMGBuildData::table_insert(TCExpndTable<LidMgbdWord>& table, int nb, int index, int model,
                                  float cost) try {
  if (index == nb) {
    table.expand(static_cast<unsigned>(nb) + 1);
    table_elem_init(table, index);
    ++nb;
  }
  LidMgbdWord& word = table[static_cast<unsigned>(index)];
  if (word.nb == word.cap) {
    const int cap = word.cap + kCapStep;
    word.vals = static_cast<LidMgbdVal*>(
        orva::grow_block(word.vals, word.cap, cap, sizeof(LidMgbdVal), sizeof(LidMgbdVal)));
    word.cap = cap;
  }
  word.vals[word.nb++] = {model, cost};
  return nb;
} catch (const orva::GrowthFailed&) {
  return -1;
}

int CLidMGBuildData::get_model_data(char** model_paths, int count, const CLidMGFact* fact) try {
  clean();
  init0();
  if (count < 0 || count > kMaxModels) return kBuildFailed;
  nb_models = count;
  for (int m = 0; m < nb_models; ++m) {
    models[m] = {0, 0, kNoMin, kNoMax, 0, kNoMin, kNoMax, 0};
  }
  for (int m = 0; m < nb_models; ++m) {
    const int result = add_model(m, model_paths[m], fact);
    if (result != kBuildOk) return result;
  }
  if (uch_lp_convert(fact) != 0) return kBuildFailed;
  if (table_factorize(words, nb_words, fact, &nb_word_vals) != 0) return kBuildFailed;
  if (table_factorize(uch_words, kNbBytes, fact, &nb_uch_vals) != 0) return kBuildFailed;
  return kBuildOk;
} catch (const std::bad_alloc&) {
  return kBuildFailed;
}

int CLidMGBuildData::add_model(int m, const char* path, const CLidMGFact* fact) {
  if (verbose != 0) {
    const int set = fact->fact_of_model[m];
    if (set >= 0) {
      fprintf(stderr, kMsgModelInFact, m, set);
    } else {
      fprintf(stderr, kMsgModel, m);
    }
    fprintf(stderr, kMsgPath, path);
  }
  CTrichrModel model;
  if (model.load(path) != kTrichrOk) return kBuildFailed;
  if (take_flags(m, model) != 0) return kBuildOtherFlags;
  models[m].uch_normlp = model.lp_const;
  models[m].tri_normlp =
      static_cast<float>(static_cast<long double>(model.lp_base) +
                         static_cast<long double>(model.lp_unseen) * model.lp_scale);
  if (add_unigrams(m, model) != 0 || add_trigrams(m, model) != 0) return kBuildFailed;
  return kBuildOk;
}

int CLidMGBuildData::take_flags(int m, const CTrichrModel& model) {
  if (m == 0) {
    rm_tridups = model.rm_tridups;
    rm_caps = model.rm_caps;
    rm_digits = model.rm_digits;
    rm_blks = model.rm_blks;
    if (verbose != 0) printf(kMsgFlags, rm_tridups, rm_caps, rm_digits, rm_blks);
  }
  const bool same = model.rm_tridups == rm_tridups && model.rm_caps == rm_caps &&
                    model.rm_digits == rm_digits && model.rm_blks == rm_blks;
  return same ? 0 : -1;
}

int CLidMGBuildData::add_unigrams(int m, const CTrichrModel& model) {
  const double threshold = static_cast<double>(model.lp_unseen) - kUnseenMargin;
  for (int c = 0; c < kNbBytes; ++c) {
    const float cost = model.uch_lps[c] < 0 ? model.lp_unseen : model.uch_lps[c];
    if (static_cast<double>(cost) >= threshold) continue;
    if (insert_unigram(this, c, m, cost) < 0) return -1;
    ++nb_uch_vals;
    widen(cost, &models[m].uch_lpmin, &models[m].uch_lpmax);
  }
  return 0;
}

int CLidMGBuildData::add_trigrams(int m, const CTrichrModel& model) {
  // Positions beyond the keys are costs that repeated keys left over; they belong to no trigram.
  const int count = std::min(model.nb_tri, model.nb_elems);
  for (int i = 0; i < count; ++i) {
    const unsigned trigram = parse_key(model.key(i));
    const unsigned char path[kTrigramLength] = {static_cast<unsigned char>(trigram >> 16),
                                                static_cast<unsigned char>(trigram >> 8),
                                                static_cast<unsigned char>(trigram)};
    TrieNodeSeg* leaf = trie.add_path(path, kTrigramLength);
    if (leaf->word < 0) leaf->word = nb_words;
    const int nb = table_insert(words, nb_words, leaf->word, m, model.tri_lps[i]);
    if (nb < 0) return -1;
    nb_words = nb;
    ++nb_word_vals;
    widen(model.tri_lps[i], &models[m].tri_lpmin, &models[m].tri_lpmax);
  }
  return 0;
}
