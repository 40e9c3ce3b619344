// The 7-bit charsets, told by their escape sequences: ISO-2022-JP, -KR, -CN and HZ.
//
//   orva::EscapeCheck check;
//   check.feed(piece);
//   const char* name = check.charset();   // null when the text is none of them
//
// A charset is named only when the text holds at least one of its shifts and every byte is allowed
// where it stands. A sequence cut at the end is no error.
#ifndef ORVA_LIB_DETECT_ESCAPE_CHECK_H_
#define ORVA_LIB_DETECT_ESCAPE_CHECK_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orva {

class EscapeCheck {
 public:
  void reset() { *this = EscapeCheck(); }
  void feed(std::string_view bytes);

  // Null while nothing but plain text was seen, or after a byte that no 7-bit charset allows.
  const char* charset() const;

 private:
  enum Set : uint8_t { kAscii, kJisRoman, kJis, kKorean, kGb, kCnsPlane };

  struct Iso2022 {
    bool valid = true;
    bool japanese = false;
    bool korean = false;
    bool chinese = false;
    Set direct = kAscii;   // what graphic bytes mean when not shifted
    Set shifted = kAscii;  // what they mean after a shift out
    bool out = false;
    bool single_shift = false;  // the next pair is of plane 2
    char escape[4] = {};        // of a sequence under way, behind the ESC byte
    size_t nb_escape = 0;
    bool in_escape = false;
    unsigned char lead = 0;
    uint64_t wide = 0;
  };
  struct Hz {
    bool valid = true;
    bool pairs = false;
    bool tilde = false;
    unsigned char lead = 0;
    uint64_t wide = 0;
  };

  static const uint32_t* table_of(Set set);
  bool iso_is_plain() const;
  bool hz_is_plain() const;
  const uint32_t* pairs_under_way() const;
  size_t skip_pairs(std::string_view bytes, size_t i);
  void take_iso(unsigned char c);
  void take_escape(char c);
  bool designate(std::string_view sequence);
  void take_hz(unsigned char c);

  Iso2022 iso_;
  Hz hz_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_ESCAPE_CHECK_H_
