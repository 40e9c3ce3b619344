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

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lib/detect/utf_codec.h"

namespace orva {

class UnicodeCheck {
 public:
  // Characters from the beginning on that are priced.
  static constexpr uint64_t kMostPriced = 512;

  // `width` is 2 or 4 bytes a unit.
  UnicodeCheck(int width, bool big_endian) : width_(width), big_endian_(big_endian) {}

  void reset();
  void feed(std::string_view bytes);

  // No surrogate out of place, nothing beyond Unicode, no NUL, no noncharacter.
  bool valid() const { return valid_; }
  uint64_t characters() const { return characters_; }
  // Mean cost of a priced character in nats, found when it is asked for, which few documents need;
  // meaningful when there are characters.
  double cost() const;
  // The charset-table name.
  const char* charset() const;

 private:
  static constexpr size_t kLongest = 4;
  size_t take(std::string_view bytes);
  size_t take_blocks(std::string_view bytes);
  size_t take_rest(std::string_view bytes);
  bool take_one(std::string_view bytes, size_t* i);
  Character read(std::string_view bytes) const;

  int width_;
  bool big_endian_;
  bool valid_ = true;
  uint64_t characters_ = 0;
  char head_[kMostPriced * kLongest];  // as much of the document as has a cost
  size_t nb_head_ = 0;
  char carried_[kLongest] = {};
  size_t nb_carried_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_UNICODE_CHECK_H_
