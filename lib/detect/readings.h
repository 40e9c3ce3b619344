// Readings: the different texts that a document can be. Charsets that decode all of its bytes to
// the same text are one reading, told by the bytes that it holds; a reading's cost in a language is
// that of its best model, wherever among its charsets the model is.
#ifndef ORVA_LIB_DETECT_READINGS_H_
#define ORVA_LIB_DETECT_READINGS_H_

#include <functional>
#include <vector>

#include "lib/detect/evidence.h"
#include "lib/detect/homes.h"
#include "lib/detect/pool.h"

namespace orva {

struct Reading {
  std::vector<int> charsets;        // the likeliest first
  const uint16_t* table = nullptr;  // decode table of a single-byte one
  uint16_t print = 0;               // of what that makes of the document's bytes
  std::vector<double> costs;        // by language; kNoCost where no model could tell
  double prior = 0;                 // nats, before a byte is read
  double least = kNoCost;           // of the costs, and the prior
  // What it can be in. Not owned.
  const PossibleLanguages* possible = nullptr;
  // By language, added when languages are compared: what the ASCII of the document costs in it.
  // Null where it costs all of them alike. Not owned.
  const std::vector<double>* language_extra = nullptr;

  bool holds(int charset) const;
  // Forgets another document's.
  void reset();
};

// Fills in the readings of a document whose bytes are not pure ASCII, among the charsets that
// `allowed` takes.
void find_readings(const Evidence& evidence, const std::function<bool(int charset)>& allowed,
                   bool with_controls, Pool<Reading>* readings);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_READINGS_H_
