#include "lib/detect/trigram_index.h"

namespace orva {

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

}  // namespace orva
