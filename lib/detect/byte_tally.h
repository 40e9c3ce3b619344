// ByteTally: which bytes a document holds, and how many of the kinds that tell text from what is
// none.
//
//   orva::ByteTally tally;
//   tally.feed(piece);                   // any number of times
//   if (tally.holds(0) || tally.kinds().high == 0) ...
//
// Most bytes of a text are ones that it has held before. So blocks are looked up in the set of
// those as a whole, by vectors where the machine has what it takes, and only blocks with a new byte
// are read byte by byte.
//
// Life cycle: reset starts a new document.
// Ownership:  none.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_BYTE_TALLY_H_
#define ORVA_LIB_DETECT_BYTE_TALLY_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orva {

// How many bytes are of some kinds.
struct ByteKinds {
  uint64_t high = 0;          // above 0x7F
  uint64_t odd_controls = 0;  // control bytes that text never holds
  uint64_t blanks = 0;        // 0x20, the blank of ASCII
  uint64_t at_signs = 0;      // 0x40, the blank of EBCDIC
};

// A set of byte values, as a table and as bits to be looked up by both halves of a byte.
class ByteSet {
 public:
  bool holds(unsigned char b) const { return in_[b] != 0; }
  void add(unsigned char b);

  // By byte: 1 for those in the set.
  const uint8_t* table() const { return in_; }
  // The same as four words of bits.
  uint64_t word(size_t i) const { return words_[i]; }
  // By lower half: a bit for each upper half, of bytes up to 0x7F and of those above.
  const uint8_t* low_rows() const { return rows_[0]; }
  const uint8_t* high_rows() const { return rows_[1]; }

 private:
  uint8_t in_[256] = {};
  uint64_t words_[4] = {};
  uint8_t rows_[2][16] = {};
};

class ByteTally {
 public:
  static constexpr size_t kBlock = 64;
  // A counter of 8 bits a lane takes no more blocks.
  static constexpr size_t kMostBlocks = 48;

  // What a run of blocks adds: their bytes' kinds, up to the first block with a byte that `known`
  // lacks, which is not counted, and whose bytes that it lacks get a bit in `fresh`; returns how
  // many were. REQUIRES: nb_blocks <= kMostBlocks.
  using Counter = size_t (*)(const char* blocks, size_t nb_blocks, const ByteSet& known,
                             ByteKinds* kinds, uint64_t* fresh);

  explicit ByteTally(Counter counter = best_counter()) : counter_(counter) {}
  static Counter plain_counter();
  // The fastest for this machine.
  static Counter best_counter();

  void reset() { *this = ByteTally(counter_); }
  void feed(std::string_view bytes);

  bool holds(unsigned char b) const { return set_.holds(b); }
  // Words of 64 bits each: bit (b % 64) of word b / 64 for a byte b that occurs.
  uint64_t present(size_t word) const { return set_.word(word); }
  const ByteKinds& kinds() const { return kinds_; }

 private:
  void note_each(std::string_view bytes);
  void note(unsigned char b) {
    if (!set_.holds(b)) set_.add(b);
  }

  Counter counter_;
  ByteSet set_;
  ByteKinds kinds_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_BYTE_TALLY_H_
