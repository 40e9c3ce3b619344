#include "lib/detect/rewriting.h"

#include "lib/detect/characters.h"
#include "lib/detect/single_byte_tables.h"
#include "lib/detect/utf_codec.h"
#include "lib/detect/vietnamese.h"

namespace orva {

namespace {

constexpr double kSignWithin = 8;
constexpr double kSignAtLetter = 5;
constexpr double kCapitalWithin = 8;
constexpr double kSmallBehindCapitals = 4;
constexpr double kLetterAtDigit = 3;
constexpr double kScriptsMixed = 6;
// A text that has letters of a script but no word of it.
constexpr double kLoneLetters = 8;
// An exclamation mark behind a blank, and before anything else; what a bar between blanks is
// cheaper.
constexpr double kMarkBehindBlank = 2;
constexpr double kMarkBefore = 3;
constexpr double kBarBetweenBlanks = -4;
// What the second of two brackets, and a sign behind its like, are cheaper.
constexpr double kPairOfBrackets = -9;
constexpr double kBracketAlone = 3;
constexpr double kSameAgain = -4;
constexpr size_t kLongestBracket = 80;

// A byte that no model knows stands for a letter that the home lacks.
constexpr char kUnknown = 1;

// A single closing quotation mark, the apostrophe, at the beginning of a word; and opening ones
// in a text without closing ones.
constexpr double kClosingInFront = 4;
constexpr double kUnclosed = 2;

constexpr uint32_t kOpening = 0x201C;
constexpr uint32_t kClosing = 0x201D;
constexpr uint32_t kLow = 0x201E;  // opened with this, a phrase is closed with 0x201C
constexpr uint32_t kApostrophe = 0x2019;

bool has(const uint16_t* table, const ByteCounts& counts, uint32_t value) {
  for (int b = 0; b < 256; ++b) {
    if (table[b] == value && counts.of[b] != 0) return true;
  }
  return false;
}

// ASCII signs in which mainframe charsets differ, from the commonest on.
double punctuation_cost(uint32_t value) {
  switch (value) {
    case '"':
      return 4;
    case '!':
      return 6;
    case '@':
      return 7;
    case '#':
    case '$':
      return 8;
    case '[':
    case ']':
      return 9;
    case '\\':
    case '{':
    case '}':
      return 10;
    case '|':
      return 11;
    case '^':
    case '~':
    case '`':
      return 12;
    default:
      return 0;
  }
}

int byte_for(const uint16_t* home, uint32_t value) {
  for (int b = 0x80; b < 256; ++b) {
    if (home[b] == value) return b;
  }
  return -1;
}

}  // namespace

ByteCounts::ByteCounts(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    for (const char c : text) ++of[static_cast<unsigned char>(c)];
  }
}

Rewriting::Rewriting(const uint16_t* from, const uint16_t* home, const ByteCounts& counts,
                     bool punctuation) {
  for (int b = 0; b < 256; ++b) {
    const uint16_t value = from[b];
    if (counts.of[b] == 0 || value == kNoCharacter) continue;
    outside_ascii_[b] = value >= 0x80;
    if (value == 0x85 || (b == '\n' && value >= 0x80)) {
      form_[b].assign(1, '\n');
    } else if (value < 0x80) {
      const double cost = punctuation ? punctuation_cost(value) : 0;
      form_[b].push_back(cost > 0 ? ' ' : static_cast<char>(value));
      sign_cost_ += cost * static_cast<double>(counts.of[b]);
      if (cost > 0) priced_[b] = static_cast<char>(value);
      if (is_letter(value)) kind_[b] = is_capital(value) ? kCapital : kSmall;
      if (value >= '0' && value <= '9') kind_[b] = kDigit;
    } else if (is_letter(value)) {
      put_letter(b, value, home, counts.of[b]);
    } else {
      put_sign(b, value, counts.of[b]);
    }
  }
  if (has(from, counts, kOpening) && !has(from, counts, kClosing) && !has(from, counts, kLow)) {
    sign_cost_ += kUnclosed;
  }
}

void Rewriting::put_letter(int byte, uint32_t value, const uint16_t* home, uint64_t count) {
  letters_ += count;
  kind_[byte] = is_capital(value) ? kCapital : kSmall;
  foreign_[byte] = value >= 0x370 && (value < 0x1E00 || value > 0x1EFF);
  // The models know small letters better.
  value = small_letter(value);
  if (home == nullptr) return append_utf8(value, &form_[byte]);
  int as = byte_for(home, value);
  if (as < 0) as = byte_for(home, cedilla_letter(value));
  const VietnameseLetter* parts = as < 0 ? find_vietnamese_letter(value) : nullptr;
  if (parts != nullptr && byte_for(home, parts->tone) >= 0) {
    if (parts->base >= 0x80) {
      form_[byte].push_back(static_cast<char>(byte_for(home, parts->base)));
    } else {
      form_[byte].push_back(static_cast<char>(parts->base));
    }
    form_[byte].push_back(static_cast<char>(byte_for(home, parts->tone)));
    return;
  }
  form_[byte].push_back(as < 0 ? kUnknown : static_cast<char>(as));
  if (as < 0) missing_ += count;
}

