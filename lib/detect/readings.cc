#include "lib/detect/readings.h"

#include <algorithm>

#include "lib/detect/charset_table.h"
#include "lib/detect/priors.h"

namespace orva {

namespace {

// A character of running text costs less; a wrong byte order strews characters over rare blocks.
constexpr double kMostUnicodeCost = 10.5;
constexpr uint64_t kFewestUnicode = 2;

bool looks_unlike(const Evidence& evidence, int charset) {
  const uint32_t flags = kCharsets[charset].flags;
  if ((flags & (kUtf16 | kUtf32)) == 0) return evidence.holds(0);
  for (const UnicodeCheck& check : evidence.unicode()) {
    if (std::string_view(check.charset()) != kCharsets[charset].iana) continue;
    return check.characters() < kFewestUnicode || check.cost() > kMostUnicodeCost;
  }
  return true;
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
  bool same(const uint16_t* a, const uint16_t* b) const {
    return std::all_of(bytes_, bytes_ + size_, [=](unsigned char c) { return a[c] == b[c]; });
  }

 private:
  unsigned char bytes_[256];
  size_t size_ = 0;
  size_t first_high_ = 0;
};

// Puts the likelier one first, and among those alike the one that came first.
void add_charset(int charset, Reading* reading) {
  std::vector<int>& all = reading->charsets;
  const auto at = std::find_if(all.begin(), all.end(), [charset](int other) {
    return prior_cost(other) > prior_cost(charset);
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
  const uint32_t print = present.print(prints_of(charset));
  Reading* at = std::find_if(readings->begin(), readings->end(), [&](const Reading& reading) {
    return reading.print == print && reading.table != nullptr && present.same(reading.table, table);
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
  possible = nullptr;
  language_extra = nullptr;
}

void find_readings(const Evidence& evidence, const std::function<bool(int charset)>& allowed,
                   bool with_controls, Pool<Reading>* readings) {
  readings->clear();
  const Present present(evidence);
  for (int c = 0; c < kCharsetCount; ++c) {
    if (!allowed(c) || looks_unlike(evidence, c) || !evidence.decodes(c, with_controls)) continue;
    const uint16_t* table = single_byte_table(c);
    if ((kCharsets[c].flags & kPart) != 0) {
      add_part(c, readings);
    } else if (table != nullptr) {
      add_single_byte(c, table, present, readings);
    } else {
      Reading& reading = readings->add();
      reading.reset();
      reading.charsets.push_back(c);
    }
  }
}

}  // namespace orva
