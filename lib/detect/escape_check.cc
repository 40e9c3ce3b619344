#include "lib/detect/escape_check.h"

#include "lib/detect/byte_blocks.h"
#include "lib/detect/double_byte_tables.h"

namespace orva {

namespace {

constexpr unsigned char kEscape = 0x1B;
constexpr unsigned char kShiftOut = 0x0E;
constexpr unsigned char kShiftIn = 0x0F;
constexpr unsigned char kHighBit = 0x80;
// GB2312 within the larger table: the last row that it uses.
constexpr unsigned char kLastGbRow = 0x77;

constexpr unsigned char kLastGraphic = 0x7E;

bool is_graphic(unsigned char c) { return c >= 0x21 && c <= kLastGraphic; }

// Bytes that begin something in text of no shift.
bool is_special(unsigned char c) {
  return c >= kHighBit || c == kEscape || c == kShiftOut || c == kShiftIn || c == '~';
}

// The same of each of 16 bytes.
ByteBlock specials_of(const ByteBlock& block) {
  return ByteBlock(block >= kHighBit) | ByteBlock(block == kEscape) |
         ByteBlock((block & 0xFE) == kShiftOut) | ByteBlock(block == '~');
}

// Position of the first special byte from `i` on.
size_t skip_plain(std::string_view bytes, size_t i) {
  static_assert(kShiftIn == (kShiftOut | 1));
  for (; i + 2 * kByteBlock <= bytes.size(); i += 2 * kByteBlock) {
    const char* const at = bytes.data() + i;
    if (any(specials_of(block_at(at)) | specials_of(block_at(at + kByteBlock)))) break;
  }
  while (i < bytes.size() && !is_special(static_cast<unsigned char>(bytes[i]))) ++i;
  return i;
}

bool is_high_pair(const uint32_t* pairs, unsigned char lead, unsigned char trail) {
  return is_pair(pairs, lead | kHighBit, trail | kHighBit);
}

}  // namespace

// Whether the next byte means itself, so that only one of a few can change anything.
bool EscapeCheck::iso_is_plain() const {
  if (!iso_.valid) return true;
  return !iso_.in_escape && !iso_.out && !iso_.single_shift && iso_.lead == 0 &&
         (iso_.direct == kAscii || iso_.direct == kJisRoman);
}

bool EscapeCheck::hz_is_plain() const {
  return !hz_.valid || (hz_.lead == 0 && !hz_.tilde && !hz_.pairs);
}

// The table of the pairs that stand here in one charset, while bytes mean themselves in the others;
// null where it is otherwise.
const uint32_t* EscapeCheck::pairs_under_way() const {
  if (hz_is_plain()) {
    if (!iso_.valid || iso_.in_escape || iso_.single_shift || iso_.lead != 0) return nullptr;
    return table_of(iso_.out ? iso_.shifted : iso_.direct);
  }
  return iso_is_plain() && hz_.lead == 0 && !hz_.tilde ? kGbkPairs : nullptr;
}

// Takes good pairs from `i` on; returns where a byte is none of such a pair. Text with a shift of
// ISO-2022 is never named HZ, so what stands in its pairs is nothing to that.
size_t EscapeCheck::skip_pairs(std::string_view bytes, size_t i) {
  const uint32_t* pairs = pairs_under_way();
  if (pairs == nullptr) return i;
  const bool is_hz = !hz_is_plain();
  const unsigned char last_lead = is_hz ? kLastGbRow : kLastGraphic;
  uint64_t found = 0;
  for (; i + 2 <= bytes.size(); i += 2, ++found) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    const auto trail = static_cast<unsigned char>(bytes[i + 1]);
    if (!is_graphic(lead) || !is_graphic(trail) || lead > last_lead) break;
    if (!is_high_pair(pairs, lead, trail)) break;
  }
  (is_hz ? hz_.wide : iso_.wide) += found;
  return i;
}

void EscapeCheck::feed(std::string_view bytes) {
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (!iso_.valid && !hz_.valid) return;
    i = iso_is_plain() && hz_is_plain() ? skip_plain(bytes, i) : skip_pairs(bytes, i);
    if (i == bytes.size()) return;
    const auto b = static_cast<unsigned char>(bytes[i]);
    if (b >= kHighBit) {
      iso_.valid = hz_.valid = false;
      return;
    }
    if (iso_.valid) take_iso(b);
    if (hz_.valid) take_hz(b);
  }
}

