#include "lib/detect/readings.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

#include "lib/detect/charset_table.h"
#include "lib/detect/priors.h"

namespace orva {

namespace {

// A character of running text costs less; a wrong byte order strews characters over rare blocks.
constexpr double kMostUnicodeCost = 10.5;
constexpr uint64_t kFewestUnicode = 2;
// Chinese characters and Korean syllables cost more than letters, and of so many about half of the
// bytes lie above 0x7F.
constexpr uint64_t kFewestChinese = 16;
constexpr double kLeastChineseCost = 7;
constexpr uint64_t kBytesPerHigh = 8;
// Text of so many bytes has blanks.
constexpr uint64_t kSurelyBlanks = 128;

// What is asked about each charset for every document.
struct CharsetFacts {
  const uint16_t* table = nullptr;  // of a single-byte one
  double prior = 0;
  bool is_part = false;
  bool is_wide = false;    // UTF-16 or UTF-32
  bool is_ebcdic = false;  // the blank is 0x40
};

const std::vector<CharsetFacts>& facts_of_charsets() {
  static const std::vector<CharsetFacts> all = [] {
    std::vector<CharsetFacts> made;
    for (int c = 0; c < kCharsetCount; ++c) {
      const uint32_t flags = kCharsets[c].flags;
      made.push_back({single_byte_table(c), prior_cost(c), (flags & kPart) != 0,
                      (flags & (kUtf16 | kUtf32)) != 0, (flags & kEbcdic) != 0});
    }
    return made;
  }();
  return all;
}

bool looks_wide(const Evidence& evidence, int charset) {
  const UnicodeCheck* const check = evidence.unicode(charset);
  if (check == nullptr || check->characters() < kFewestUnicode) return false;
  if (!check->valid()) return false;
  const double cost = check->cost();
  if (cost > kMostUnicodeCost) return false;
  // Text of ASCII letters, two of which together are one Chinese character.
  const bool many = check->characters() >= kFewestChinese && cost >= kLeastChineseCost;
  return !many || evidence.high() * kBytesPerHigh >= evidence.length();
}

// A number that stands for what a byte decodes to: sums of them tell most texts apart.
uint16_t print_of(unsigned byte, uint16_t value) {
  uint64_t mixed = (uint64_t{value} << 8 | byte) + 0x9E3779B97F4A7C15U;
  mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
  return static_cast<uint16_t>(mixed >> 48);
}

// Those of all charsets, a row for each byte above 0x7F.
class Prints {
 public:
  // Columns that are added up together.
  static constexpr size_t kStep = 32;

  Prints() : width_((static_cast<size_t>(kCharsetCount) + kStep - 1) / kStep * kStep) {
    rows_.assign(128 * width_, 0);
    for (int c = 0; c < kCharsetCount; ++c) {
      const uint16_t* const table = single_byte_table(c);
      bool keeps = true;
      for (unsigned b = 0; table != nullptr && b < 256; ++b) {
        if (b < 0x80) {
          keeps = keeps && table[b] == b;
        } else {
          rows_[(b - 0x80) * width_ + static_cast<size_t>(c)] = print_of(b, table[b]);
        }
      }
      keeps_ascii_.push_back(keeps ? 1 : 0);
    }
  }

  size_t width() const { return width_; }
  bool keeps_ascii(int charset) const { return keeps_ascii_[static_cast<size_t>(charset)] != 0; }
  const uint16_t* row(unsigned char high) const { return rows_.data() + (high - 0x80) * width_; }

 private:
  size_t width_;
  std::vector<uint16_t> rows_;
  std::vector<char> keeps_ascii_;
};

const Prints& prints() {
  static const Prints all;
  return all;
}

// The bytes of a document, each once, and what single-byte charsets make of them.
class Present {
 public:
  explicit Present(const Evidence& evidence) : prints_(prints().width()) {
    for (unsigned w = 0; w < 4; ++w) {
      if (w == 2) first_high_ = size_;
      for (uint64_t bits = evidence.present(w); bits != 0; bits &= bits - 1) {
        bytes_[size_++] =
            static_cast<unsigned char>(64 * w + static_cast<unsigned>(std::countr_zero(bits)));
      }
    }
    for (size_t k = 0; k < prints_.size(); k += Prints::kStep) add_up(prints(), k);
  }

  // Of the bytes above 0x7F: equal for charsets that make the same of them.
  uint16_t print(int charset) const { return prints_[static_cast<size_t>(charset)]; }
  bool same(const uint16_t* a, const uint16_t* b, bool keep_ascii) const {
    return std::all_of(bytes_ + (keep_ascii ? first_high_ : 0), bytes_ + size_,
                       [=](unsigned char c) { return a[c] == b[c]; });
  }

