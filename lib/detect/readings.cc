#include "lib/detect/readings.h"

#include <algorithm>
#include <map>

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

// What the bytes that occur decode to.
std::vector<uint16_t> fingerprint(const Evidence& evidence, const uint16_t* table) {
  std::vector<uint16_t> print;
  print.reserve(256);
  for (int b = 0; b < 256; ++b) {
    if (evidence.holds(static_cast<unsigned char>(b))) print.push_back(table[b]);
  }
  return print;
}

// Adds a charset that is part of GB18030 to the reading of the whole, through whose models it is
// priced.
void add_part(int charset, std::vector<Reading>* readings) {
  const int whole = find_charset_index("GB18030");
  auto at = std::find_if(readings->begin(), readings->end(),
                         [whole](const Reading& reading) { return reading.holds(whole); });
  if (at == readings->end()) {
    at = readings->emplace(at);
    at->charsets.push_back(whole);
  }
  at->charsets.push_back(charset);
}

}  // namespace

bool Reading::holds(int charset) const {
  return std::find(charsets.begin(), charsets.end(), charset) != charsets.end();
}

std::vector<Reading> find_readings(const Evidence& evidence,
                                   const std::function<bool(int charset)>& allowed,
                                   bool with_controls) {
  std::vector<Reading> readings;
  std::map<std::vector<uint16_t>, size_t> by_print;
  for (int c = 0; c < kCharsetCount; ++c) {
    if (!allowed(c) || looks_unlike(evidence, c) || !evidence.decodes(c, with_controls)) continue;
    if ((kCharsets[c].flags & kPart) != 0) {
      add_part(c, &readings);
      continue;
    }
    const uint16_t* table = single_byte_table(c);
    size_t at = readings.size();
    if (table != nullptr) at = by_print.emplace(fingerprint(evidence, table), at).first->second;
    if (at == readings.size()) readings.emplace_back();
    readings[at].charsets.push_back(c);
    readings[at].table = table;
  }
  for (Reading& reading : readings) {
    std::stable_sort(reading.charsets.begin(), reading.charsets.end(),
                     [](int a, int b) { return prior_cost(a) < prior_cost(b); });
  }
  return readings;
}

}  // namespace orva
