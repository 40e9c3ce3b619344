#include "lib/detect/known_trigrams.h"

namespace orva {

KnownTrigrams::KnownTrigrams(const std::vector<uint32_t>& trigrams) {
  bool occurs[256] = {};
  for (const uint32_t trigram : trigrams) {
    for (const unsigned shift : {0U, 8U, 16U}) occurs[trigram >> shift & 0xFFU] = true;
  }
  for (size_t b = 0; b < 256; ++b) {
    if (occurs[b]) place_[b] = static_cast<uint16_t>(nb_places_++);
  }
  nb_groups_ = (nb_places_ + kGroup - 1) / kGroup;
  pairs_.assign(nb_places_ * nb_places_, 0);
  followers_.assign(nb_groups_, 0);
  for (size_t i = 0; i < trigrams.size(); ++i) {
    const uint32_t trigram = trigrams[i];
    uint16_t& pair = pairs_[place_[trigram >> 16] * nb_places_ + place_[trigram >> 8 & 0xFFU]];
    if (pair == 0) {
      pair = static_cast<uint16_t>(followers_.size() / nb_groups_);
      followers_.resize(followers_.size() + nb_groups_, 0);
    }
    const size_t place = place_[trigram & 0xFFU];
    uint32_t& followers = followers_[pair * nb_groups_ + place / kGroup];
    if (followers == 0) followers = static_cast<uint32_t>(i << kGroup);
    followers |= uint32_t{1} << place % kGroup;
  }
}

}  // namespace orva
