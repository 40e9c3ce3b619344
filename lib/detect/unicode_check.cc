#include "lib/detect/unicode_check.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

constexpr double kControlCost = 25;
constexpr double kPrivateCost = 25;
constexpr double kRareCost = 14;

struct BlockCost {
  uint32_t last;  // last character of the block
  double cost;
};

// Nats of one character out of a script's alphabet, plus those of the script; 14 where hardly any
// text is.
constexpr BlockCost kBlocks[] = {{0x007F, 2.5},        {0x009F, kControlCost},
                                 {0x00FF, 5},          {0x024F, 6},
                                 {0x02AF, 11},         {0x036F, 8},
                                 {0x03FF, 4.5},        {0x045F, 4},
                                 {0x052F, 6},          {0x058F, 5},
                                 {0x05FF, 4.5},        {0x06FF, 4.5},
                                 {0x08FF, 10},         {0x0DFF, 5},
                                 {0x0E7F, 5},          {0x0FFF, 8},
                                 {0x10FF, 6},          {0x11FF, 9},
                                 {0x13FF, 10},         {0x17FF, 10},
                                 {0x1DFF, 12},         {0x1EFF, 5.5},
                                 {0x1FFF, 7},          {0x206F, 5},
                                 {0x20CF, 7},          {0x27BF, 8},
                                 {0x2DFF, 12},         {0x2FFF, 12},
                                 {0x303F, 4},          {0x30FF, 4.5},
                                 {0x319F, 10},         {0x33FF, 9},
                                 {0x4DFF, kRareCost},  {0x9FFF, 8.5},
                                 {0xABFF, kRareCost},  {0xD7AF, 7.5},
                                 {0xDFFF, kRareCost},  {0xF8FF, kPrivateCost},
                                 {0xFAFF, 12},         {0xFDFF, 11},
                                 {0xFE0F, 8},          {0xFEFE, 10},
                                 {0xFEFF, 5},          {0xFFEF, 6},
                                 {0xFFFF, kRareCost},  {0x1FFFF, 9},
                                 {0x10FFFF, kRareCost}};

double cost_of(uint32_t value) {
  if (value < 0x20 && value != '\n' && value != '\r' && value != '\t') return kControlCost;
  const BlockCost* block = kBlocks;
  while (value > block->last) ++block;
  return block->cost;
}

// The same for the units of 16 bits whose upper 12 bits are the index, in half nats; 0 where a unit
// wants a closer look: controls, surrogates, noncharacters, blocks that end in between.
struct UnitCosts {
  uint8_t twice[4096] = {};

  UnitCosts() {
    for (uint32_t i = 2; i < 4096; ++i) {
      const uint32_t first = i << 4;
      const double cost = cost_of(first);
      const bool surrogates = first >= 0xD800 && first <= 0xDFFF;
      const bool apart = first == 0xFDD0 || first == 0xFDE0 || first == 0xFFF0;
      if (!surrogates && !apart && cost_of(first + 15) == cost) {
        twice[i] = static_cast<uint8_t>(2 * cost);
      }
    }
  }
};

bool is_noncharacter(uint32_t value) {
  return (value & 0xFFFEU) == 0xFFFE || (value >= 0xFDD0 && value <= 0xFDEF);
}

// Adds the costs of units from `i` on, as long as there is nothing odd about them; returns where
// one is, or the end.
template <bool kSwapped>
size_t price_units(std::string_view bytes, size_t i, uint64_t* twice) {
  static const UnitCosts costs;
  uint64_t sum = 0;
  for (; i + 2 <= bytes.size(); i += 2) {
    uint16_t value;
    memcpy(&value, bytes.data() + i, sizeof value);
    const unsigned of_unit = costs.twice[(kSwapped ? __builtin_bswap16(value) : value) >> 4];
    if (of_unit == 0) break;
    sum += of_unit;
  }
  *twice += sum;
  return i;
}

constexpr size_t kBlock = 64;
using Units = uint16_t __attribute__((vector_size(16)));
using Values = uint32_t __attribute__((vector_size(16)));

// Lanes in the other byte order.
inline void swap_bytes(Units* units) { *units = *units << 8 | *units >> 8; }
inline void swap_bytes(Values* values) {
  *values = *values << 24 | (*values & 0xFF00) << 8 | (*values >> 8 & 0xFF00) | *values >> 24;
}

// Nothing is beyond Unicode in 16 bits.
inline void add_beyond(const Units&, Units*) {}
inline void add_beyond(const Values& values, Values* odd) { *odd |= Values(values > 0x10FFFF); }

