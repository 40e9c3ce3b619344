// TrigramCache: the trigrams that texts have had lately, and how often each came in a run of bytes.
//
// Texts use few of all trigrams, and in the cache these lie together, in the order in which they
// first came. A hash table finds a trigram's number; a trigram that is found elsewhere than at its
// home moves there once it comes more often than the one at home.
//
// Life cycle: count fills the list of counted trigrams, whose counts the caller sets back to 0. At
//             most room() bytes at a time; clear makes room.
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
  static constexpr size_t kMostTrigrams = 60000;
  static constexpr size_t kMostCounted = 10000;  // bytes in one run

  explicit TrigramCache(TrigramRows* rows);

  // How many bytes can be counted without clearing.
  size_t room() const;
  void clear();

  // Counts the trigrams that end in buf[0], ..., buf[n - 1], where the byte pair `pair` comes
  // before buf. REQUIRES: n <= room().
  void count(unsigned pair, const unsigned char* buf, size_t n);

  // Numbers of the trigrams counted, each once.
  const uint16_t* counted() const { return counted_.data(); }
  size_t nb_counted() const { return nb_counted_; }
  Trigram& trigram(uint16_t number) { return trigrams_[number]; }
  TrigramRest& rest(uint16_t number) { return rests_[number]; }
  // The models that values of a trigram count for.
  const ModelSet& models(uint16_t number) const { return models_[number]; }

 private:
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
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_CACHE_H_
