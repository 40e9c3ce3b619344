// LetterCodes: texts of single-byte charsets as numbers that mean the same in all of them: ASCII
// stands for itself, each letter beyond it has a number from kFirstLetter on. Readings that are
// written alike in one home are so in all, so that a text is written once for each reading, and
// what becomes of it in a home is asked about once for all readings that agree.
//
//   const orva::LetterCodes& codes = orva::letter_codes_of(charset);
//   end = codes.write(text, from, to, begin, end);
//
// Life cycle: made once for each charset, constant from then on.
// Ownership:  they live as long as the program.
// Threads:    any number.
#ifndef ORVA_LIB_DETECT_LETTER_CODES_H_
#define ORVA_LIB_DETECT_LETTER_CODES_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "lib/detect/alphabet.h"

namespace orva {

using LetterCode = uint16_t;
inline constexpr LetterCode kFirstLetter = 0x80;

// The small letters outside ASCII of all single-byte charsets, ascending: that of kFirstLetter
// first.
const std::vector<uint16_t>& coded_letters();

class LetterCodes {
 public:
  explicit LetterCodes(const Alphabet& alphabet);

  // Whether a byte is a letter outside ASCII, and which.
  bool is_letter(unsigned char byte) const { return codes_[byte] >= kFirstLetter; }
  LetterCode of(unsigned char byte) const { return codes_[byte]; }
  // Writes text[from, to) behind what was written from `begin` to `end`, as Rewriting does; returns
  // the new end. REQUIRES: room for a code for each byte.
  LetterCode* write(std::string_view text, size_t from, size_t to, const LetterCode* begin,
                    LetterCode* end) const;

 private:
  // What a byte that is not always written alike may become.
  enum Special : uint8_t { kNothing, kBlank, kQuote };

  bool is_within_word(std::string_view text, size_t at) const;

  const Alphabet& alphabet_;
  LetterCode codes_[256] = {};  // 0: see special_
  Special special_[256] = {};
};

// REQUIRES: `charset` is the index of a single-byte one.
const LetterCodes& letter_codes_of(int charset);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_LETTER_CODES_H_
