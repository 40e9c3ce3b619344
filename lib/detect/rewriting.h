// Rewriting: a text of one single-byte charset written in another, or in UTF-8, for models of that.
#ifndef ORVA_LIB_DETECT_REWRITING_H_
#define ORVA_LIB_DETECT_REWRITING_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/characters.h"

namespace orva {

// How often each byte occurs in `texts`.
struct ByteCounts {
  uint64_t of[256] = {};
  explicit ByteCounts(const std::vector<std::string>& texts);
};

// What each byte becomes, and what that costs.
class Rewriting {
 public:
  // From the charset that `from` decodes to the one that `home` does (null: UTF-8), for a text with
  // these bytes. `punctuation` prices ASCII signs too.
  Rewriting(const uint16_t* from, const uint16_t* home, const ByteCounts& counts, bool punctuation);

  std::string apply(std::string_view text) const;

  // Nats for signs that the models are not shown, in a text with the bytes counted.
  double sign_cost() const { return sign_cost_; }
  // Nats for what stands where it should not in `text`: signs within words, capitals behind small
  // letters.
  double place_cost(std::string_view text) const;
  // Nats for letters of another script than the Latin one none of which stands next to another.
  double lone_letters_cost(const std::vector<std::string>& texts) const;
  // Characters outside ASCII that are neither letters nor common signs, letters, and letters that
  // the home lacks.
  uint64_t odd() const { return odd_; }
  uint64_t letters() const { return letters_; }
  uint64_t missing() const { return missing_; }

 private:
  void put_letter(int byte, uint32_t value, const uint16_t* home, uint64_t count);
  void put_sign(int byte, uint32_t value, uint64_t count);

  enum Kind : uint8_t { kOther, kSmall, kCapital, kDigit, kSign };

  // Three bytes that follow each other.
  struct Place {
    int before;
    int last;
    int now;
  };

  bool is_letter_byte(int b) const { return kind_[b] == kSmall || kind_[b] == kCapital; }
  bool is_blank_at(std::string_view text, size_t at) const;
  double letters_cost(const Place& place) const;

  std::string form_[256];
  Kind kind_[256] = {};
  bool outside_ascii_[256] = {};
  bool foreign_[256] = {};  // a letter of another script than the Latin one
  Apart apart_[256] = {};   // where a sign keeps apart from letters
  bool closes_[256] = {};   // an apostrophe that may close a phrase
  bool quotes_[256] = {};   // an apostrophe or a quotation mark
  char priced_[256] = {};   // the ASCII sign that was priced, 0 for none
  double sign_place_cost(std::string_view text, size_t at) const;
  double sign_cost_ = 0;
  uint64_t odd_ = 0;
  uint64_t letters_ = 0;
  uint64_t missing_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_REWRITING_H_
