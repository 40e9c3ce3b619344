#include "lib/detect/letter_costs.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include "lib/detect/alphabet.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/homes.h"
#include "lib/detect/utf_codec.h"
#include "lib/detect/vietnamese.h"

namespace orva {

namespace {

// Nats by which models make what they do not know dearer than it is seldom.
constexpr double kOfTheUnknown = 5;
// What no language of a home has.
constexpr double kNoLetter = 15;
// First bytes of a script's characters in UTF-8 say hardly anything; a sign says as much as some
// letter, and may be the very thing that a text is full of.
constexpr double kMostFirst = 1.2;
constexpr double kMostSign = 6;
constexpr double kSign = 3;
constexpr double kCapitalWithin = 8;
constexpr double kForeignBeside = 6;
constexpr double kSignBetween = 8;

uint16_t units(double nats) { return static_cast<uint16_t>(std::lround(nats / LetterCost::kUnit)); }

class Letters {
 public:
  Letters(const ModelTables& tables, const std::vector<Home>& homes)
      : tables_(tables), homes_(homes) {}

  double cost(uint16_t letter) {
    const auto [at, fresh] = known_.try_emplace(letter, kNoLetter);
    if (fresh) at->second = find(letter);
    return at->second;
  }

 private:
  double find(uint16_t letter) const {
    double least = kNoLetter;
    for (const Home& home : homes_) {
      for (size_t i = 0; i < home.languages.size(); ++i) {
        const Script script = script_of_language(tables_.languages()[home.languages[i]]);
        if ((scripts_of_letter(letter) & script_bit(script)) == 0) continue;
        least = std::min(least, cost_in(home, i, letter));
      }
    }
    return least;
  }

  static double byte_cost(const Home& home, size_t i, unsigned char byte) {
    return std::max(home.models.unseen_cost(byte, i) - kOfTheUnknown, 0.0);
  }

  static double cost_in(const Home& home, size_t i, uint16_t letter) {
    if (home.alphabet.is_utf8()) {
      std::string utf8;
      append_utf8(letter, &utf8);
      double sum = byte_cost(home, i, static_cast<unsigned char>(utf8.back()));
      for (size_t k = 0; k + 1 < utf8.size(); ++k) {
        sum += std::min(byte_cost(home, i, static_cast<unsigned char>(utf8[k])), kMostFirst);
      }
      return sum;
    }
    unsigned char byte = home.alphabet.byte_for(letter);
    if (byte == 0) byte = home.alphabet.byte_for(cedilla_letter(letter));
    if (byte != 0) return byte_cost(home, i, byte);
    const VietnameseLetter* parts = find_vietnamese_letter(letter);
    if (parts == nullptr || home.alphabet.byte_for(parts->tone) == 0) return kNoLetter;
    const unsigned char base = parts->base < 0x80 ? static_cast<unsigned char>(parts->base)
                                                  : home.alphabet.byte_for(parts->base);
    return byte_cost(home, i, base) + byte_cost(home, i, home.alphabet.byte_for(parts->tone));
  }

  const ModelTables& tables_;
  const std::vector<Home>& homes_;
  std::map<uint16_t, double> known_;
};

LetterCost cost_of_role(const ByteRole& role, Letters* letters) {
  LetterCost cost;
  if (role.letter != 0) {
    cost.alone = units(letters->cost(role.letter));
  } else if (role.stand_in != 0) {
    cost.alone = units(std::min(kSign + role.cost, kMostSign));
  }
  cost.within = units(role.kind == ByteRole::kCapital ? kCapitalWithin : 0);
  cost.between = units(role.kind == ByteRole::kSign ? kSignBetween : 0);
  cost.beside = units(role.foreign ? kForeignBeside : 0);
  return cost;
}

}  // namespace

LetterCosts::LetterCosts(const ModelTables& tables, const std::vector<Home>& homes)
    : column_of_(static_cast<size_t>(kCharsetCount), 0) {
  std::vector<int> charsets;
  for (int c = 0; c < kCharsetCount; ++c) {
    if (single_byte_table(c) == nullptr || (kCharsets[c].flags & kEbcdic) != 0) continue;
    column_of_[static_cast<size_t>(c)] = charsets.size();
    charsets.push_back(c);
  }
  width_ = (charsets.size() + kStep - 1) / kStep * kStep;
  costs_.resize(kBytes * width_);
  Letters letters(tables, homes);
  for (size_t i = 0; i < charsets.size(); ++i) {
    const Alphabet& alphabet = alphabet_of(charsets[i]);
    for (size_t b = 0; b < kBytes; ++b) {
      costs_[b * width_ + i] = cost_of_role(alphabet[0x80 + static_cast<int>(b)], &letters);
    }
  }
}

}  // namespace orva
