#include "lib/detect/wide_blocks.h"

#include <immintrin.h>

#include <algorithm>
#include <bit>
#include <cstdint>

namespace orva {

namespace {

// The lanes that a text of so many bytes fills.
__attribute__((target("avx512bw,avx512vbmi2"))) inline __mmask64 lanes_of(size_t size) {
  return size >= kWideBlock ? ~__mmask64{0} : (__mmask64{1} << size) - 1;
}

__attribute__((target("avx512bw,avx512vbmi2"))) inline __mmask64 blanks_of(__m512i block) {
  const auto is = [](__m512i bytes, char c) __attribute__((target("avx512bw,avx512vbmi2"))) {
    return _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(c));
  };
  return is(block, ' ') | is(block, '\t') | is(block, '\n') | is(block, '\r');
}

// Writes the lanes that are kept; returns how many.
__attribute__((target("avx512bw,avx512vbmi2,popcnt"))) inline size_t keep(__m512i block,
                                                                          __mmask64 kept,
                                                                          char* to) {
  _mm512_storeu_si512(to, _mm512_maskz_compress_epi8(kept, block));
  return static_cast<size_t>(__builtin_popcountll(kept));
}

}  // namespace

bool has_wide_blocks() {
  static const bool has = __builtin_cpu_supports("avx512vbmi2") != 0 &&
                          __builtin_cpu_supports("avx512bw") != 0 &&
                          __builtin_cpu_supports("popcnt") != 0;
  return has;
}

__attribute__((target("avx512bw,avx512vbmi2,popcnt"))) size_t copy_normal_wide(
    std::string_view text, char* to) {
  char* const begin = to;
  // Of the block before: digits, blanks, and lanes equal to the one before them.
  __mmask64 last_digits = 0;
  __mmask64 last_blanks = 0;
  __mmask64 last_equal = 0;
  for (size_t i = 0; i < text.size(); i += kWideBlock) {
    const __mmask64 lanes = lanes_of(text.size() - i);
    const __m512i block = _mm512_maskz_loadu_epi8(lanes, text.data() + i);
    // What is in front of the text is not looked at.
    const __mmask64 lanes_before = i == 0 ? lanes & ~__mmask64{1} : lanes;
    const __m512i before = _mm512_maskz_loadu_epi8(lanes_before, text.data() + i - 1);
    const __mmask64 digits =
        _mm512_cmplt_epu8_mask(_mm512_sub_epi8(block, _mm512_set1_epi8('0')), _mm512_set1_epi8(10));
    const __mmask64 blanks = blanks_of(block);
    const __mmask64 equal = _mm512_mask_cmpeq_epi8_mask(lanes_before, block, before);
    const __mmask64 runs =
        equal & (equal << 1 | last_equal >> 63) & (equal << 2 | last_equal >> 62);
    const __mmask64 dropped = (digits & (digits << 1 | last_digits >> 63)) |
                              (blanks & (blanks << 1 | last_blanks >> 63)) | runs;
    const __m512i as = _mm512_mask_blend_epi8(digits, block, _mm512_set1_epi8('0'));
    to += keep(as, lanes & ~dropped, to);
    last_digits = digits;
    last_blanks = blanks;
    last_equal = equal;
  }
  return static_cast<size_t>(to - begin);
}

__attribute__((target("avx512bw,avx512vbmi2,popcnt"))) size_t copy_plain_wide(std::string_view text,
                                                                              char** to,
                                                                              bool* behind_blank) {
  for (size_t i = 0; i < text.size(); i += kWideBlock) {
    __mmask64 lanes = lanes_of(text.size() - i);
    const __m512i block = _mm512_maskz_loadu_epi8(lanes, text.data() + i);
    const __mmask64 signs = _mm512_cmpeq_epi8_mask(block, _mm512_set1_epi8('<'));
    const auto end = static_cast<size_t>(std::countr_zero(static_cast<uint64_t>(signs)));
    lanes &= lanes_of(end);
    const __mmask64 blanks = blanks_of(block) & lanes;
    *to += keep(block, lanes & ~(blanks & (blanks << 1 | (*behind_blank ? 1 : 0))), *to);
    const auto taken = static_cast<size_t>(__builtin_popcountll(lanes));
    if (taken != 0) *behind_blank = (blanks >> (taken - 1) & 1) != 0;
    if (signs != 0) return i + end;
  }
  return text.size();
}

}  // namespace orva
