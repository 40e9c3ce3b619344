#include "lib/detect/trigram_index.h"

namespace orva {

namespace {

// Without a call, which std::popcount is where the processor is not known to have it.
int count_bits(uint32_t word) {
  word -= word >> 1 & 0x55555555U;
  word = (word & 0x33333333U) + (word >> 2 & 0x33333333U);
  return static_cast<int>(((word + (word >> 4)) & 0x0F0F0F0FU) * 0x01010101U >> 24);
}

}  // namespace

TrigramIndex::TrigramIndex(const std::vector<uint32_t>& trigrams) {
  bool occurs[256] = {};
  for (const uint32_t trigram : trigrams) {
    for (const unsigned shift : {0U, 8U, 16U}) occurs[trigram >> shift & 0xFFU] = true;
  }
  for (size_t b = 0; b < 256; ++b) {
    if (occurs[b]) place_[b] = static_cast<uint16_t>(nb_places_++);
  }
  nb_words_ = (nb_places_ + kBits - 1) / kBits;
  pairs_.assign(nb_places_ * nb_places_, 0);
  followers_.assign(nb_words_, Followers());
  for (size_t i = 0; i < trigrams.size(); ++i) {
    const uint32_t trigram = trigrams[i];
    uint16_t& pair = pairs_[place_[trigram >> 16] * nb_places_ + place_[trigram >> 8 & 0xFFU]];
    if (pair == 0) {
      pair = static_cast<uint16_t>(followers_.size() / nb_words_);
      followers_.resize(followers_.size() + nb_words_);
    }
    const size_t place = place_[trigram & 0xFFU];
    Followers& followers = followers_[pair * nb_words_ + place / kBits];
    if (followers.bits == 0) followers.first = static_cast<int32_t>(i);
    followers.bits |= uint32_t{1} << place % kBits;
  }
}

// In steps without branches, so that the look-ups of each step do not wait for each other.
void TrigramIndex::find_all(const unsigned char* bytes, size_t count, int* numbers) const {
  uint32_t places[kTrigramsAtOnce + 2];
  const Followers* at[kTrigramsAtOnce];
  for (size_t i = 0; i < count + 2; ++i) places[i] = place_[bytes[i]];
  for (size_t i = 0; i < count; ++i) {
    const size_t pair = pairs_[places[i] * nb_places_ + places[i + 1]];
    at[i] = &followers_[pair * nb_words_ + places[i + 2] / kBits];
  }
  for (size_t i = 0; i < count; ++i) {
    const Followers followers = *at[i];
    const uint32_t place = places[i + 2] % kBits;
    const int number = followers.first + count_bits(followers.bits & ((1U << place) - 1));
    const int known = static_cast<int>(followers.bits >> place & 1U);
    numbers[i] = number | (known - 1);
  }
}

}  // namespace orva
