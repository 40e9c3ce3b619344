// What kind of character a value of the basic plane is, as far as the charsets of the table reach.
//
// Models know letters; signs and punctuation outside ASCII hardly occur in what they are trained
// on, but do in documents. So those are taken out of a text before the models see it, each at a
// price of its own and with an ASCII character in its place.
#ifndef ORVA_LIB_DETECT_CHARACTERS_H_
#define ORVA_LIB_DETECT_CHARACTERS_H_

#include <cstdint>

namespace orva {

// Letters of any alphabet and the marks that go with them.
bool is_letter(uint32_t value);

// The small letter of a capital, where one charset byte is one; other values as they are.
uint32_t small_letter(uint32_t value);
bool is_capital(uint32_t value);
// The Romanian small letters with a comma below as older charsets write them, with a cedilla.
uint32_t cedilla_letter(uint32_t value);

// On which sides a sign does not touch letters: what closes a phrase is not followed by one.
enum Apart : uint8_t { kNowhere, kBefore, kBehind, kBothSides };

struct Sign {
  char stand_in;  // what the models are shown; 0 for nothing at all
  double cost;    // nats
  bool common;    // found in all kinds of text
  Apart apart = kNowhere;
};

// How a character that is no letter is priced. REQUIRES: value >= 0x80.
Sign sign_of(uint32_t value);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_CHARACTERS_H_
