#include "lib/detect/multi_byte_check.h"

#include <cstring>

#include "lib/detect/byte_blocks.h"
#include "lib/detect/double_byte_tables.h"
#include "lib/detect/utf8_blocks.h"
#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

constexpr int kCut = -1;
constexpr int kNone = 0;
// Fewer bytes are read one by one.
constexpr size_t kWorthSkipping = 8;

unsigned char at(std::string_view bytes, size_t i) { return static_cast<unsigned char>(bytes[i]); }

bool within(unsigned char b, unsigned char low, unsigned char high) {
  return b >= low && b <= high;
}

// A lead byte at the very end is cut when some pair begins with it; else it is never one.
bool leads(const uint32_t* pairs, unsigned char lead) {
  for (int w = 0; w < 8; ++w) {
    if (pairs[(lead - 0x80) * 8 + w] != 0) return true;
  }
  return false;
}

int table_length(const uint32_t* pairs, std::string_view bytes) {
  if (bytes.size() >= 2) return is_pair(pairs, at(bytes, 0), at(bytes, 1)) ? 2 : kNone;
  return leads(pairs, at(bytes, 0)) ? kCut : kNone;
}

int utf8_length(std::string_view bytes) {
  // Letters of most alphabets take two bytes.
  if (bytes.size() >= 2 && within(at(bytes, 0), 0xC2, 0xDF)) {
    return within(at(bytes, 1), 0x80, 0xBF) ? 2 : kNone;
  }
  const Character c = read_utf8(bytes.substr(0, 4));
  if (c.state == Character::kCut) return kCut;
  return c.state == Character::kGood ? static_cast<int>(c.length) : kNone;
}

int shift_jis_length(std::string_view bytes) {
  if (within(at(bytes, 0), 0xA1, 0xDF)) return 1;
  return table_length(kShiftJisPairs, bytes);
}

int euc_jp_length(std::string_view bytes) {
  const unsigned char lead = at(bytes, 0);
  if (lead == 0x8E) {
    if (bytes.size() < 2) return kCut;
    return within(at(bytes, 1), 0xA1, 0xDF) ? 2 : kNone;
  }
  if (lead == 0x8F) {
    if (bytes.size() < 2) return kCut;
    if (at(bytes, 1) < 0xA1) return kNone;
    const int rest = table_length(kEucJpPlane2Pairs, bytes.substr(1));
    return rest > 0 ? rest + 1 : rest;
  }
  return table_length(kEucJpPairs, bytes);
}

int gb18030_length(std::string_view bytes) {
  const unsigned char lead = at(bytes, 0);
  if (!within(lead, 0x81, 0xFE)) return kNone;
  if (bytes.size() < 2) return kCut;
  if (!within(at(bytes, 1), 0x30, 0x39)) return table_length(kGbkPairs, bytes);
  if (!within(lead, 0x81, 0x84) && !within(lead, 0x90, 0xE3)) return kNone;
  if (bytes.size() < 3) return kCut;
  if (!within(at(bytes, 2), 0x81, 0xFE)) return kNone;
  if (bytes.size() < 4) return kCut;
  return within(at(bytes, 3), 0x30, 0x39) ? 4 : kNone;
}

int euc_tw_length(std::string_view bytes) {
  if (at(bytes, 0) != 0x8E) return table_length(kEucTwPairs, bytes);
  if (bytes.size() < 2) return kCut;
  if (!within(at(bytes, 1), 0xA1, 0xAF)) return kNone;
  for (size_t i = 2; i < 4; ++i) {
    if (bytes.size() <= i) return kCut;
    if (!within(at(bytes, i), 0xA1, 0xFE)) return kNone;
  }
  return 4;
}

const uint32_t* pairs_of(MultiByteKind kind) {
  switch (kind) {
    case MultiByteKind::kUtf8:
      return nullptr;
    case MultiByteKind::kShiftJis:
      return kShiftJisPairs;
    case MultiByteKind::kEucJp:
      return kEucJpPairs;
    case MultiByteKind::kGb18030:
      return kGbkPairs;
    case MultiByteKind::kBig5:
      return kBig5Pairs;
    case MultiByteKind::kEucTw:
      return kEucTwPairs;
    case MultiByteKind::kEucKr:
      return kCp949Pairs;
    case MultiByteKind::kJohab:
      break;
  }
  return kJohabPairs;
}

