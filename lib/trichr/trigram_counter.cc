#include "lib/trichr/trigram_counter.h"

#include <algorithm>

#include "lib/tc/tc_alloc.h"
#include "lib/util/accounting.h"

namespace orva {

TrigramCounter::TrigramCounter()
    : pages_(static_cast<int**>(new_block(kNbPages, sizeof(int*), CountedSize<int*>::value))) {
  std::fill_n(pages_, kNbPages, nullptr);
}

TrigramCounter::~TrigramCounter() {
  for (int i = 0; i < kNbPages; ++i) {
    if (pages_[i] != nullptr) free_chk(pages_[i], kPage * 4);
  }
  free_chk(pages_, kNbPages * CountedSize<int*>::value);
}

void TrigramCounter::set_context(const unsigned char* two_bytes) {
  last_two_ = static_cast<uint32_t>(two_bytes[0]) << 8 | two_bytes[1];
}

void TrigramCounter::add(const unsigned char* bytes, int len) {
  uint32_t bigram = last_two_;
  for (int i = 0; i < len; ++i) {
    const uint32_t byte = bytes[i];
    int* page = pages_[bigram];
    if (page == nullptr) page = new_page(bigram);
    if (page[byte]++ == 0) remember(bigram << 8 | byte);
    ++byte_counts_[byte];
    bigram = (bigram << 8 | byte) & 0xffff;
  }
  last_two_ = bigram;
}

int* TrigramCounter::new_page(unsigned bigram) {
  int* page = static_cast<int*>(new_block(kPage, sizeof(int), 4));
  std::fill_n(page, kPage, 0);
  pages_[bigram] = page;
  ++nb_bigrams_;
  return page;
}

void TrigramCounter::remember(unsigned key) {
  trigrams_.expand(nb_trigrams_ + 1);
  trigrams_[nb_trigrams_++] = key;
}

int TrigramCounter::bigram_total(unsigned bigram) const {
  const int* page = pages_[bigram];
  int total = 0;
  for (int i = 0; page != nullptr && i < kPage; ++i) total += page[i];
  return total;
}

}  // namespace orva
