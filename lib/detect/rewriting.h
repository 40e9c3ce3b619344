// Rewriting: a text of one single-byte charset written in another, or in UTF-8, for models of that.
//
// Life cycle: made once for each charset and home, constant from then on.
// Ownership:  alphabets are not owned.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_REWRITING_H_
#define ORVA_LIB_DETECT_REWRITING_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/alphabet.h"
#include "lib/detect/placement.h"

namespace orva {

// Where letters stand in the charset of a model.
class HomeAlphabet {
 public:
  // Null stands for UTF-8.
  explicit HomeAlphabet(const uint16_t* table);

  bool is_utf8() const { return bytes_.empty(); }
  // The byte above 0x7F that decodes to `value`; 0 when there is none.
  unsigned char byte_for(uint32_t value) const { return value < bytes_.size() ? bytes_[value] : 0; }

 private:
  std::vector<unsigned char> bytes_;  // by character, for those below kLetterEnd
};

// The bytes of a home that stand for one letter.
struct LetterForm {
  static constexpr size_t kLongest = 3;

  char bytes[kLongest] = {};
  uint8_t length = 0;

  void add(unsigned char byte) { bytes[length++] = static_cast<char>(byte); }
};
static_assert(sizeof(LetterForm) == 4);

// How a home writes a letter outside ASCII; false when it lacks it.
bool put_letter(uint16_t letter, const HomeAlphabet& home, LetterForm* form);

class Rewriting {
 public:
  Rewriting(const Alphabet& from, const HomeAlphabet& home);

  // Bytes that one may become.
  static constexpr size_t kLongest = LetterForm::kLongest;

  // Writes text[from, to) in the home, behind what was written from `begin` to `end`; returns the
  // new end. REQUIRES: room for kLongest bytes each.
  char* write(std::string_view text, size_t from, size_t to, const char* begin, char* end) const;
  std::string apply(std::string_view text) const {
    std::string out(text.size() * kLongest, 0);
    const char* const end = write(text, 0, text.size(), out.data(), out.data());
    out.resize(static_cast<size_t>(end - out.data()));
    return out;
  }

  // How many letters of a text with these bytes the home lacks.
  uint64_t missing(const ByteCounts& counts) const;
  // Whether they are more than `most`. REQUIRES: the text has so many `letters`.
  bool lacks_more(const ByteCounts& counts, uint64_t most, uint64_t letters) const;

 private:
  const Alphabet& alphabet_;
  enum LetterKind : uint8_t { kNoLetter, kThere, kMissing };
  char single_[256] = {};  // the form of a byte that becomes one wherever it stands; 0: see forms_
  LetterForm forms_[256];
  LetterKind letters_[256] = {};
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_REWRITING_H_
