#include "lib/detect/readings.h"

#include <algorithm>

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
  for (const UnicodeCheck& check : evidence.unicode()) {
    if (std::string_view(check.charset()) != kCharsets[charset].iana) continue;
    if (check.characters() < kFewestUnicode || check.cost() > kMostUnicodeCost) return false;
    // Text of ASCII letters, two of which together are one Chinese character.
    const bool many = check.characters() >= kFewestChinese && check.cost() >= kLeastChineseCost;
    return !many || evidence.high() * kBytesPerHigh >= evidence.length();
  }
  return false;
}

// Numbers that stand for what bytes decode to: sums of them tell texts apart.
uint32_t print_of(unsigned byte, uint16_t value) {
  uint64_t mixed = (uint64_t{value} << 8 | byte) + 0x9E3779B97F4A7C15U;
  mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
  return static_cast<uint32_t>(mixed >> 32);
}

// By byte; of the single-byte charsets. ASCII counts nothing.
struct Prints {
  uint32_t of[256] = {};
  bool keeps_ascii = true;

  explicit Prints(const uint16_t* table) {
    for (unsigned b = 0; table != nullptr && b < 256; ++b) {
      if (b < 0x80 && table[b] == b) continue;
      of[b] = print_of(b, table[b]);
      keeps_ascii = keeps_ascii && b >= 0x80;
    }
  }
};

const Prints& prints_of(int charset) {
  static const std::vector<Prints> all = [] {
    std::vector<Prints> made;
    for (int c = 0; c < kCharsetCount; ++c) made.emplace_back(single_byte_table(c));
    return made;
  }();
  return all[static_cast<size_t>(charset)];
}

// The bytes of a document, each once.
class Present {
 public:
  explicit Present(const Evidence& evidence) {
    for (unsigned b = 0; b < 256; ++b) {
      const auto byte = static_cast<unsigned char>(b);
      if (evidence.holds(byte)) bytes_[size_++] = byte;
      if (b < 0x80) first_high_ = size_;
    }
  }

  uint32_t print(const Prints& prints) const {
    uint32_t sum = 0;
    for (size_t i = prints.keeps_ascii ? first_high_ : 0; i < size_; ++i) {
      sum += prints.of[bytes_[i]];
    }
    return sum;
  }
  bool same(const uint16_t* a, const uint16_t* b, bool keep_ascii) const {
    return std::all_of(bytes_ + (keep_ascii ? first_high_ : 0), bytes_ + size_,
                       [=](unsigned char c) { return a[c] == b[c]; });
  }

 private:
  unsigned char bytes_[256];
  size_t size_ = 0;
  size_t first_high_ = 0;
};

// Puts the likelier one first, and among those alike the one that came first.
void add_charset(int charset, Reading* reading) {
  const std::vector<CharsetFacts>& facts = facts_of_charsets();
  const double prior = facts[static_cast<size_t>(charset)].prior;
  std::vector<int>& all = reading->charsets;
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

void add_single_byte(int charset, const uint16_t* table, const Present& present,
                     Pool<Reading>* readings) {
  const Prints& prints = prints_of(charset);
  const uint32_t print = present.print(prints);
  Reading* at = std::find_if(readings->begin(), readings->end(), [&](const Reading& reading) {
    if (reading.print != print || reading.table == nullptr) return false;
    const bool keep_ascii = prints.keeps_ascii && prints_of(reading.charsets.front()).keeps_ascii;
    return present.same(reading.table, table, keep_ascii);
  });
  if (at == readings->end()) {
    at = &readings->add();
    at->reset();
  }
  add_charset(charset, at);
  at->table = table;
  at->print = print;
}

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
  const std::vector<CharsetFacts>& all = facts_of_charsets();
  const bool has_nul = evidence.holds(0);
  const bool lacks_blanks = evidence.kinds().at_signs == 0 && evidence.length() >= kSurelyBlanks;
  for (int c = 0; c < kCharsetCount; ++c) {
    const CharsetFacts& facts = all[static_cast<size_t>(c)];
    if (facts.is_wide ? !looks_wide(evidence, c) : has_nul) continue;
    if (facts.is_ebcdic && lacks_blanks) continue;
    if (!evidence.decodes(c, with_controls) || !allowed(c)) continue;
    if (facts.is_part) {
      add_part(c, readings);
    } else if (facts.table != nullptr) {
      add_single_byte(c, facts.table, present, readings);
    } else {
      Reading& reading = readings->add();
      reading.reset();
      reading.charsets.push_back(c);
    }
  }
}

}  // namespace orva
