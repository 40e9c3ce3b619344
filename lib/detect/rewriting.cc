#include "lib/detect/rewriting.h"

#include "lib/detect/characters.h"
#include "lib/detect/single_byte_tables.h"
#include "lib/detect/utf_codec.h"
#include "lib/detect/vietnamese.h"

namespace orva {

namespace {

constexpr double kSignWithin = 8;
constexpr double kCapitalWithin = 4;
constexpr double kScriptsMixed = 6;
// A mark behind a blank, and what a bar between blanks is cheaper.
constexpr double kMarkBehindBlank = 5;
constexpr double kBarBetweenBlanks = -4;

// A byte that no model knows stands for a letter that the home lacks.
constexpr char kUnknown = 1;

// ASCII signs in which mainframe charsets differ, from the commonest on.
double punctuation_cost(uint32_t value) {
  switch (value) {
    case '!':
      return 6;
    case '[':
    case ']':
      return 9;
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
    if (value == 0x85) {
      form_[b].assign(1, '\n');
    } else if (value < 0x80) {
      const double cost = punctuation ? punctuation_cost(value) : 0;
      form_[b].push_back(cost > 0 ? '.' : static_cast<char>(value));
      sign_cost_ += cost * static_cast<double>(counts.of[b]);
      if (cost > 0) priced_[b] = static_cast<char>(value);
      if (is_letter(value)) kind_[b] = kSmall;
    } else if (is_letter(value)) {
      put_letter(b, value, home, counts.of[b]);
    } else {
      put_sign(b, value, counts.of[b]);
    }
  }
}

void Rewriting::put_letter(int byte, uint32_t value, const uint16_t* home, uint64_t count) {
  letters_ += count;
  kind_[byte] = is_capital(value) ? kCapital : kSmall;
  foreign_[byte] = value >= 0x370 && (value < 0x1E00 || value > 0x1EFF);
  // The models know small letters better.
  value = small_letter(value);
  if (home == nullptr) return append_utf8(value, &form_[byte]);
  const int as = byte_for(home, value);
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
  if (sign.stand_in != 0) form_[byte].push_back(sign.stand_in);
  sign_cost_ += sign.cost * static_cast<double>(count);
  if (!sign.common) odd_ += count;
}

// Exclamation marks and bars, in which mainframe charsets differ, by the blanks around them.
double Rewriting::sign_place_cost(std::string_view text, size_t at) const {
  const auto is_blank = [&](size_t i) {
    const std::string& form = form_[static_cast<unsigned char>(text[i])];
    return form == " " || form == "\n";
  };
  if (at == 0 || at + 1 >= text.size() || !is_blank(at - 1)) return 0;
  const char sign = priced_[static_cast<unsigned char>(text[at])];
  if (sign == '!') return kMarkBehindBlank;
  return sign == '|' && is_blank(at + 1) ? kBarBetweenBlanks : 0;
}

double Rewriting::place_cost(std::string_view text) const {
  double cost = 0;
  int last = -1;  // the byte before
  const auto letter = [this](int b) {
    return b >= 0 && (kind_[b] == kSmall || kind_[b] == kCapital);
  };
  for (size_t i = 0; i < text.size(); ++i) {
    const int b = static_cast<unsigned char>(text[i]);
    if (letter(b) && letter(last) && foreign_[b] != foreign_[last]) cost += kScriptsMixed;
    if (kind_[b] == kCapital && last >= 0 && kind_[last] == kSmall) cost += kCapitalWithin;
    if (kind_[b] == kSign && letter(last) && i + 1 < text.size() &&
        letter(static_cast<unsigned char>(text[i + 1]))) {
      cost += kSignWithin;
    }
    if (priced_[b] != 0) cost += sign_place_cost(text, i);
    last = b;
  }
  return cost;
}

std::string Rewriting::apply(std::string_view text) const {
  std::string out;
  out.reserve(text.size() + text.size() / 2);
  for (const char c : text) out += form_[static_cast<unsigned char>(c)];
  return out;
}

}  // namespace orva