// Whether each lane of a block is a character that needs no closer look.
template <typename Lanes>
bool is_plain_block(const char* block, bool swapped) {
  Lanes odd = {};
  for (size_t k = 0; k < kBlock; k += sizeof(Lanes)) {
    Lanes now;
    memcpy(&now, block + k, sizeof now);
    if (swapped) swap_bytes(&now);
    // Surrogates, and the blocks with characters that are none, as a whole.
    odd |= Lanes(now == 0) | Lanes(now >> 11 == 0xD800 >> 11) | Lanes((now & 0xFFFE) == 0xFFFE) |
           Lanes(now >> 6 == 0xFDC0 >> 6);
    add_beyond(now, &odd);
  }
  uint64_t words[sizeof(Lanes) / sizeof(uint64_t)];
  memcpy(words, &odd, sizeof words);
  return (words[0] | words[1]) == 0;
}

}  // namespace

const char* UnicodeCheck::charset() const {
  if (width_ == 2) return big_endian_ ? "UTF-16BE" : "UTF-16LE";
  return big_endian_ ? "UTF-32BE" : "UTF-32LE";
}

void UnicodeCheck::reset() {
  valid_ = true;
  characters_ = 0;
  nb_head_ = 0;
  nb_carried_ = 0;
}

Character UnicodeCheck::read(std::string_view bytes) const {
  return width_ == 2 ? read_utf16(bytes, big_endian_) : read_utf32(bytes, big_endian_);
}

double UnicodeCheck::cost() const {
  const bool swapped = big_endian_ != (std::endian::native == std::endian::big);
  const std::string_view head(head_, nb_head_);
  const uint64_t priced = std::min(characters_, kMostPriced);
  uint64_t twice = 0;
  double sum = 0;
  size_t i = 0;
  for (uint64_t c = 0; c < priced;) {
    if (width_ == 2) {
      const size_t most = i + 2 * static_cast<size_t>(priced - c);
      const size_t end = swapped ? price_units<true>(head.substr(0, most), i, &twice)
                                 : price_units<false>(head.substr(0, most), i, &twice);
      c += (end - i) / 2;
      i = end;
      if (c == priced) break;
    }
    const Character character = read(head.substr(i));
    sum += cost_of(character.value);
    i += character.length;
    ++c;
  }
  // Exact, since costs are multiples of a half.
  return (sum + static_cast<double>(twice) / 2) / static_cast<double>(priced);
}

// Takes whole blocks of plain characters; returns how many bytes.
size_t UnicodeCheck::take_blocks(std::string_view bytes) {
  const bool swapped = big_endian_ != (std::endian::native == std::endian::big);
  size_t i = 0;
  for (; i + kBlock <= bytes.size(); i += kBlock) {
    const char* block = bytes.data() + i;
    const bool plain = width_ == 2 ? is_plain_block<Units>(block, swapped)
                                   : is_plain_block<Values>(block, swapped);
    if (!plain) break;
  }
  characters_ += i / static_cast<size_t>(width_);
  return i;
}

// Takes the whole units of less than a block, if they are plain characters.
size_t UnicodeCheck::take_rest(std::string_view bytes) {
  const size_t size = bytes.size() - bytes.size() % static_cast<size_t>(width_);
  if (bytes.size() >= kBlock || size == 0) return 0;
  // What fills the block up is the same character again.
  char block[kBlock];
  for (size_t i = 0; i < kBlock; i += static_cast<size_t>(width_)) {
    memcpy(block + i, bytes.data(), static_cast<size_t>(width_));
  }
  memcpy(block, bytes.data(), size);
  const uint64_t before = characters_;
  if (take_blocks({block, kBlock}) == 0) return 0;
  characters_ = before + size / static_cast<size_t>(width_);
  return size;
}

// Takes a character; false when none is there.
bool UnicodeCheck::take_one(std::string_view bytes, size_t* i) {
  const Character c = read(bytes.substr(*i));
  if (c.state == Character::kCut) return false;
  if (c.state == Character::kBad || c.value == 0 || is_noncharacter(c.value)) {
    valid_ = false;
    return false;
  }
  ++characters_;
  *i += c.length;
  return true;
}

size_t UnicodeCheck::take(std::string_view bytes) {
  size_t i = 0;
  while (i < bytes.size()) {
    i += take_blocks(bytes.substr(i));
    i += take_rest(bytes.substr(i));
    // What is odd about a block is somewhere in it.
    const size_t until = std::min(bytes.size(), i + kBlock);
    while (i < until) {
      if (!take_one(bytes, &i)) return i;
    }
  }
  return i;
}

void UnicodeCheck::feed(std::string_view bytes) {
  if (valid_ && nb_head_ < sizeof head_) {
    const size_t more = std::min(bytes.size(), sizeof head_ - nb_head_);
    if (more != 0) memcpy(head_ + nb_head_, bytes.data(), more);
    nb_head_ += more;
  }
  while (valid_ && nb_carried_ != 0 && !bytes.empty()) {
    carried_[nb_carried_++] = bytes.front();
    bytes.remove_prefix(1);
    if (take(std::string_view(carried_, nb_carried_)) != 0) nb_carried_ = 0;
  }
  if (!valid_ || bytes.empty()) return;
  bytes.remove_prefix(take(bytes));
  if (!valid_) return;
  memcpy(carried_, bytes.data(), bytes.size());
  nb_carried_ = bytes.size();
}

}  // namespace orva
