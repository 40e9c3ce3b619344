// What the bytes of a document say, by definition: one character after the other, none skipped.
#ifndef ORVA_TESTS_REFERENCE_NAIVE_EVIDENCE_H_
#define ORVA_TESTS_REFERENCE_NAIVE_EVIDENCE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "lib/detect/byte_tally.h"
#include "lib/detect/multi_byte_check.h"

namespace orva {

ByteKinds naive_byte_kinds(std::string_view bytes);

struct NaiveUnicode {
  bool valid = true;
  uint64_t characters = 0;  // before the first bad one
};

NaiveUnicode naive_unicode(int width, bool big_endian, std::string_view bytes);

struct NaiveMultiByte {
  bool valid = true;
  uint64_t wide = 0;    // characters of more than one byte
  uint64_t offset = 0;  // where the first bad character begins, or the one that the end cuts
};

NaiveMultiByte naive_multi_byte(MultiByteKind kind, std::string_view bytes);

// The lines of a document that a sample keeps behind its head.
std::string naive_sample(std::string_view bytes);

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_NAIVE_EVIDENCE_H_