 private:
  void add_up(const Prints& all, size_t first) {
    constexpr size_t kVectors = Prints::kStep * sizeof(uint16_t) / sizeof(__m128i);
    __m128i sums[kVectors] = {};
    for (size_t i = first_high_; i < size_; ++i) {
      const uint16_t* const row = all.row(bytes_[i]) + first;
#pragma GCC unroll 4
      for (size_t v = 0; v < kVectors; ++v) {
        __m128i more;
        memcpy(&more, row + 8 * v, sizeof more);
        sums[v] = _mm_add_epi16(sums[v], more);
      }
    }
    memcpy(prints_.data() + first, sums, sizeof sums);
  }

  unsigned char bytes_[256];
  size_t size_ = 0;
  size_t first_high_ = 0;
  std::vector<uint16_t> prints_;
};

// Puts the likelier one first, and among those alike the one that came first.
void add_charset(int charset, Reading* reading) {
  std::vector<int>& all = reading->charsets;
  if (all.empty()) return all.push_back(charset);
  const std::vector<CharsetFacts>& facts = facts_of_charsets();
  const double prior = facts[static_cast<size_t>(charset)].prior;
  const auto at = std::find_if(all.begin(), all.end(), [&](int other) {
    return facts[static_cast<size_t>(other)].prior > prior;
  });
  all.insert(at, charset);
}

// Adds a charset that is part of GB18030 to the reading of the whole, through whose models it is
// priced.
void add_part(int charset, Pool<Reading>* readings) {
  const int whole = find_charset_index("GB18030");
  Reading* at = std::find_if(readings->begin(), readings->end(),
                             [whole](const Reading& reading) { return reading.holds(whole); });
  if (at == readings->end()) {
    at = &readings->add();
    at->reset();
    add_charset(whole, at);
  }
  add_charset(charset, at);
}

// Puts single-byte charsets where they belong: those that read the document alike together.
class SingleByteReadings {
 public:
  SingleByteReadings(const Present& present, Pool<Reading>* readings)
      : present_(present), readings_(*readings) {}

  void add(int charset, const uint16_t* table) {
    const uint16_t print = present_.print(charset);
    uint8_t* number = &first_[print % std::size(first_)];
    while (*number != 0 && !is_read_by(readings_[*number - 1U], charset, table)) {
      number = &next_[*number - 1U];
    }
    if (*number == 0) {
      Reading& fresh = readings_.add();
      fresh.reset();
      fresh.table = table;
      fresh.print = print;
      *number = static_cast<uint8_t>(readings_.size());
    }
    add_charset(charset, &readings_[*number - 1U]);
  }

 private:
  bool is_read_by(const Reading& reading, int charset, const uint16_t* table) const {
    if (reading.print != present_.print(charset)) return false;
    const bool keep_ascii =
        prints_.keeps_ascii(charset) && prints_.keeps_ascii(reading.charsets.front());
    return present_.same(reading.table, table, keep_ascii);
  }

  const Prints& prints_ = prints();
  const Present& present_;
  Pool<Reading>& readings_;
  // Numbers of readings from 1 on, 0 for none: by print, and of the next one with the like.
  uint8_t first_[64] = {};
  uint8_t next_[CharsetSet::kMost] = {};
};

}  // namespace

bool Reading::holds(int charset) const {
  return std::find(charsets.begin(), charsets.end(), charset) != charsets.end();
}

void Reading::reset() {
  charsets.clear();
  table = nullptr;
  print = 0;
  prior = 0;
  least = kNoCost;
  possible = nullptr;
  language_extra = nullptr;
}

void find_readings(const Evidence& evidence, const std::function<bool(int charset)>& allowed,
                   bool with_controls, Pool<Reading>* readings) {
  readings->clear();
  const Present present(evidence);
  SingleByteReadings single_bytes(present, readings);
  const std::vector<CharsetFacts>& all = facts_of_charsets();
  const CharsetSet undecodable = evidence.undecodable(with_controls);
  const bool has_nul = evidence.holds(0);
  const bool lacks_blanks = evidence.kinds().at_signs == 0 && evidence.length() >= kSurelyBlanks;
  for (int c = 0; c < kCharsetCount; ++c) {
    const CharsetFacts& facts = all[static_cast<size_t>(c)];
    if (facts.is_wide ? !looks_wide(evidence, c) : has_nul) continue;
    if (facts.is_ebcdic && lacks_blanks) continue;
    const bool decodes =
        facts.table != nullptr ? !undecodable.holds(c) : evidence.decodes(c, with_controls);
    if (!decodes || !allowed(c)) continue;
    if (facts.is_part) {
      add_part(c, readings);
    } else if (facts.table != nullptr) {
      single_bytes.add(c, facts.table);
    } else {
      Reading& reading = readings->add();
      reading.reset();
      reading.charsets.push_back(c);
    }
  }
}

}  // namespace orva
