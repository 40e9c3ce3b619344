// What kind of character a value of the basic plane is, as far as the charsets of the table reach.
#ifndef ORVA_LIB_DETECT_LETTERS_H_
#define ORVA_LIB_DETECT_LETTERS_H_

#include <cstdint>

namespace orva {

// Letters of any alphabet and the marks that go with them.
bool is_letter(uint32_t value);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_LETTERS_H_
