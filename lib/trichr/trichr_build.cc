// Training: from text to costs.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <ctime>

#include "lib/tc/expt_sort.h"
#include "lib/tc/word_freq.h"
#include "lib/trichr/trichr_model.h"
#include "lib/trichr/trigram_counter.h"
#include "lib/trichr/v25a_format.h"
#include "lib/util/accounting.h"
#include "lib/util/text.h"

namespace {

// Bytes counted so far; then bytes, distinct trigrams and bigrams, and the time taken.
constexpr char kMsgProgress[] = "\rMBuild.P1: N %6d        ";
constexpr char kMsgCounted[] = "\rMBuild.P1: N %6d  T %6d  B %6d    T %s\n";
constexpr int kProgressStep = 100000;

constexpr float kLpBase = 1.0f;
constexpr float kLpScale = 2.0f;
constexpr float kLpConst = 2.0f;
constexpr float kNeverSeen = -1.0f;

int milliseconds() { return static_cast<int>(static_cast<double>(clock()) / 1000000.0 * 1000.0); }

// Counts the whole text and returns its length.
int count_text(CLidFacs& facs, orva::TrigramCounter& counter, bool verbose) {
  int nb_bytes = 0;
  int last_progress = 0;
  int len = 0;
  unsigned char* context = nullptr;
  while (const unsigned char* run = facs.get_nexts(&len, &context)) {
    if (len > CTrichrModel::kMaxText - nb_bytes) break;
    if (context != nullptr) counter.set_context(context);
    counter.add(run, len);
    nb_bytes += len;
    if (verbose && nb_bytes - last_progress > kProgressStep) {
      fprintf(stderr, kMsgProgress, nb_bytes);
      last_progress = nb_bytes;
    }
  }
  return nb_bytes;
}

// The records of all trigrams, ascending by frequency; those of one frequency in reverse order of
// first appearance.
void sorted_words(const orva::TrigramCounter& counter, TCExpndTable<WordFreq>& words) {
  const unsigned count = counter.nb_trigrams();
  words.expand(count);
  for (unsigned i = 0; i < count; ++i) {
    words[i] = {static_cast<int>(i), counter.freq(i),
                static_cast<unsigned char>(counter.trigram(i) & 0xff)};
  }
  TCExpTSortImm<WordFreq>(&words, offsetof(WordFreq, freq), kIntKey)
      .sort(0, static_cast<int>(count));
}

int first_of_frequency(const TCExpndTable<WordFreq>& words, int count, int min_freq) {
  int first = 0;
  while (first < count && words[static_cast<unsigned>(first)].freq < min_freq) ++first;
  return first;
}

// The first of the most frequent words that make up `coverage` of a text of `nb_bytes`. The word
// that carries the sum past the mark is kept.
int first_of_coverage(const TCExpndTable<WordFreq>& words, int count, float coverage,
                      int nb_bytes) {
  const long double part =
      std::clamp(static_cast<long double>(coverage) * nb_bytes, 0.0L, 1.0L * nb_bytes);
  const int mark = static_cast<int>(part);
  int sum = 0;
  int first = count;
  while (first > 0 && sum <= mark) {
    --first;
    sum += words[static_cast<unsigned>(first)].freq;
  }
  return first;
}

void write_key(unsigned trigram, unsigned char* key) {
  constexpr char kDigits[] = "0123456789abcdef";
  for (int i = orva::kV25aKeyLength - 1; i >= 0; --i) {
    key[i] = static_cast<unsigned char>(kDigits[trigram & 0xf]);
    trigram >>= 4;
  }
  key[orva::kV25aKeyLength] = 0;
}

// Costs are computed in extended precision, left to right, and rounded once.
struct Costs {
  long double weight;  // of the trigram against the single byte
  int nb_bytes;

  long double byte_part(int count) const { return (1 - weight) * count / (nb_bytes + 2.0L); }
  float byte_cost(int count) const {
    return count == 0 ? kNeverSeen : static_cast<float>(-std::log(byte_part(count)));
  }
  // Kept: 1 and 26 are part of the model; other numbers would be another model.
  float trigram_cost(int freq, int bigram_total, int count) const {
    const long double seen = weight * (freq + 1.0L) / (bigram_total + 26.0L);
    return static_cast<float>(-std::log(seen + byte_part(count)));
  }
};

}  // namespace

void CTrichrModel::build(CLidFacs& facs, int max_tri, int min_freq, float tri_weight,
                         float coverage, int rm_tridups_in, int rm_caps_in, int rm_digits_in,
                         int rm_blks_in) try {
  orva::TrigramCounter counter;
  init();
  rm_tridups = rm_tridups_in;
  rm_caps = rm_caps_in;
  rm_digits = rm_digits_in;
  rm_blks = rm_blks_in;
  const int start = milliseconds();
  const int nb_bytes = count_text(facs, counter, verbose != 0);
  const int count = static_cast<int>(counter.nb_trigrams());
  training = {nb_bytes, count, counter.nb_bigrams()};
  if (verbose != 0) {
    fprintf(stderr, kMsgCounted, nb_bytes, count, counter.nb_bigrams(),
            str_time(milliseconds() - start));
  }

  const Costs costs = {static_cast<long double>(tri_weight), nb_bytes};
  for (int v = 0; v < kNbBytes; ++v) {
    uch_lps[v] = costs.byte_cost(counter.byte_count(static_cast<unsigned char>(v)));
  }
  TCExpndTable<WordFreq> words;
  sorted_words(counter, words);
  int first = 0;
  if (min_freq > 0) {
    first = first_of_frequency(words, count, min_freq);
  } else if (coverage > 0) {
    max_tri = 100000000;
    first = first_of_coverage(words, count, coverage, nb_bytes);
  }

  const int kept = std::clamp(max_tri, 0, count - first);
  if (kept > 0) tri_lps = static_cast<float*>(orva::new_block(kept, sizeof(float), 4));
  tri_lps_tsize = kept;
  nb_tri = kept;
  for (int i = count - 1; i >= count - kept; --i) {
    const WordFreq& word = words[static_cast<unsigned>(i)];
    const unsigned trigram = counter.trigram(static_cast<unsigned>(word.word));
    unsigned char key_text[orva::kV25aKeySize];
    write_key(trigram, key_text);
    int added = 0;
    const int index = find_or_add(key_text, &added);
    tri_lps[index] = costs.trigram_cost(word.freq, counter.bigram_total(trigram >> 8),
                                        counter.byte_count(word.chr));
  }
  lp_base = kLpBase;
  lp_scale = kLpScale;
  lp_const = kLpConst;
} catch (const orva::GrowthFailed&) {
  init();
}
