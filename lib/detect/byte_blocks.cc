#include "lib/detect/byte_blocks.h"

#include <algorithm>

namespace orva {

namespace {

constexpr size_t kNbCounters = 4;
// Fewer bytes are not worth clearing several counters for.
constexpr size_t kFewBytes = 1024;
// Counters of 32 bits are emptied before they can run over.
constexpr size_t kMostBytes = size_t{1} << 30;

// Neighbours are often the same byte: counted apart, none waits for the other.
void count_apart(std::string_view bytes, uint64_t* counts) {
  uint32_t counters[kNbCounters][256] = {};
  size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) {
    const uint64_t word = word_at(bytes, i);
    for (unsigned k = 0; k < 8; ++k) ++counters[k % kNbCounters][word >> (8 * k) & 0xFF];
  }
  for (; i < bytes.size(); ++i) ++counters[0][static_cast<unsigned char>(bytes[i])];
  for (size_t b = 0; b < 256; ++b) {
    for (const auto& counter : counters) counts[b] += counter[b];
  }
}

}  // namespace

void count_bytes(std::string_view bytes, uint64_t* counts) {
  if (bytes.size() < kFewBytes) {
    for (const char c : bytes) ++counts[static_cast<unsigned char>(c)];
    return;
  }
  for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kMostBytes))) {
    count_apart(bytes.substr(0, kMostBytes), counts);
  }
}

}  // namespace orva