const char* EscapeCheck::charset() const {
  if (iso_.valid && iso_.korean && !iso_.japanese && !iso_.chinese) return "ISO-2022-KR";
  if (iso_.valid && iso_.chinese && !iso_.japanese && !iso_.korean) return "ISO-2022-CN";
  if (iso_.valid && iso_.japanese && !iso_.chinese && !iso_.korean) return "ISO-2022-JP";
  const bool plain = !iso_.japanese && !iso_.korean && !iso_.chinese;
  return hz_.valid && hz_.wide != 0 && plain ? "HZ-GB-2312" : nullptr;
}

// The pairs of a set; null for one that has none, or whose pairs are taken by their form alone.
const uint32_t* EscapeCheck::table_of(Set set) {
  switch (set) {
    case kJis:
      return kEucJpPairs;
    case kKorean:
      return kCp949Pairs;
    case kGb:
      return kGbkPairs;
    default:
      return nullptr;
  }
}

// The sequences that name a character set, behind the ESC byte. False for one of no such charset.
bool EscapeCheck::designate(std::string_view sequence) {
  if (sequence == "(B") {
    iso_.direct = kAscii;
  } else if (sequence == "(J") {
    iso_.direct = kJisRoman;
    iso_.japanese = true;
  } else if (sequence == "$@" || sequence == "$B" || sequence == "$(B") {
    iso_.direct = kJis;
    iso_.japanese = true;
  } else if (sequence == "$)C") {
    iso_.shifted = kKorean;
    iso_.korean = true;
  } else if (sequence == "$)A" || sequence == "$)G") {
    iso_.shifted = sequence == "$)A" ? kGb : kCnsPlane;
    iso_.chinese = true;
  } else if (sequence == "$*H") {
    iso_.chinese = true;
  } else if (sequence == "N") {
    iso_.single_shift = true;
    iso_.chinese = true;
  } else {
    return false;
  }
  return true;
}

void EscapeCheck::take_escape(char c) {
  iso_.escape[iso_.nb_escape++] = c;
  const std::string_view sequence(iso_.escape, iso_.nb_escape);
  if (designate(sequence)) {
    iso_.in_escape = false;
  } else if (sequence != "(" && sequence != "$" && sequence != "$)" && sequence != "$(" &&
             sequence != "$*") {
    iso_.valid = false;
  }
}

void EscapeCheck::take_iso(unsigned char c) {
  if (iso_.in_escape) return take_escape(static_cast<char>(c));
  const Set set = iso_.single_shift ? kCnsPlane : iso_.out ? iso_.shifted : iso_.direct;
  const bool wide = set != kAscii && set != kJisRoman;
  if (iso_.lead != 0) {
    // Planes of CNS 11643 are taken by their form alone.
    iso_.valid = is_graphic(c) && (set == kCnsPlane || is_high_pair(table_of(set), iso_.lead, c));
    iso_.lead = 0;
    iso_.single_shift = false;
    ++iso_.wide;
  } else if (c == kEscape) {
    iso_.in_escape = true;
    iso_.nb_escape = 0;
  } else if (c == kShiftOut || c == kShiftIn) {
    iso_.out = c == kShiftOut;
    iso_.valid = !iso_.out || iso_.shifted != kAscii;
  } else if (c == '\n') {
    iso_.out = false;
  } else if (wide && is_graphic(c)) {
    iso_.lead = c;
  }
}

void EscapeCheck::take_hz(unsigned char c) {
  if (hz_.lead != 0) {
    hz_.valid = is_graphic(c) && hz_.lead <= kLastGbRow && is_high_pair(kGbkPairs, hz_.lead, c);
    hz_.lead = 0;
    ++hz_.wide;
  } else if (hz_.tilde) {
    hz_.tilde = false;
    if (c == '{' && !hz_.pairs) {
      hz_.pairs = true;
    } else if (c == '}' && hz_.pairs) {
      hz_.pairs = false;
    } else {
      hz_.valid = (c == '~' || c == '\n') && !hz_.pairs;
    }
  } else if (c == '~') {
    hz_.tilde = true;
  } else if (c == '\n') {
    hz_.pairs = false;
  } else if (hz_.pairs && is_graphic(c)) {
    hz_.lead = c;
  }
}

}  // namespace orva
