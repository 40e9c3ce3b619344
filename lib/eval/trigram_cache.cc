#include "lib/eval/trigram_cache.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace orva {
namespace {

constexpr unsigned kTableBits = 18;
constexpr uint32_t kNoKey = ~uint32_t{0};

// The golden ratio as a fraction of 2^32, which spreads keys that differ in any of their bytes.
uint32_t home_of(uint32_t key) { return (key * 0x9E3779B1U) >> (32 - kTableBits); }

uint32_t next_to(uint32_t place) { return (place + 1) & ((1U << kTableBits) - 1); }

}  // namespace

TrigramCache::TrigramCache(TrigramRows* rows)
    : rows_(rows),
      table_(size_t{1} << kTableBits, 0),
      trigrams_(kMostTrigrams + 1),
      rests_(kMostTrigrams + 1),
      models_(std::make_unique_for_overwrite<ModelSet[]>(kMostTrigrams + 1)),
      counted_(kMostCounted + 1) {
  trigrams_[0].key = kNoKey;
  waiting_.reserve(kMostCounted);
}

void TrigramCache::clear() {
  std::fill(table_.begin(), table_.end(), uint16_t{0});
  nb_trigrams_ = 1;
  rows_->clear();
}

void TrigramCache::count(unsigned pair, const unsigned char* buf, size_t n) {
  count_keys([&](const auto& count_one) {
    if (n == 0) return;
    count_one(trigram_key(pair >> 8 & 0xFF, pair & 0xFF, buf[0]));
    if (n > 1) count_one(trigram_key(pair & 0xFF, buf[0], buf[1]));
    const unsigned char* const end = buf + n;
    for (; end - buf >= 4; ++buf) {
      uint32_t key = 0;
      memcpy(&key, buf, sizeof key);
      // One byte too many, the highest.
      count_one(key & 0xFFFFFF);
    }
    for (; end - buf >= 3; ++buf) count_one(trigram_key(buf[0], buf[1], buf[2]));
  });
}

void TrigramCache::count_waiting() {
  std::vector<uint32_t> keys;
  keys.swap(waiting_);
  count_keys([&](const auto& count_one) {
    for (const uint32_t key : keys) count_one(key);
  });
  keys.clear();
  waiting_.swap(keys);
}

// `for_each` calls what it is given with the key of each trigram.
template <typename ForEachKey>
void TrigramCache::count_keys(const ForEachKey& for_each) {
  const size_t known = nb_trigrams_;
  limit_ = std::min(kMostTrigrams + 1, known + rows_->room());
  const uint16_t* const table = table_.data();
  Trigram* const trigrams = trigrams_.data();
  uint16_t* counted = counted_.data();
  for_each([&](uint32_t key) {
    uint16_t number = table[home_of(key)];
    if (__builtin_expect(trigrams[number].key != key, 0)) number = find_away(key);
    uint16_t& count = trigrams[number].count;
    // So that no branch depends on whether it is the first.
    *counted = number;
    counted += count == 0 ? 1 : 0;
    ++count;
  });
  if (!waiting_.empty()) {
    // Those that wait were counted for number 0.
    trigrams[0].count = 0;
    *std::find(counted_.data(), counted, uint16_t{0}) = *(counted - 1);
    --counted;
  }
  nb_counted_ = static_cast<size_t>(counted - counted_.data());
  // New ones get their rows together, for what is known of them is strewn over memory.
  rows_->add(trigrams + known, rests_.data() + known, models_.get() + known, nb_trigrams_ - known);
}

// The number of a trigram that is not at its home, or not there at all.
uint16_t TrigramCache::find_away(uint32_t key) {
  uint16_t& home = table_[home_of(key)];
  uint32_t place = home_of(key);
  for (; table_[place] != 0; place = next_to(place)) {
    const uint16_t number = table_[place];
    if (trigrams_[number].key != key) continue;
    if (trigrams_[number].count >= trigrams_[home].count) std::swap(table_[place], home);
    return number;
  }
  return add(key, &table_[place]);
}

uint16_t TrigramCache::add(uint32_t key, uint16_t* place) {
  if (nb_trigrams_ == limit_) {
    waiting_.push_back(key);
    return 0;
  }
  trigrams_[nb_trigrams_] = {key, 0, 0};
  *place = static_cast<uint16_t>(nb_trigrams_);
  return static_cast<uint16_t>(nb_trigrams_++);
}

}  // namespace orva