// Skips ASCII and pairs from `i` on, as far as whole words go, and adds the pairs to `wide`.
size_t skip_pairs(const uint32_t* pairs, std::string_view bytes, size_t i, uint64_t* wide) {
  uint64_t found = 0;
  while (i + 8 <= bytes.size()) {
    if (at(bytes, i) < 0x80) {
      i = skip_ascii(bytes, i);
      continue;
    }
    // Four at once, which is what most pairs stand in.
    const bool four =
        (at(bytes, i) & at(bytes, i + 2) & at(bytes, i + 4) & at(bytes, i + 6)) >= 0x80;
    if (four) {
      bool good = true;
      for (size_t k = 0; k < 8; k += 2) {
        good &= is_pair(pairs, at(bytes, i + k), at(bytes, i + k + 1));
      }
      if (good) {
        i += 8;
        found += 4;
        continue;
      }
    }
    if (!is_pair(pairs, at(bytes, i), at(bytes, i + 1))) break;
    i += 2;
    ++found;
  }
  *wide += found;
  return i;
}

// Calls `use` with what tells the length of a character of `kind` that is not ASCII.
template <typename Use>
auto with_length_of(MultiByteKind kind, Use use) {
  switch (kind) {
    case MultiByteKind::kUtf8:
      return use([](std::string_view bytes) { return utf8_length(bytes); });
    case MultiByteKind::kShiftJis:
      return use([](std::string_view bytes) { return shift_jis_length(bytes); });
    case MultiByteKind::kEucJp:
      return use([](std::string_view bytes) { return euc_jp_length(bytes); });
    case MultiByteKind::kGb18030:
      return use([](std::string_view bytes) { return gb18030_length(bytes); });
    case MultiByteKind::kBig5:
      return use([](std::string_view bytes) { return table_length(kBig5Pairs, bytes); });
    case MultiByteKind::kEucTw:
      return use([](std::string_view bytes) { return euc_tw_length(bytes); });
    case MultiByteKind::kEucKr:
      return use([](std::string_view bytes) { return table_length(kCp949Pairs, bytes); });
    case MultiByteKind::kJohab:
      break;
  }
  return use([](std::string_view bytes) { return table_length(kJohabPairs, bytes); });
}

}  // namespace

const char* multi_byte_name(MultiByteKind kind) {
  switch (kind) {
    case MultiByteKind::kUtf8:
      return "UTF-8";
    case MultiByteKind::kShiftJis:
      return "Shift_JIS";
    case MultiByteKind::kEucJp:
      return "EUC-JP";
    case MultiByteKind::kGb18030:
      return "GB18030";
    case MultiByteKind::kBig5:
      return "Big5";
    case MultiByteKind::kEucTw:
      return "EUC-TW";
    case MultiByteKind::kEucKr:
      return "EUC-KR";
    case MultiByteKind::kJohab:
      return "Johab";
  }
  return "";
}

int character_length(MultiByteKind kind, std::string_view bytes) {
  if (at(bytes, 0) < 0x80) return 1;
  return with_length_of(kind, [bytes](auto length) { return length(bytes); });
}

// Skips whole characters from `i` on, where one begins, as long as no closer look is needed.
size_t MultiByteCheck::skip(std::string_view bytes, size_t i) {
  if (kind_ == MultiByteKind::kUtf8) return skip_utf8(bytes, i, &wide_);
  return skip_pairs(pairs_of(kind_), bytes, i, &wide_);
}

// Reads whole characters and returns how many bytes they took; stops at a cut or a bad one.
template <typename Length>
size_t MultiByteCheck::take_by(Length length_of, std::string_view bytes) {
  size_t i = skip_ascii(bytes, 0);
  while (i < bytes.size()) {
    const int length = length_of(bytes.substr(i));
    if (length <= 0) {
      valid_ = length == kCut;
      break;
    }
    wide_ += length > 1 ? 1 : 0;
    i += static_cast<size_t>(length);
    if (bytes.size() - i >= kWorthSkipping) i = skip(bytes, i);
    // Characters outside ASCII seldom stand alone.
    if (i < bytes.size() && at(bytes, i) < 0x80) i = skip_ascii(bytes, i);
  }
  offset_ += i;
  return i;
}

size_t MultiByteCheck::take(std::string_view bytes) {
  return with_length_of(kind_, [this, bytes](auto length) { return take_by(length, bytes); });
}

void MultiByteCheck::feed(std::string_view bytes, size_t nb_ascii) {
  if (!valid_) return;
  if (nb_carried_ == 0) {
    offset_ += nb_ascii;
    bytes.remove_prefix(nb_ascii);
  }
  // Finish the character that the last piece cut, a byte at a time.
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
