// The trigrams of a text as a group's models were trained on them: runs cut, capitals folded,
// digits and blanks left out, as the group's switches ask.
//
//   orva::walk_trigrams(text, 0, folding, [](const unsigned char* bytes, size_t count) { ... });
//
// Life cycle: a Folding is made once for each group, constant from then on.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_TRIGRAM_WALK_H_
#define ORVA_LIB_DETECT_TRIGRAM_WALK_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

#include "lib/mgroup/cmg_models.h"

namespace orva {

// What each byte becomes.
class Folding {
 public:
  static constexpr uint16_t kLeftOut = 0x100;
  explicit Folding(const CmgModels& switches);

  uint16_t operator[](unsigned char byte) const { return to_[byte]; }
  // Writes what becomes of text[i]; returns how many bytes: 1 or 0.
  size_t take(std::string_view text, size_t i, unsigned char* to) const {
    if (i > 0 && text[i] == text[i - 1] && cuts(text, i)) return 0;
    const uint16_t as = to_[static_cast<unsigned char>(text[i])];
    *to = static_cast<unsigned char>(as);
    return as < kLeftOut ? 1 : 0;
  }
  // Whether text[i] is one too many of a run of equal bytes.
  bool cuts(std::string_view text, size_t i) const {
    if (!cuts_runs_ || i < kLongestRun) return false;
    const char last = text[i];
    return text[i - 1] == last && text[i - 2] == last && text[i - 3] == last;
  }

 private:
  static constexpr size_t kLongestRun = 3;

  uint16_t to_[256];
  bool cuts_runs_;
};

// So many trigrams are looked up together, so that they wait for the memory together.
inline constexpr size_t kTrigramsAtOnce = 64;

// Keeps the last two bytes; returns how many there are.
inline size_t keep_context(unsigned char* folded, size_t size) {
  if (size <= 2) return size;
  memmove(folded, folded + size - 2, 2);
  return 2;
}

// Calls visit(bytes, count), some times, for `count` trigrams that begin at bytes[0], bytes[1] and
// so on: those of `text` whose last byte stands at `from` or behind it.
template <typename Visit>
inline void walk_trigrams(std::string_view text, size_t from, const Folding& folding, Visit visit) {
  unsigned char folded[kTrigramsAtOnce + 2];
  size_t size = 0;
  const auto take = [&](size_t i) { size += folding.take(text, i, folded + size); };
  size_t i = 0;
  for (; i < std::min(from, text.size()); ++i) {
    take(i);
    size = keep_context(folded, size);
  }
  while (i < text.size()) {
    const size_t until = std::min(text.size(), i + std::size(folded) - size);
    for (; i < until; ++i) take(i);
    if (size < std::size(folded)) continue;
    visit(folded, kTrigramsAtOnce);
    memcpy(folded, folded + kTrigramsAtOnce, 2);
    size = 2;
  }
  if (size > 2) visit(folded, size - 2);
}

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TRIGRAM_WALK_H_
