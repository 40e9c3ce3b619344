#include "lib/detect/rewriting.h"

#include <cstring>

#include "lib/detect/characters.h"
#include "lib/detect/utf_codec.h"
#include "lib/detect/vietnamese.h"

namespace orva {

namespace {

// A byte that no model knows stands for a letter that the home lacks.
constexpr unsigned char kUnknown = 1;

// Letters of single-byte charsets lie below, but for shapes of Arabic letters.
constexpr size_t kLetterEnd = 0x2000;

}  // namespace

HomeAlphabet::HomeAlphabet(const uint16_t* table) {
  if (table == nullptr) return;
  bytes_.assign(kLetterEnd, 0);
  for (int b = 255; b >= 0x80; --b) {
    if (table[b] >= 0x80 && table[b] < kLetterEnd) {
      bytes_[table[b]] = static_cast<unsigned char>(b);
    }
  }
}

bool put_letter(uint16_t letter, const HomeAlphabet& home, LetterForm* form) {
  if (home.is_utf8()) {
    std::string utf8;
    append_utf8(letter, &utf8);
    for (const char c : utf8) form->add(static_cast<unsigned char>(c));
    return true;
  }
  unsigned char as = home.byte_for(letter);
  if (as == 0) as = home.byte_for(cedilla_letter(letter));
  if (as != 0) {
    form->add(as);
    return true;
  }
  const VietnameseLetter* parts = find_vietnamese_letter(letter);
  const unsigned char tone = parts == nullptr ? 0 : home.byte_for(parts->tone);
  if (tone == 0) {
    form->add(kUnknown);
    return false;
  }
  form->add(parts->base < 0x80 ? static_cast<unsigned char>(parts->base)
                               : home.byte_for(parts->base));
  form->add(tone);
  return true;
}

Rewriting::Rewriting(const Alphabet& from, const HomeAlphabet& home) : alphabet_(from) {
  for (int b = 0; b < 256; ++b) {
    const ByteRole& role = from[b];
    LetterForm& form = forms_[b];
    if (role.letter == 0) {
      if (role.stand_in != 0) form.add(static_cast<unsigned char>(role.stand_in));
    } else {
      letters_[b] = put_letter(role.letter, home, &form) ? kThere : kMissing;
    }
    if (form.length == 1 && !role.quotes && form.bytes[0] != ' ') single_[b] = form.bytes[0];
  }
}

uint64_t Rewriting::missing(const ByteCounts& counts) const {
  uint64_t missing = 0;
  for (const int b : counts.present) missing += letters_[b] == kMissing ? counts.of[b] : 0;
  return missing;
}

bool Rewriting::lacks_more(const ByteCounts& counts, uint64_t most, uint64_t letters) const {
  uint64_t missing = 0;
  for (const int b : counts.present) {
    if (letters_[b] == kNoLetter) continue;
    letters -= counts.of[b];
    if (letters_[b] == kMissing) missing += counts.of[b];
    if (missing > most) return true;
    if (missing + letters <= most) return false;
  }
  return false;
}

char* Rewriting::write(std::string_view text, size_t from, size_t to, const char* begin,
                       char* end) const {
  const auto is_letter_at = [&](size_t i) {
    return i < text.size() && alphabet_[static_cast<unsigned char>(text[i])].is_letter();
  };
  for (size_t i = from; i < to; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    *end = single_[byte];
    if (*end != 0) {
      ++end;
      continue;
    }
    const LetterForm& form = forms_[byte];
    // A quotation mark is an apostrophe within a word only.
    const bool quotes =
        alphabet_[byte].quotes && !(i > 0 && is_letter_at(i - 1) && is_letter_at(i + 1));
    const bool blank = quotes || (form.length == 1 && form.bytes[0] == ' ');
    // A sign next to a blank leaves the blank.
    if (blank && end != begin && (end[-1] == ' ' || end[-1] == '\n')) continue;
    if (blank) {
      *end++ = ' ';
      continue;
    }
    memcpy(end, form.bytes, sizeof(form.bytes));
    end += form.length;
  }
  return end;
}

}  // namespace orva
