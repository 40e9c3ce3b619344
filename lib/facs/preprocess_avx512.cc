#include "lib/facs/preprocess_avx512.h"

#include <immintrin.h>

#include <cstdint>

namespace orva {
namespace {

constexpr int kBlock = 64;

// Which bytes lie in [low, high].
__attribute__((target("avx512bw"))) inline uint64_t in_range(__m512i v, char low, char high) {
  const __m512i above_low = _mm512_sub_epi8(v, _mm512_set1_epi8(low));
  return _mm512_cmple_epu8_mask(above_low, _mm512_set1_epi8(static_cast<char>(high - low)));
}

__attribute__((target("avx512bw"))) inline uint64_t equals(__m512i v, char c) {
  return _mm512_cmpeq_epi8_mask(v, _mm512_set1_epi8(c));
}

// What stands before the block at hand.
struct Before {
  // Kept: a NUL counts as standing before the buffer, so three leading NULs are a run of four.
  __m512i bytes = {};
  uint64_t same = 0;  // those that equal the one before them
};

// Which bytes of the block equal the three before them.
__attribute__((target("avx512bw,avx512vbmi"))) inline uint64_t in_run(__m512i v, Before* before) {
  // The last byte before the block, and all of the block but its last.
  const __m512i from_last = _mm512_add_epi8(
      _mm512_set1_epi8(kBlock - 1),
      _mm512_set_epi8(63, 62, 61, 60, 59, 58, 57, 56, 55, 54, 53, 52, 51, 50, 49, 48, 47, 46, 45,
                      44, 43, 42, 41, 40, 39, 38, 37, 36, 35, 34, 33, 32, 31, 30, 29, 28, 27, 26,
                      25, 24, 23, 22, 21, 20, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5,
                      4, 3, 2, 1, 0));
  const __m512i shifted = _mm512_permutex2var_epi8(before->bytes, from_last, v);
  const uint64_t same = _mm512_cmpeq_epi8_mask(v, shifted);
  const uint64_t run = same & (same << 1 | before->same >> 63) & (same << 2 | before->same >> 62);
  *before = {v, same};
  return run;
}

}  // namespace

__attribute__((target("avx512bw,avx512vbmi,avx512vbmi2,popcnt"))) int preprocess_avx512(
    const PreprocessSwitches& switches, unsigned char* buf, int len) {
  Before before;
  uint64_t cut = 0;
  unsigned char* out = buf;
  for (int at = 0; at < len; at += kBlock) {
    const int n = len - at < kBlock ? len - at : kBlock;
    const uint64_t there = ~uint64_t{0} >> (kBlock - n);
    __m512i v = _mm512_maskz_loadu_epi8(there, buf + at);
    uint64_t kept = there;
    if (switches.cut_runs) {
      const uint64_t run = in_run(v, &before) & there;
      cut |= run;
      kept &= ~run;
    }
    if (switches.drop_digits) kept &= ~in_range(v, '0', '9');
    if (switches.drop_blanks) {
      kept &= ~(in_range(v, '\t', '\n') | equals(v, '\r') | equals(v, ' '));
    }
    if (switches.fold_caps) {
      v = _mm512_mask_add_epi8(v, in_range(v, 'A', 'Z'), v, _mm512_set1_epi8('a' - 'A'));
    }
    const int nb_kept = __builtin_popcountll(kept);
    // Never beyond what was read.
    const uint64_t first = nb_kept == 0 ? 0 : ~uint64_t{0} >> (kBlock - nb_kept);
    _mm512_mask_storeu_epi8(out, first, _mm512_maskz_compress_epi8(kept, v));
    out += nb_kept;
  }
  // Kept: cutting runs ends the text with a NUL.
  if (cut != 0) *out = 0;
  return static_cast<int>(out - buf);
}

}  // namespace orva
