// Confidence: how likely an answer is right, from what it rests on. The weights are fitted on texts
// that no model was trained on, so that of answers with probability p about a share p is right.
//
//   const double p = orva::charset_confidence(grounds);
//
// Life cycle: plain functions over constant data.
// Threads:    any number.
#ifndef ORVA_LIB_DETECT_CONFIDENCE_H_
#define ORVA_LIB_DETECT_CONFIDENCE_H_

#include <cstddef>

namespace orva {

// What decided. The table of weights has them in this order.
enum class Ground {
  kMark,        // a byte order mark
  kEscapes,     // escape sequences
  kAscii,       // nothing but ASCII
  kUtf8,        // multi-byte sequences that are all valid
  kAlone,       // one reading only can decode the bytes
  kSingleByte,  // the least cost, of a single-byte charset
  kMultiByte,   // of an East Asian charset
  kWide,        // of UTF-16 or UTF-32 without a mark
};
inline constexpr size_t kGrounds = 8;

struct Grounds {
  Ground ground = Ground::kAlone;
  double margin = 0;           // nats up to the next reading; 0 when there is none
  double language_margin = 0;  // nats up to the next language of the same reading
  double length = 0;           // bytes that the models were asked about
  double high = 0;             // bytes above 0x7F
  double misfit = 0;           // nats a byte beyond what text costs, where costs decided
};

// That the charset reads the document right.
double charset_confidence(const Grounds& grounds);

// That the language is right, if the charset is.
double language_confidence(const Grounds& grounds);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_CONFIDENCE_H_
