#include "lib/detect/alphabet.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "lib/detect/charset_table.h"
#include "lib/detect/scripts.h"
#include "lib/detect/single_byte_tables.h"

namespace orva {

namespace {

constexpr uint16_t kNextLine = 0x85;
constexpr uint16_t kApostrophe = 0x2019;
constexpr uint16_t kMiddleDot = 0xB7;
constexpr uint16_t kOpening = 0x201C;
constexpr uint16_t kClosing = 0x201D;
constexpr uint16_t kLow = 0x201E;  // opened with this, a phrase is closed with kOpening

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

ByteRole role_of_ascii(uint16_t value, bool mainframe) {
  ByteRole role;
  role.stand_in = static_cast<char>(value);
  if (is_letter(value)) role.kind = is_capital(value) ? ByteRole::kCapital : ByteRole::kSmall;
  if (value >= '0' && value <= '9') role.kind = ByteRole::kDigit;
  role.cost = mainframe ? punctuation_cost(value) : 0;
  if (role.cost > 0) {
    role.priced = role.stand_in;
    role.stand_in = ' ';
  }
  return role;
}

ByteRole role_of_letter(uint16_t value) {
  ByteRole role;
  role.kind = is_capital(value) ? ByteRole::kCapital : ByteRole::kSmall;
  role.foreign = value >= 0x370 && (value < 0x1E00 || value > 0x1EFF);
  // The models know small letters better.
  role.letter = static_cast<uint16_t>(small_letter(value));
  return role;
}

ByteRole role_of_sign(uint16_t value) {
  const Sign sign = sign_of(value);
  ByteRole role;
  // An apostrophe, a hyphen, a dot and what is not seen may stand within a word.
  const bool joins = sign.stand_in == '\'' || sign.stand_in == '-' || sign.stand_in == 0;
  role.kind = joins || value == kMiddleDot ? ByteRole::kOther : ByteRole::kSign;
  role.apart = sign.apart;
  role.stand_in = sign.stand_in;
  role.quotes = sign.stand_in == '\'';
  role.closes = value == kApostrophe;
  role.common = sign.common;
  role.cost = sign.cost;
  return role;
}

ByteRole role_of(int byte, uint16_t value, bool mainframe) {
  if (value == kNextLine || (byte == '\n' && value >= 0x80)) {
    ByteRole role;
    role.stand_in = '\n';
    return role;
  }
  if (value < 0x80) return role_of_ascii(value, mainframe);
  return is_letter(value) ? role_of_letter(value) : role_of_sign(value);
}

uint32_t traits_of(const ByteRole& role) {
  uint32_t traits = role.scripts;
  if (role.letter != 0) traits |= kLetterTrait;
  if (!role.common) traits |= kOddTrait;
  if (role.foreign) traits |= kForeignTrait;
  if (role.value == kOpening) traits |= kOpeningTrait;
  if (role.value == kClosing || role.value == kLow) traits |= kClosingTrait;
  const bool keeps_apart = role.kind == ByteRole::kSign || role.apart != kNowhere;
  if (role.cost != 0 || keeps_apart || role.closes || role.priced != 0) traits |= kPlacedTrait;
  if (role.outside_ascii) traits |= kOutsideTrait;
  if (role.kind == ByteRole::kSmall) traits |= kSmallTrait;
  if (role.kind == ByteRole::kCapital) traits |= kCapitalTrait;
  if (role.kind == ByteRole::kDigit) traits |= kDigitTrait;
  return traits;
}

uint8_t place_of(uint32_t traits) {
  unsigned place = 0;
  if ((traits & kDigitTrait) != 0) place = kDigitKind;
  if ((traits & kSmallTrait) != 0) place = kSmallKind;
  if ((traits & kCapitalTrait) != 0) place = kCapitalKind;
  if ((traits & kOutsideTrait) != 0) place |= kOutsideKind;
  if ((traits & kForeignTrait) != 0) place |= kForeignKind;
  if ((traits & kPlacedTrait) != 0) place |= kPlacedPlace;
  return static_cast<uint8_t>(place);
}

}  // namespace

Alphabet::Alphabet(const uint16_t* table, bool mainframe) {
  for (int b = 0; b < 256; ++b) {
    if (table[b] == kNoCharacter) continue;
    roles_[b] = role_of(b, table[b], mainframe);
    roles_[b].value = table[b];
    roles_[b].outside_ascii = table[b] >= 0x80;
    roles_[b].scripts = scripts_of_letter(table[b]);
  }
  for (int b = 0; b < 256; ++b) {
    traits_[b] = traits_of(roles_[b]);
    places_[b] = place_of(traits_[b]);
    if (b >= 0x80 && roles_[b].scripts != 0) add_letter(static_cast<unsigned char>(b));
  }
}

void Alphabet::add_letter(unsigned char byte) {
  const uint32_t scripts = roles_[byte].scripts;
  auto at = std::find_if(letters_.begin(), letters_.end(), [scripts](const ScriptLetters& letters) {
    return letters.scripts == scripts;
  });
  if (at == letters_.end()) at = letters_.insert(at, {scripts, {}});
  at->bytes.add(byte);
}

const Alphabet& alphabet_of(int charset) {
  static const std::vector<std::unique_ptr<const Alphabet>> all = [] {
    std::vector<std::unique_ptr<const Alphabet>> made;
    for (int c = 0; c < kCharsetCount; ++c) {
      const uint16_t* table = single_byte_table(c);
      const bool mainframe = (kCharsets[c].flags & kEbcdic) != 0;
      made.push_back(table == nullptr ? nullptr
                                      : std::make_unique<const Alphabet>(table, mainframe));
    }
    return made;
  }();
  return *all[static_cast<size_t>(charset)];
}

}  // namespace orva
