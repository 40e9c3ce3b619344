// Placement: what a reading costs by its signs and by where letters and signs stand, whatever its
// language is.
//
// Life cycle: one object for each reading of a text.
// Ownership:  the alphabet is not owned.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_PLACEMENT_H_
#define ORVA_LIB_DETECT_PLACEMENT_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "lib/detect/alphabet.h"

namespace orva {

// How often each byte occurs in `texts`.
struct ByteCounts {
  uint64_t of[256] = {};
  HighBytes high;                      // those above 0x7F that occur
  std::vector<unsigned char> present;  // the bytes that occur

  ByteCounts() = default;
  explicit ByteCounts(const std::vector<std::string_view>& texts) { start(texts); }

  void start(const std::vector<std::string_view>& texts);
};

class Placement {
 public:
  Placement(const Alphabet& alphabet, const ByteCounts& counts);

  // Nats for text[from, to): for signs that the models are not shown, and for what stands where it
  // should not, such as signs within words and capitals behind small letters.
  double cost(std::string_view text, size_t from, size_t to) const;
  // Nats for what only all texts together tell: quotation marks that are never closed, letters of
  // another script than the Latin one none of which stands next to another.
  double whole_cost(const std::vector<std::string_view>& texts) const;
  // Characters outside ASCII that are neither letters nor common signs, and letters.
  uint64_t odd() const { return odd_; }
  uint64_t letters() const { return letters_; }

 private:
  double sign_cost(std::string_view text, size_t at) const;
  uint32_t traits_at(std::string_view text, size_t at) const {
    return alphabet_->traits(static_cast<unsigned char>(text[at]));
  }
  const ByteRole& role_at(std::string_view text, size_t at) const {
    return (*alphabet_)[static_cast<unsigned char>(text[at])];
  }
  bool is_letter_at(std::string_view text, size_t at) const {
    return at < text.size() && (traits_at(text, at) & (kSmallTrait | kCapitalTrait)) != 0;
  }
  // What is not there counts as blank.
  bool is_blank_at(std::string_view text, size_t at) const {
    return at >= text.size() || role_at(text, at).is_blank();
  }
  double apart_cost(std::string_view text, size_t at) const;
  double sign_place_cost(std::string_view text, size_t at) const;
  bool has_lone_letters(const std::vector<std::string_view>& texts) const;

  const Alphabet* alphabet_;
  bool unclosed_ = false;
  bool foreign_ = false;  // there is a letter of another script than the Latin one
  uint64_t odd_ = 0;
  uint64_t letters_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_PLACEMENT_H_
