#include "lib/detect/known_trigrams.h"

#include <cstring>

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
  stride_ = kBase + nb_groups_;
  pairs_.assign(nb_places_ * nb_places_, 0);
  size_t nb_pairs = 1;
  for (const uint32_t trigram : trigrams) {
    uint16_t& pair = pairs_[pair_place(trigram)];
    if (pair == 0) pair = static_cast<uint16_t>(nb_pairs++);
  }
  followers_.assign(nb_pairs * stride_, 0);
  size_t last_pair = 0;
  uint32_t base = 0;  // the number of the pair's first trigram
  for (size_t i = 0; i < trigrams.size(); ++i) {
    const size_t pair = pairs_[pair_place(trigrams[i])];
    uint16_t* const block = followers_.data() + pair * stride_;
    if (pair != last_pair) {
      base = static_cast<uint32_t>(i);
      memcpy(block, &base, sizeof base);
      last_pair = pair;
    }
    const size_t place = place_[trigrams[i] & 0xFFU];
    uint16_t& group = block[kBase + place / kGroup];
    if (group == 0) group = static_cast<uint16_t>((i - base) << kGroup);
    group = static_cast<uint16_t>(group | 1U << place % kGroup);
  }
}

}  // namespace orva
