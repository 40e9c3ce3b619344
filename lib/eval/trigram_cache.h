// TrigramCache: the trigrams that texts have had lately, and how often each came in a run of bytes.
//
// Texts use few of all trigrams, and in the cache these lie together, in the order in which they
// first came. A hash table finds a trigram's number; a trigram that is found elsewhere than at its
// home moves there once it comes more often than the one at home.
//
// Life cycle: count fills the list of counted trigrams, whose counts the caller sets back to 0;
// when
//             it is full, clear and count_waiting.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_TRIGRAM_CACHE_H_
#define ORVA_LIB_EVAL_TRIGRAM_CACHE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "lib/eval/trigram.h"
#include "lib/eval/trigram_rows.h"

namespace orva {

class TrigramCache {
 public:
  static constexpr size_t kMostTrigrams = 65535;
  static constexpr size_t kMostCounted = 10000;  // bytes in one run

  explicit TrigramCache(TrigramRows* rows);

  // Counts the trigrams that end in buf[0], ..., buf[n - 1], where the byte pair `pair` comes
  // before buf. Those that find no room wait. REQUIRES: n <= kMostCounted.
  void count(unsigned pair, const unsigned char* buf, size_t n);

  // Whether trigrams wait, and after clear counts these.
  bool is_full() const { return !waiting_.empty(); }
  void clear();
  void count_waiting();

  // Numbers of the trigrams counted, each once.
  const uint16_t* counted() const { return counted_.data(); }
  size_t nb_counted() const { return nb_counted_; }
  Trigram& trigram(uint16_t number) { return trigrams_[number]; }
  TrigramRest& rest(uint16_t number) { return rests_[number]; }
  // The models that values of a trigram count for.
  const ModelSet& models(uint16_t number) const { return models_[number]; }

 private:
  template <typename ForEachKey>
  void count_keys(const ForEachKey& for_each);
  uint16_t find_away(uint32_t key);
  uint16_t add(uint32_t key, uint16_t* place);

  TrigramRows* rows_;
  std::vector<uint16_t> table_;    // numbers of trigrams; 0 where there is none
  std::vector<Trigram> trigrams_;  // number 0 is none
  std::vector<TrigramRest> rests_;
  std::unique_ptr<ModelSet[]> models_;
  std::vector<uint16_t> counted_;
  size_t nb_trigrams_ = 1;
  size_t nb_counted_ = 0;
  size_t limit_ = 0;               // of trigrams, while they are counted
  std::vector<uint32_t> waiting_;  // keys, as often as they were to be counted
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_CACHE_H_
