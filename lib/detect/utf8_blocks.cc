#include "lib/detect/utf8_blocks.h"

#include <algorithm>

namespace orva {

namespace {

using Bytes16 = uint8_t __attribute__((vector_size(16)));
using Bytes32 = uint8_t __attribute__((vector_size(32)));

// A counter of 8 bits takes no more blocks.
template <typename Bytes>
constexpr size_t kMostBlocks = 255 / (kUtf8Block / sizeof(Bytes));

constexpr uint8_t kFirst2 = 0xC0;  // first bytes of characters of two bytes or more
constexpr uint8_t kFirst3 = 0xE0;
constexpr uint8_t kFirst4 = 0xF0;

template <typename Bytes>
__attribute__((always_inline)) inline bool any(const Bytes& bytes) {
  uint64_t words[sizeof(Bytes) / sizeof(uint64_t)];
  __builtin_memcpy(words, &bytes, sizeof words);
  uint64_t all = 0;
  for (const uint64_t word : words) all |= word;
  return all != 0;
}

template <typename Bytes>
__attribute__((always_inline)) inline void load(const char* from, Bytes* bytes) {
  __builtin_memcpy(bytes, from, sizeof *bytes);
}

// What a block's bytes are, lane by lane.
template <typename Bytes>
struct Utf8Lanes {
  Bytes bad = {};     // not 0 for bytes that cannot stand behind the three before them
  Bytes firsts = {};  // first bytes of characters of two bytes or more

  __attribute__((always_inline)) void add(const char* at) {
    Bytes now;
    Bytes last;
    Bytes second_last;
    Bytes third_last;
    load(at, &now);
    load(at - 1, &last);
    load(at - 2, &second_last);
    load(at - 3, &third_last);
    const Bytes continues = Bytes((now & 0xC0) == 0x80);
    const Bytes wanted =
        Bytes(last >= kFirst2) | Bytes(second_last >= kFirst3) | Bytes(third_last >= kFirst4);
    // Overlong forms, surrogates and what lies beyond Unicode.
    const Bytes never = Bytes((now & 0xFE) == 0xC0) | Bytes(now > 0xF4);
    const Bytes too_low =
        (Bytes(last == 0xE0) & Bytes(now < 0xA0)) | (Bytes(last == 0xF0) & Bytes(now < 0x90));
    const Bytes too_high =
        (Bytes(last == 0xED) & Bytes(now >= 0xA0)) | (Bytes(last == 0xF4) & Bytes(now >= 0x90));
    bad |= (continues ^ wanted) | never | too_low | too_high;
    // Comparisons give all bits of a lane: -1.
    firsts -= Bytes(now >= kFirst2);
  }
};

template <typename Bytes>
__attribute__((always_inline)) inline bool is_ascii(const char* block) {
  Bytes high;
  load(block - kUtf8Before, &high);
  for (size_t k = 0; k < kUtf8Block; k += sizeof(Bytes)) {
    Bytes now;
    load(block + k, &now);
    high |= now;
  }
  high &= 0x80;
  return !any(high);
}

template <typename Bytes>
__attribute__((always_inline)) inline size_t count_blocks(const char* blocks, size_t nb_blocks,
                                                          uint64_t* wide) {
  size_t i = 0;
  bool good = true;
  while (good && i < nb_blocks) {
    Bytes firsts = {};
    for (const size_t end = std::min(nb_blocks, i + kMostBlocks<Bytes>); i < end; ++i) {
      const char* block = blocks + i * kUtf8Block;
      if (is_ascii<Bytes>(block)) continue;
      Utf8Lanes<Bytes> lanes;
      for (size_t k = 0; k < kUtf8Block; k += sizeof(Bytes)) lanes.add(block + k);
      good = !any(lanes.bad);
      if (!good) break;
      firsts += lanes.firsts;
    }
    for (size_t k = 0; k < sizeof(Bytes); ++k) *wide += firsts[k];
  }
  return i;
}

size_t count_plain(const char* blocks, size_t nb_blocks, uint64_t* wide) {
  return count_blocks<Bytes16>(blocks, nb_blocks, wide);
}

__attribute__((target("avx2"))) size_t count_avx2(const char* blocks, size_t nb_blocks,
                                                  uint64_t* wide) {
  return count_blocks<Bytes32>(blocks, nb_blocks, wide);
}

}  // namespace

Utf8Counter plain_utf8_counter() { return count_plain; }

Utf8Counter best_utf8_counter() {
  return __builtin_cpu_supports("avx2") != 0 ? count_avx2 : count_plain;
}

size_t skip_utf8(std::string_view bytes, size_t i, uint64_t* wide) {
  static const Utf8Counter count = best_utf8_counter();
  if (i < kUtf8Before || bytes.size() - i < kUtf8Block) return i;
  i += kUtf8Block * count(bytes.data() + i, (bytes.size() - i) / kUtf8Block, wide);
  // A character may begin before the end of the last block and end behind it.
  for (size_t back = 1; back <= kUtf8Before; ++back) {
    const auto b = static_cast<unsigned char>(bytes[i - back]);
    if (b < 0x80) break;
    if (b < kFirst2) continue;
    const size_t length = b < kFirst3 ? 2 : b < kFirst4 ? 3 : 4;
    if (length <= back) break;
    --*wide;
    return i - back;
  }
  return i;
}

}  // namespace orva
