#include "lib/detect/unicode_check.h"

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

bool is_noncharacter(uint32_t value) {
  return (value & 0xFFFEU) == 0xFFFE || (value >= 0xFDD0 && value <= 0xFDEF);
}

}  // namespace

const char* UnicodeCheck::charset() const {
  if (width_ == 2) return big_endian_ ? "UTF-16BE" : "UTF-16LE";
  return big_endian_ ? "UTF-32BE" : "UTF-32LE";
}

size_t UnicodeCheck::take(std::string_view bytes) {
  size_t i = 0;
  while (i < bytes.size()) {
    const std::string_view rest = bytes.substr(i);
    const Character c = width_ == 2 ? read_utf16(rest, big_endian_) : read_utf32(rest, big_endian_);
    if (c.state == Character::kCut) break;
    if (c.state == Character::kBad || c.value == 0 || is_noncharacter(c.value)) {
      valid_ = false;
      break;
    }
    ++characters_;
    cost_ += cost_of(c.value);
    i += c.length;
  }
  return i;
}

void UnicodeCheck::feed(std::string_view bytes) {
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
