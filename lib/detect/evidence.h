// Evidence: what the bytes themselves say, before any model is asked. One pass, piece by piece,
// over everything that is read.
//
//   orva::Evidence evidence;
//   evidence.feed(piece);                // any number of times
//   if (evidence.is_ascii()) ...
//
// Life cycle: reset starts a new document.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_EVIDENCE_H_
#define ORVA_LIB_DETECT_EVIDENCE_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/byte_tally.h"
#include "lib/detect/escape_check.h"
#include "lib/detect/multi_byte_check.h"
#include "lib/detect/subset_check.h"
#include "lib/detect/unicode_check.h"

namespace orva {

// A bit for each charset of the table.
class CharsetSet {
 public:
  // More charsets than that have no bit.
  static constexpr int kMost = 128;

  bool holds(int charset) const { return (words_[at(charset)] >> charset % 64 & 1) != 0; }
  void add(int charset) { words_[at(charset)] |= uint64_t{1} << charset % 64; }
  void add(const CharsetSet& others) {
    for (size_t w = 0; w < kWords; ++w) words_[w] |= others.words_[w];
  }

 private:
  static constexpr size_t kWords = kMost / 64;
  static size_t at(int charset) { return static_cast<size_t>(charset) / 64; }

  uint64_t words_[kWords] = {};
};

class Evidence {
 public:
  Evidence();

  void reset();
  void feed(std::string_view bytes);
  // Tells parts of a charset from the whole, too, from the start of the next document on.
  void watch_parts(bool watch) { watch_parts_ = watch; }

  uint64_t length() const { return length_; }
  bool holds(unsigned char byte) const { return tally_.holds(byte); }
  const ByteKinds& kinds() const { return tally_.kinds(); }
  // Bytes above 0x7F.
  uint64_t high() const { return kinds().high; }

  // The charset that a byte order mark names, null without one; and the mark's length.
  const char* mark() const;
  size_t mark_length() const;
  // What a known file format's first bytes say.
  bool has_binary_signature() const;

  const MultiByteCheck& multi_byte(MultiByteKind kind) const {
    return multi_byte_[static_cast<size_t>(kind)];
  }
  const EscapeCheck& escapes() const { return escapes_; }
  const std::vector<UnicodeCheck>& unicode() const { return unicode_; }
  // The check for a charset; null when it is another one's.
  const UnicodeCheck* unicode(int charset) const;

  // Whether `charset` can decode every byte that was fed. Bytes that it leaves open do not, and
  // neither do private characters and controls between 0x80 and 0x9F unless `with_controls`.
  bool decodes(int charset, bool with_controls) const;
  // The single-byte charsets that cannot.
  CharsetSet undecodable(bool with_controls) const;
  // Bits of the bytes that occur, from byte 64 * word on.
  uint64_t present(size_t word) const { return tally_.present(word); }

 private:
  bool part_decodes(int charset) const;
  bool table_decodes(int charset, bool with_controls) const;

  uint64_t length_ = 0;
  ByteTally tally_;
  std::string head_;
  std::vector<MultiByteCheck> multi_byte_;
  std::vector<UnicodeCheck> unicode_;
  EscapeCheck escapes_;
  bool watch_parts_ = false;
  SubsetCheck parts_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_EVIDENCE_H_
