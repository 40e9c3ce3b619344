// HomeForms: what the models of a home see of a text that is written in letter codes.
//
//   orva::HomeForms forms(home_alphabet, models.folding());
//   size_t size = forms.fold(codes, from, end, folded);
//
// Life cycle: made whole by the constructor, constant from then on.
// Ownership:  none.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_HOME_FORMS_H_
#define ORVA_LIB_DETECT_HOME_FORMS_H_

#include <cstddef>
#include <vector>

#include "lib/detect/letter_codes.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/trigram_walk.h"

namespace orva {

class HomeForms {
 public:
  HomeForms(const HomeAlphabet& home, const Folding& folding);

  bool lacks(LetterCode code) const { return lacks_[code] != 0; }

  // So many bytes are written at once, and may lie beyond the end.
  static constexpr size_t kSlack = sizeof(LetterForm) + 16;
  // Writes the bytes whose trigrams the models see of the codes up to `end`, those with their last
  // byte at `from` or behind it; returns how many. REQUIRES: room for LetterForm::kLongest each and
  // kSlack.
  size_t fold(const LetterCode* begin, const LetterCode* from, const LetterCode* end,
              unsigned char* folded) const;

 private:
  unsigned char* write(const LetterCode* from, const LetterCode* to, unsigned char* end) const;
  size_t fold_plain(const LetterCode* begin, const LetterCode* from, const LetterCode* end,
                    unsigned char* folded) const;

  Folding folding_;
  std::vector<LetterForm> forms_;         // by code
  std::vector<LetterForm> folded_forms_;  // likewise, as models see them
  std::vector<char> lacks_;               // likewise
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_HOME_FORMS_H_
