#include "lib/detect/letter_codes.h"

#include <algorithm>
#include <memory>

#include "lib/detect/charset_table.h"

namespace orva {

namespace {

LetterCode code_of(uint16_t letter) {
  const std::vector<uint16_t>& all = coded_letters();
  const auto at = std::lower_bound(all.begin(), all.end(), letter);
  return static_cast<LetterCode>(kFirstLetter + (at - all.begin()));
}

}  // namespace

const std::vector<uint16_t>& coded_letters() {
  static const std::vector<uint16_t> all = [] {
    std::vector<uint16_t> letters;
    for (int c = 0; c < kCharsetCount; ++c) {
      if (single_byte_table(c) == nullptr) continue;
      for (int b = 0; b < 256; ++b) {
        const uint16_t letter = alphabet_of(c)[b].letter;
        if (letter != 0) letters.push_back(letter);
      }
    }
    std::sort(letters.begin(), letters.end());
    letters.erase(std::unique(letters.begin(), letters.end()), letters.end());
    return letters;
  }();
  return all;
}

LetterCodes::LetterCodes(const Alphabet& alphabet) : alphabet_(alphabet) {
  for (int b = 0; b < 256; ++b) {
    const ByteRole& role = alphabet[b];
    if (role.letter != 0) {
      codes_[b] = code_of(role.letter);
    } else if (role.quotes) {
      special_[b] = kQuote;
    } else if (role.stand_in == ' ') {
      special_[b] = kBlank;
    } else {
      codes_[b] = static_cast<unsigned char>(role.stand_in);
    }
  }
}

bool LetterCodes::is_within_word(std::string_view text, size_t at) const {
  const auto is_letter_at = [&](size_t i) {
    return i < text.size() && alphabet_[static_cast<unsigned char>(text[i])].is_letter();
  };
  return at > 0 && is_letter_at(at - 1) && is_letter_at(at + 1);
}

LetterCode* LetterCodes::write(std::string_view text, size_t from, size_t to,
                               const LetterCode* begin, LetterCode* end) const {
  for (size_t i = from; i < to; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    *end = codes_[byte];
    if (*end != 0) {
      ++end;
      continue;
    }
    if (special_[byte] == kNothing) continue;
    // A quotation mark is an apostrophe within a word only.
    if (special_[byte] == kQuote && is_within_word(text, i)) {
      *end++ = static_cast<unsigned char>(alphabet_[byte].stand_in);
      continue;
    }
    // A sign next to a blank leaves the blank.
    if (end != begin && (end[-1] == ' ' || end[-1] == '\n')) continue;
    *end++ = ' ';
  }
  return end;
}

const LetterCodes& letter_codes_of(int charset) {
  static const std::vector<std::unique_ptr<const LetterCodes>> all = [] {
    std::vector<std::unique_ptr<const LetterCodes>> made(static_cast<size_t>(kCharsetCount));
    for (int c = 0; c < kCharsetCount; ++c) {
      if (single_byte_table(c) == nullptr) continue;
      made[static_cast<size_t>(c)] = std::make_unique<const LetterCodes>(alphabet_of(c));
    }
    return made;
  }();
  return *all[static_cast<size_t>(charset)];
}

}  // namespace orva