void Rewriting::put_sign(int byte, uint32_t value, uint64_t count) {
  const Sign sign = sign_of(value);
  // An apostrophe, a hyphen, a dot and what is not seen may stand within a word.
  const bool joins = sign.stand_in == '\'' || sign.stand_in == '-' || sign.stand_in == 0;
  kind_[byte] = joins || value == 0xB7 ? kOther : kSign;
  apart_[byte] = sign.apart;
  quotes_[byte] = sign.stand_in == '\'';
  closes_[byte] = value == kApostrophe;
  if (sign.stand_in != 0) form_[byte].push_back(sign.stand_in);
  sign_cost_ += sign.cost * static_cast<double>(count);
  if (!sign.common) odd_ += count;
}

// What is not there counts as blank.
bool Rewriting::is_blank_at(std::string_view text, size_t at) const {
  if (at >= text.size()) return true;
  const std::string& form = form_[static_cast<unsigned char>(text[at])];
  return form == " " || form == "\n";
}

// Signs in which mainframe charsets differ, by what is around them: brackets come in pairs, the
// same sign comes again, exclamation marks end a word, bars stand between blanks.
double Rewriting::sign_place_cost(std::string_view text, size_t at) const {
  const auto sign_at = [&](size_t i) { return priced_[static_cast<unsigned char>(text[i])]; };
  const char sign = sign_at(at);
  if (sign == ']') {
    for (size_t back = 1; back <= kLongestBracket && back <= at; ++back) {
      if (sign_at(at - back) == '[') return kPairOfBrackets;
    }
    return kBracketAlone;
  }
  if (at == 0) return 0;
  if (sign_at(at - 1) == sign && sign != '[') return kSameAgain;
  const bool ends = is_blank_at(text, at + 1);
  if (sign == '!')
    return (is_blank_at(text, at - 1) ? kMarkBehindBlank : 0) + (ends ? 0 : kMarkBefore);
  return sign == '|' && is_blank_at(text, at - 1) && ends ? kBarBetweenBlanks : 0;
}

// What letters cost that do not follow each other in words.
double Rewriting::letters_cost(const Place& place) const {
  const auto [before, last, b] = place;
  if (!is_letter_byte(last)) return 0;
  // ASCII alone is the same in all readings.
  if (!outside_ascii_[before] && !outside_ascii_[last] && !outside_ascii_[b]) return 0;
  if (kind_[b] == kDigit)
    return outside_ascii_[last] && !is_letter_byte(before) ? kLetterAtDigit : 0;
  if (!is_letter_byte(b)) return 0;
  double cost = foreign_[b] != foreign_[last] ? kScriptsMixed : 0;
  if (kind_[b] == kCapital && kind_[last] == kSmall) cost += kCapitalWithin;
  if (kind_[b] == kSmall && kind_[last] == kCapital && kind_[before] == kCapital) {
    cost += kSmallBehindCapitals;
  }
  return cost;
}

double Rewriting::place_cost(std::string_view text) const {
  double cost = 0;
  Place place = {'\n', '\n', '\n'};
  const auto is_letter_at = [&](size_t i) {
    return i < text.size() && is_letter_byte(static_cast<unsigned char>(text[i]));
  };
  for (size_t i = 0; i < text.size(); ++i) {
    const int b = static_cast<unsigned char>(text[i]);
    place = {place.last, place.now, b};
    cost += letters_cost(place);
    if (kind_[b] == kSign || apart_[b] != kNowhere) {
      const bool in_front = i > 0 && is_letter_at(i - 1);
      const bool behind = is_letter_at(i + 1);
      if (kind_[b] == kSign && in_front && behind) cost += kSignWithin;
      if ((apart_[b] & kBefore) != 0 && in_front) cost += kSignAtLetter;
      if ((apart_[b] & kBehind) != 0 && behind) cost += kSignAtLetter;
    }
    if (closes_[b] && is_blank_at(text, i - 1) && is_letter_at(i + 1)) cost += kClosingInFront;
    if (priced_[b] != 0) cost += sign_place_cost(text, i);
  }
  return cost;
}

double Rewriting::lone_letters_cost(const std::vector<std::string>& texts) const {
  bool any = false;
  for (const std::string& text : texts) {
    bool last = false;
    for (const char c : text) {
      const bool now = foreign_[static_cast<unsigned char>(c)];
      if (last && now) return 0;
      any = any || now;
      last = now;
    }
  }
  return any ? kLoneLetters : 0;
}

std::string Rewriting::apply(std::string_view text) const {
  std::string out;
  out.reserve(text.size() + text.size() / 2);
  const auto is_letter_at = [&](size_t i) {
    return i < text.size() && is_letter_byte(static_cast<unsigned char>(text[i]));
  };
  for (size_t i = 0; i < text.size(); ++i) {
    const int b = static_cast<unsigned char>(text[i]);
    // A quotation mark is an apostrophe within a word only.
    const bool quotes = quotes_[b] && !(i > 0 && is_letter_at(i - 1) && is_letter_at(i + 1));
    const std::string_view form = quotes ? " " : std::string_view(form_[b]);
    // A sign next to a blank leaves the blank.
    if (form == " " && !out.empty() && (out.back() == ' ' || out.back() == '\n')) continue;
    out += form;
  }
  return out;
}

}  // namespace orva
