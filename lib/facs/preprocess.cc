#include "lib/facs/preprocess.h"

#include <tmmintrin.h>

#include <cstring>
#include <initializer_list>

#include "lib/facs/preprocess_avx512.h"

namespace orva {
namespace {

constexpr int kBlock = 16;
constexpr int kHalf = kBlock / 2;
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

// For each set of dropped bytes of eight, where the kept ones lie, one after the other.
struct KeptPlaces {
  alignas(kHalf) unsigned char of[256][kHalf] = {};

  constexpr KeptPlaces() {
    for (int dropped = 0; dropped < 256; ++dropped) {
      int kept = 0;
      for (int i = 0; i < kHalf; ++i) {
        if ((dropped >> i & 1) == 0) of[dropped][kept++] = static_cast<unsigned char>(i);
      }
    }
  }
};
constexpr KeptPlaces kKeptPlaces;

// Writes the kept bytes of a block to `out` and returns their end; overwrites 16 bytes at most.
using WriteKept = unsigned char* (*)(__m128i block, unsigned dropped, unsigned char* out);

unsigned char* write_kept_plain(__m128i block, unsigned dropped, unsigned char* out) {
  unsigned char bytes[kBlock];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), block);
  for (int i = 0; i < kBlock; ++i) {
    *out = bytes[i];
    out += (dropped >> i & 1) == 0 ? 1 : 0;
  }
  return out;
}

__attribute__((target("ssse3,popcnt"))) unsigned char* write_kept_ssse3(__m128i block,
                                                                        unsigned dropped,
                                                                        unsigned char* out) {
  for (const unsigned half : {dropped & 0xFF, dropped >> kHalf}) {
    const __m128i places = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kKeptPlaces.of[half]));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(block, places));
    out += kHalf - __builtin_popcount(half);
    block = _mm_srli_si128(block, kHalf);
  }
  return out;
}

// One pass over a buffer, block by block.
class Pass {
 public:
  Pass(const PreprocessSwitches& switches, WriteKept write_kept, unsigned char* buf)
      : on_(switches), write_kept_(write_kept), out_(buf) {}

  // `block` is read before anything is written, so the output may overlap it.
  void take_block(const unsigned char* block) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    const unsigned dropped = dropped_of(v, kBlock);
    for (int i = 0; i < 3; ++i) last_[i] = block[kBlock - 1 - i];
    if (dropped == 0) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out_), folded(v));
      out_ += kBlock;
    } else {
      out_ = write_kept_(folded(v), dropped, out_);
    }
  }

  // Takes the last bytes, fewer than a block.
  void take_rest(const unsigned char* bytes, int n) {
    unsigned char in[kBlock] = {};
    unsigned char kept[kBlock];
    memcpy(in, bytes, static_cast<size_t>(n));
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
    const unsigned dropped = dropped_of(v, n);
    const auto nb_kept = static_cast<size_t>(write_kept_(folded(v), dropped, kept) - kept);
    memcpy(out_, kept, nb_kept);
    out_ += nb_kept;
  }

  unsigned char* out() const { return out_; }
  bool has_cut_runs() const { return has_cut_ != 0; }

 private:
  __m128i folded(__m128i v) const {
    if (!on_.fold_caps) return v;
    return _mm_add_epi8(v, _mm_and_si128(in_range(v, 'A', 'Z'), _mm_set1_epi8(32)));
  }

  // Which of the first `n` bytes of a block are dropped, and all behind them.
  unsigned dropped_of(__m128i v, int n) {
    const unsigned beyond = kBlockMask << n & kBlockMask;
    unsigned dropped = on_.cut_runs ? in_run(v) & ~beyond : 0;
    has_cut_ |= dropped;
    dropped |= beyond;
    if (on_.drop_digits) dropped |= mask_of(in_range(v, '0', '9'));
    if (on_.drop_blanks) {
      dropped |= mask_of(_mm_or_si128(_mm_or_si128(equals(v, ' '), equals(v, '\r')),
                                      _mm_or_si128(equals(v, '\n'), equals(v, '\t'))));
    }
    return dropped;
  }

  // Which bytes of the block equal the three before them.
  unsigned in_run(__m128i v) const {
    const __m128i before = _mm_slli_si128(v, 1);
    // Bit i of `same` says that byte i equals the one before; two bits more for the bytes before.
    unsigned same = mask_of(_mm_cmpeq_epi8(v, before)) & (kBlockMask - 1);
    const int first = _mm_cvtsi128_si32(v) & 0xFF;
    same = same << 2 | (first == last_[0] ? 4U : 0U) | (last_[0] == last_[1] ? 2U : 0U) |
           (last_[1] == last_[2] ? 1U : 0U);
    return (same & same << 1 & same << 2) >> 2;
  }

  const PreprocessSwitches on_;
  const WriteKept write_kept_;
  unsigned char* out_;
  unsigned has_cut_ = 0;
  // The three raw bytes before, latest first. Kept: a NUL counts as standing before the buffer, so
  // three leading NULs are a run of four.
  int last_[3] = {0, -1, -1};
};

template <WriteKept write_kept>
int preprocess_blocks(const PreprocessSwitches& switches, unsigned char* buf, int len) {
  Pass pass(switches, write_kept, buf);
  int at = 0;
  for (; at + kBlock <= len; at += kBlock) pass.take_block(buf + at);
  // The output never passes the input, so the rest is still there.
  pass.take_rest(buf + at, len - at);
  // Kept: cutting runs ends the text with a NUL.
  if (pass.has_cut_runs()) *pass.out() = 0;
  return static_cast<int>(pass.out() - buf);
}

}  // namespace

std::vector<Preprocess> preprocessors() {
  std::vector<Preprocess> all = {preprocess_blocks<write_kept_plain>};
  const bool has_popcnt = __builtin_cpu_supports("popcnt") != 0;
  if (has_popcnt && __builtin_cpu_supports("ssse3") != 0) {
    all.push_back(preprocess_blocks<write_kept_ssse3>);
  }
  if (has_popcnt && __builtin_cpu_supports("avx512vbmi2") != 0 &&
      __builtin_cpu_supports("avx512vbmi") != 0 && __builtin_cpu_supports("avx512bw") != 0) {
    all.push_back(preprocess_avx512);
  }
  return all;
}

int preprocess_text(const PreprocessSwitches& switches, unsigned char* buf, int len) {
  static const Preprocess best = preprocessors().back();
  return best(switches, buf, len);
}

}  // namespace orva
