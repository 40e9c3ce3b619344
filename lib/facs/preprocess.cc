#include "lib/facs/preprocess.h"

#include <emmintrin.h>

namespace orva {
namespace {

constexpr int kBlock = 16;
constexpr unsigned kBlockMask = 0xFFFF;

// Which bytes of `v` lie in [low, high], both below 128.
__m128i in_range(__m128i v, char low, char high) {
  // Bytes above 127 are negative and so below any low.
  const __m128i above = _mm_cmpgt_epi8(v, _mm_set1_epi8(static_cast<char>(low - 1)));
  const __m128i below = _mm_cmplt_epi8(v, _mm_set1_epi8(static_cast<char>(high + 1)));
  return _mm_and_si128(above, below);
}

__m128i equals(__m128i v, char c) { return _mm_cmpeq_epi8(v, _mm_set1_epi8(c)); }

unsigned mask_of(__m128i v) { return static_cast<unsigned>(_mm_movemask_epi8(v)); }

// One pass over a buffer. Blocks of 16 bytes in which nothing is dropped are folded whole; the others
// go byte by byte.
class Pass {
 public:
  Pass(const PreprocessSwitches& switches, unsigned char* buf) : on_(switches), out_(buf) {}

  // `block` is read before anything is written, so the output may overlap it.
  void take_block(const unsigned char* block) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    if (drops_nothing(v)) {
      __m128i folded = v;
      if (on_.fold_caps) {
        folded = _mm_add_epi8(v, _mm_and_si128(in_range(v, 'A', 'Z'), _mm_set1_epi8(32)));
      }
      last_[0] = block[kBlock - 1];
      last_[1] = block[kBlock - 2];
      last_[2] = block[kBlock - 3];
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out_), folded);
      out_ += kBlock;
      return;
    }
    unsigned char copy[kBlock];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(copy), v);
    take_bytes(copy, kBlock);
  }

  void take_bytes(const unsigned char* bytes, int n) {
    for (int i = 0; i < n; ++i) {
      const unsigned char c = bytes[i];
      const bool in_run = c == last_[0] && c == last_[1] && c == last_[2];
      last_[2] = last_[1];
      last_[1] = last_[0];
      last_[0] = c;
      const bool digit = c >= '0' && c <= '9';
      const bool blank = c == ' ' || c == '\r' || c == '\n' || c == '\t';
      const bool capital = c >= 'A' && c <= 'Z';
      *out_ = static_cast<unsigned char>(c + (on_.fold_caps && capital ? 32 : 0));
      const bool dropped = (on_.cut_runs && in_run) || (on_.drop_digits && digit) ||
                           (on_.drop_blanks && blank);
      out_ += dropped ? 0 : 1;
    }
  }

  unsigned char* out() const { return out_; }

 private:
  bool drops_nothing(__m128i v) const {
    unsigned dropped = 0;
    if (on_.drop_digits) dropped |= mask_of(in_range(v, '0', '9'));
    if (on_.drop_blanks) {
      dropped |= mask_of(_mm_or_si128(_mm_or_si128(equals(v, ' '), equals(v, '\r')),
                                      _mm_or_si128(equals(v, '\n'), equals(v, '\t'))));
    }
    if (dropped != 0) return false;
    return !on_.cut_runs || !has_run(v);
  }

  // Whether a byte of the block equals the three before it.
  bool has_run(__m128i v) const {
    __m128i before = _mm_slli_si128(v, 1);
    // Bit i of `same` says that byte i equals the one before; two bits more for the bytes before.
    unsigned same = mask_of(_mm_cmpeq_epi8(v, before)) & (kBlockMask - 1);
    const int first = _mm_cvtsi128_si32(v) & 0xFF;
    same = same << 2 | (first == last_[0] ? 4U : 0U) | (last_[0] == last_[1] ? 2U : 0U) |
           (last_[1] == last_[2] ? 1U : 0U);
    return (same & same >> 1 & same >> 2) != 0;
  }

  const PreprocessSwitches on_;
  unsigned char* out_;
  // The three raw bytes before, latest first. Kept: a NUL counts as standing before the buffer, so
  // three leading NULs are a run of four.
  int last_[3] = {0, -1, -1};
};

}  // namespace

int preprocess_text(const PreprocessSwitches& switches, unsigned char* buf, int len) {
  Pass pass(switches, buf);
  int at = 0;
  for (; at + kBlock <= len; at += kBlock) pass.take_block(buf + at);
  // The output never passes the input, so the rest is still there.
  pass.take_bytes(buf + at, len - at);
  return static_cast<int>(pass.out() - buf);
}

}  // namespace orva
