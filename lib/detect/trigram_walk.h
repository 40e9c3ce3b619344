// The trigrams of a text as a group's models were trained on them: runs cut, capitals folded,
// digits and blanks left out, as the group's switches ask.
//
//   orva::walk_trigrams(text, folding, [](size_t at, auto a, auto b, auto c) { ... });
//
// Life cycle: a Folding is made once for each group, constant from then on.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_TRIGRAM_WALK_H_
#define ORVA_LIB_DETECT_TRIGRAM_WALK_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lib/mgroup/cmg_models.h"

namespace orva {

// What each byte becomes.
class Folding {
 public:
  static constexpr uint16_t kLeftOut = 0x100;
  // Of a run of equal bytes so many are kept.
  static constexpr int kLongestRun = 3;

  explicit Folding(const CmgModels& switches);

  uint16_t operator[](unsigned char byte) const { return to_[byte]; }
  bool cuts_runs() const { return cuts_runs_; }

 private:
  uint16_t to_[256];
  bool cuts_runs_;
};

// Calls visit(at, a, b, c) for each trigram; `at` is where its last byte stands in `text`.
template <typename Visit>
inline void walk_trigrams(std::string_view text, const Folding& folding, Visit visit) {
  const int longest = folding.cuts_runs() ? Folding::kLongestRun : -1;
  unsigned char before = 0;
  unsigned char last = 0;
  int missing = 2;  // bytes that only set up the context
  int run = 0;
  int last_raw = -1;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto raw = static_cast<unsigned char>(text[i]);
    run = raw == last_raw ? run + 1 : 1;
    last_raw = raw;
    if (longest >= 0 && run > longest) continue;
    const uint16_t to = folding[raw];
    if (to == Folding::kLeftOut) continue;
    const auto c = static_cast<unsigned char>(to);
    if (missing > 0) {
      --missing;
    } else {
      visit(i, before, last, c);
    }
    before = last;
    last = c;
  }
}

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TRIGRAM_WALK_H_
