// Alphabet: what each byte of a single-byte charset is, as far as pricing a reading goes.
//
//   const orva::Alphabet& alphabet = orva::alphabet_of(orva::find_charset_index("KOI8-R"));
//   if (alphabet[0xD2].kind == orva::ByteRole::kSmall) ...
//
// Life cycle: made once for each charset, constant from then on.
// Ownership:  they live as long as the program.
// Threads:    any number.
#ifndef ORVA_LIB_DETECT_ALPHABET_H_
#define ORVA_LIB_DETECT_ALPHABET_H_

#include <cstdint>
#include <vector>

#include "lib/detect/characters.h"

namespace orva {

struct ByteRole {
  enum Kind : uint8_t { kOther, kSmall, kCapital, kDigit, kSign };

  uint16_t value = 0;      // what it decodes to; 0 for nothing
  uint16_t letter = 0;     // of a letter outside ASCII: the small one
  Kind kind = kOther;      // signs that may stand within a word are kOther
  Apart apart = kNowhere;  // where a sign keeps apart from letters
  char stand_in = 0;       // what models are shown of all but letters outside ASCII; 0: nothing
  char priced = 0;         // an ASCII sign in which mainframe charsets differ
  bool outside_ascii = false;
  bool foreign = false;  // a letter of another script than the Latin one
  bool quotes = false;   // an apostrophe or a quotation mark
  bool closes = false;   // an apostrophe that may close a phrase
  bool common = true;    // false for signs that are not found in all kinds of text
  uint32_t scripts = 0;  // of a letter: a bit for each script that it can be of
  double cost = 0;       // nats, of what the models are not shown

  bool is_letter() const { return kind == kSmall || kind == kCapital; }
  bool is_blank() const { return letter == 0 && (stand_in == ' ' || stand_in == '\n'); }
};

// What a byte's role says in a word that is quick to look at: the bits of its scripts, and these.
enum ByteTraits : uint32_t {
  kLetterTrait = 1U << 31,   // a letter outside ASCII
  kOddTrait = 1U << 30,      // a sign that is not found in all kinds of text
  kForeignTrait = 1U << 29,  // a letter of another script than the Latin one
  kOpeningTrait = 1U << 28,  // a quotation mark that a closing one has to follow
  kClosingTrait = 1U << 27,
  kPlacedTrait = 1U << 26,  // it has a cost, or one by what is around it
  kOutsideTrait = 1U << 25,
  kSmallTrait = 1U << 24,
  kCapitalTrait = 1U << 23,
  kDigitTrait = 1U << 22,
};

// The same for what is told by three bytes that follow each other: four bits, of which two are the
// case, and whether the byte has a cost itself.
enum BytePlace : uint8_t {
  kDigitKind = 1,
  kSmallKind = 2,
  kCapitalKind = 3,
  kCaseKind = 3,
  kOutsideKind = 4,
  kForeignKind = 8,
  kPlaceKinds = 15,
  kPlacedPlace = 16,
};
inline constexpr unsigned kPlaceBits = 4;

// Some of the bytes above 0x7F.
struct HighBytes {
  uint64_t words[2] = {};

  void add(unsigned char b) { words[b / 64 - 2] |= uint64_t{1} << b % 64; }
  bool share(const HighBytes& other) const {
    return ((words[0] & other.words[0]) | (words[1] & other.words[1])) != 0;
  }
};

class Alphabet {
 public:
  // Of the charset that `table` decodes. Those of mainframes differ in ASCII signs, too, which are
  // then priced as well.
  Alphabet(const uint16_t* table, bool mainframe);

  const ByteRole& operator[](int byte) const { return roles_[byte]; }
  uint32_t traits(int byte) const { return traits_[byte]; }
  unsigned place(unsigned char byte) const { return places_[byte]; }
  // The bits of scripts that letters among these bytes can be of.
  uint32_t scripts(const HighBytes& bytes) const {
    uint32_t scripts = 0;
    for (const ScriptLetters& letters : letters_) {
      if (bytes.share(letters.bytes)) scripts |= letters.scripts;
    }
    return scripts;
  }

 private:
  // The bytes above 0x7F that are letters of the same scripts.
  struct ScriptLetters {
    uint32_t scripts;
    HighBytes bytes;
  };
  void add_letter(unsigned char byte);

  ByteRole roles_[256];
  uint32_t traits_[256];
  uint8_t places_[256];
  std::vector<ScriptLetters> letters_;
};

// REQUIRES: `charset` is the index of a single-byte one.
const Alphabet& alphabet_of(int charset);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_ALPHABET_H_
