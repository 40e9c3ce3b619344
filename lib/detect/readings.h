// Readings: the different texts that a document can be. Charsets that decode all of its bytes to
// the same text are one reading, told by the bytes that it holds; a reading's cost in a language is
// that of its best model, wherever among its charsets the model is.
#ifndef ORVA_LIB_DETECT_READINGS_H_
#define ORVA_LIB_DETECT_READINGS_H_

#include <functional>
#include <limits>
#include <vector>

#include "lib/detect/evidence.h"

namespace orva {

inline constexpr double kNoCost = std::numeric_limits<double>::infinity();

struct Reading {
  std::vector<int> charsets;        // the likeliest first
  const uint16_t* table = nullptr;  // decode table of a single-byte one
  std::vector<double> costs;        // by language; kNoCost where no model could tell
  std::vector<bool> possible;       // by language
  double prior = 0;                 // nats, before a byte is read
  // By language, added when languages are compared: what the ASCII of the document costs in it.
  std::vector<double> language_extra;

  bool holds(int charset) const;
};

// The readings of a document whose bytes are not pure ASCII, among the charsets that `allowed`
// takes.
std::vector<Reading> find_readings(const Evidence& evidence,
                                   const std::function<bool(int charset)>& allowed,
                                   bool with_controls);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_READINGS_H_
