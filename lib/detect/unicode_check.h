// Whether bytes can be UTF-16 or UTF-32 of one byte order, and how much they look like it.
//
//   orva::UnicodeCheck check(2, true);   // UTF-16BE
//   check.feed(piece);
//   if (check.valid() && check.cost() < 10) ...
//
// In the right byte order the characters lie in few blocks of common scripts; in the wrong one, or
// in text of another charset, they are strewn over rare ones. The cost tells the two apart without
// a byte order mark: roughly the nats that a character of its block takes in running text. What a
// text is made of shows at its beginning, so only that has a cost; all of it is checked.
#ifndef ORVA_LIB_DETECT_UNICODE_CHECK_H_
#define ORVA_LIB_DETECT_UNICODE_CHECK_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orva {

class UnicodeCheck {
 public:
  // Characters from the beginning on that are priced.
  static constexpr uint64_t kMostPriced = 512;

  // `width` is 2 or 4 bytes a unit.
  UnicodeCheck(int width, bool big_endian) : width_(width), big_endian_(big_endian) {}

  void reset() { *this = UnicodeCheck(width_, big_endian_); }
  void feed(std::string_view bytes);

  // No surrogate out of place, nothing beyond Unicode, no NUL, no noncharacter.
  bool valid() const { return valid_; }
  uint64_t characters() const { return characters_; }
  // Mean cost of a priced character in nats; meaningful when there are characters.
  double cost() const { return cost_ / static_cast<double>(std::min(characters_, kMostPriced)); }
  // The charset-table name.
  const char* charset() const;

 private:
  static constexpr size_t kLongest = 4;
  size_t take(std::string_view bytes);
  size_t take_units(std::string_view bytes);
  size_t take_blocks(std::string_view bytes);

  int width_;
  bool big_endian_;
  bool valid_ = true;
  uint64_t characters_ = 0;
  double cost_ = 0;
  char carried_[kLongest] = {};
  size_t nb_carried_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_UNICODE_CHECK_H_
