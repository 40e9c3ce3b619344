#include "lib/eval/trigram_numbers.h"

#include <algorithm>
#include <cstring>

namespace orva {
namespace {

// The low bits of a trigram's first byte tell its place in its chunk, all others the chunk.
constexpr unsigned kPlaceBits = 5;
constexpr uint32_t kInChunk = 1U << kPlaceBits;
constexpr size_t kNbChunks = size_t{1} << (24 - kPlaceBits);
constexpr size_t chunk_of(Trigram trigram) { return trigram.bits >> kPlaceBits; }
// 2 MB of numbers, which a text in one language and charset hardly fills.
constexpr uint32_t kMostNumbers = 32768 * kInChunk;
// That many are kNone, so that any first byte finds it where there is no chunk.
constexpr uint32_t kNbNone = 256;
static_assert(kMostNumbers - kNbNone >= TrigramNumbers::kMostFound * kInChunk);

}  // namespace

TrigramNumbers::TrigramNumbers()
    : chunks_(kNbChunks),
      numbers_(std::make_unique_for_overwrite<uint16_t[]>(kMostNumbers)),
      nb_used_(kNbNone) {
  std::fill_n(numbers_.get(), kNbNone, kNone);
}

void TrigramNumbers::clear() {
  std::fill(chunks_.begin(), chunks_.end(), 0);
  nb_used_ = kNbNone;
}

uint16_t TrigramNumbers::find_one(Trigram trigram) const {
  return numbers_[chunks_[chunk_of(trigram)] + trigram.first_byte()];
}

uint16_t* TrigramNumbers::place_of(Trigram trigram) {
  uint32_t& chunk = chunks_[chunk_of(trigram)];
  if (chunk == 0) {
    if (nb_used_ == kMostNumbers) return nullptr;
    std::fill_n(numbers_.get() + nb_used_, kInChunk, kNone);
    chunk = nb_used_ - (trigram.first_byte() & ~(kInChunk - 1));
    nb_used_ += kInChunk;
  }
  return numbers_.get() + chunk + trigram.first_byte();
}

void TrigramNumbers::find(unsigned pair, const unsigned char* buf, size_t n,
                          uint16_t* numbers) const {
  const uint32_t* const chunks = chunks_.data();
  const uint16_t* const all = numbers_.get();
  uint32_t before = (pair & 0xFF) << 8 | (pair >> 8 & 0xFF);
  for (size_t i = 0; i < std::min<size_t>(n, 3); ++i) {
    const Trigram trigram = {before | static_cast<uint32_t>(buf[i]) << 16};
    numbers[i] = find_one(trigram);
    before = trigram.bits >> 8;
  }
#pragma GCC unroll 4
  for (size_t i = 3; i < n; ++i) {
    // One byte too many, which falls off.
    uint32_t bytes = 0;
    memcpy(&bytes, buf + i - 3, sizeof bytes);
    numbers[i] = all[chunks[chunk_of({bytes >> 8})] + buf[i - 2]];
  }
}

}  // namespace orva
