#include "lib/detect/placement.h"

#include <algorithm>
#include <iterator>

namespace orva {

namespace {

// Nats, for what is rarely seen in real text and often in wrong readings.
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
// A single closing quotation mark, the apostrophe, at the beginning of a word; and opening ones
// in a text without closing ones.
constexpr double kClosingInFront = 4;
constexpr double kUnclosed = 2;

// Three bytes that follow each other, by their kinds.
struct Place {
  unsigned before;
  unsigned last;
  unsigned now;
};

// What letters cost that do not follow each other in words.
double letters_cost(const Place& place) {
  const auto [before, last, now] = place;
  const auto is_letter = [](unsigned kind) { return (kind & kSmallKind) != 0; };
  const auto is_small = [](unsigned kind) { return (kind & kCaseKind) == kSmallKind; };
  const auto is_capital = [](unsigned kind) { return (kind & kCaseKind) == kCapitalKind; };
  if (!is_letter(last)) return 0;
  // ASCII alone is the same in all readings.
  if (((before | last | now) & kOutsideKind) == 0) return 0;
  if ((now & kCaseKind) == kDigitKind) {
    return (last & kOutsideKind) != 0 && !is_letter(before) ? kLetterAtDigit : 0;
  }
  if (!is_letter(now)) return 0;
  double cost = ((now ^ last) & kForeignKind) != 0 ? kScriptsMixed : 0;
  if (is_capital(now) && is_small(last)) cost += kCapitalWithin;
  if (is_small(now) && is_capital(last) && is_capital(before)) cost += kSmallBehindCapitals;
  return cost;
}

// The same for all kinds: three times four bits, that of the last byte the lowest.
class LetterTriples {
 public:
  static constexpr unsigned kAll = (1U << 3 * kPlaceBits) - 1;

  LetterTriples() {
    for (unsigned i = 0; i <= kAll; ++i) {
      constexpr unsigned kKind = (1U << kPlaceBits) - 1;
      const Place place = {i >> 2 * kPlaceBits, i >> kPlaceBits & kKind, i & kKind};
      costs_[i] = static_cast<uint8_t>(letters_cost(place));
    }
  }
  unsigned cost(unsigned triple) const { return costs_[triple]; }

 private:
  uint8_t costs_[kAll + 1];
};

}  // namespace

void ByteCounts::start(const std::vector<std::string_view>& texts) {
  // All of them: memory may have run out before the last ones were listed.
  std::fill(std::begin(of), std::end(of), 0);
  present.clear();
  high = {};
  for (const std::string_view text : texts) {
    for (const char c : text) ++of[static_cast<unsigned char>(c)];
  }
  for (int b = 0; b < 256; ++b) {
    if (of[b] == 0) continue;
    present.push_back(static_cast<unsigned char>(b));
    if (b >= 0x80) high.add(static_cast<unsigned char>(b));
  }
}

Placement::Placement(const Alphabet& alphabet, const ByteCounts& counts) : alphabet_(&alphabet) {
  uint32_t all = 0;
  for (const int b : counts.present) {
    const uint32_t traits = alphabet.traits(b);
    if ((traits & kLetterTrait) != 0) letters_ += counts.of[b];
    if ((traits & kOddTrait) != 0) odd_ += counts.of[b];
    all |= traits;
  }
  unclosed_ = (all & kOpeningTrait) != 0 && (all & kClosingTrait) == 0;
  foreign_ = (all & kForeignTrait) != 0;
}

// Signs in which mainframe charsets differ, by what is around them: brackets come in pairs, the
// same sign comes again, exclamation marks end a word, bars stand between blanks.
double Placement::sign_place_cost(std::string_view text, size_t at) const {
  const char sign = role_at(text, at).priced;
  if (sign == ']') {
    for (size_t back = 1; back <= kLongestBracket && back <= at; ++back) {
      if (role_at(text, at - back).priced == '[') return kPairOfBrackets;
    }
    return kBracketAlone;
  }
  if (at == 0) return 0;
  if (role_at(text, at - 1).priced == sign && sign != '[') return kSameAgain;
  const bool begins = is_blank_at(text, at - 1);
  const bool ends = is_blank_at(text, at + 1);
  if (sign == '!') return (begins ? kMarkBehindBlank : 0) + (ends ? 0 : kMarkBefore);
  return sign == '|' && begins && ends ? kBarBetweenBlanks : 0;
}

double Placement::apart_cost(std::string_view text, size_t at) const {
  const ByteRole& role = role_at(text, at);
  const bool in_front = at > 0 && is_letter_at(text, at - 1);
  const bool behind = is_letter_at(text, at + 1);
  double cost = role.kind == ByteRole::kSign && in_front && behind ? kSignWithin : 0;
  if ((role.apart & kBefore) != 0 && in_front) cost += kSignAtLetter;
  if ((role.apart & kBehind) != 0 && behind) cost += kSignAtLetter;
  return cost;
}

// What a sign costs beyond its own price where it stands.
double Placement::sign_cost(std::string_view text, size_t at) const {
  const ByteRole& role = role_at(text, at);
  double cost = 0;
  if (role.kind == ByteRole::kSign || role.apart != kNowhere) cost += apart_cost(text, at);
  if (role.closes && is_blank_at(text, at - 1) && is_letter_at(text, at + 1)) {
    cost += kClosingInFront;
  }
  if (role.priced != 0) cost += sign_place_cost(text, at);
  return cost;
}

double Placement::cost(std::string_view text, size_t from, size_t to) const {
  static const LetterTriples letters;
  const auto place_at = [&](size_t i) {
    return alphabet_->place(static_cast<unsigned char>(text[i]));
  };
  const unsigned line_end = alphabet_->place('\n');
  unsigned triple = (from > 1 ? place_at(from - 2) : line_end) & kPlaceKinds;
  triple = triple << kPlaceBits | ((from > 0 ? place_at(from - 1) : line_end) & kPlaceKinds);
  unsigned of_letters = 0;
  double cost = 0;
  for (size_t i = from; i < to; ++i) {
    const unsigned place = place_at(i);
    triple = (triple << kPlaceBits | (place & kPlaceKinds)) & LetterTriples::kAll;
    of_letters += letters.cost(triple);
    if ((place & kPlacedPlace) != 0) cost += role_at(text, i).cost + sign_cost(text, i);
  }
  return cost + of_letters;
}

bool Placement::has_lone_letters(const std::vector<std::string_view>& texts) const {
  bool any = false;
  for (const std::string_view text : texts) {
    bool last = false;
    for (size_t i = 0; i < text.size(); ++i) {
      const bool now = (alphabet_->place(static_cast<unsigned char>(text[i])) & kForeignKind) != 0;
      if (last && now) return false;
      any = any || now;
      last = now;
    }
  }
  return any;
}

double Placement::whole_cost(const std::vector<std::string_view>& texts) const {
  return (unclosed_ ? kUnclosed : 0) + (foreign_ && has_lone_letters(texts) ? kLoneLetters : 0);
}

}  // namespace orva
