#include "lib/detect/pricing.h"

#include <algorithm>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/letters.h"
#include "lib/detect/sample.h"
#include "lib/detect/single_byte_tables.h"
#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

// A character that the home charset lacks, in nats.
constexpr double kMissingCost = 10;
// Share of a reading's characters that may be missing from a home, and that must be letters for the
// reading to be worth a pass of its own.
constexpr double kMostMissing = 0.05;
constexpr double kFewestLetters = 0.4;

bool is_utf8(int charset) { return charset == find_charset_index("UTF-8"); }

// How often each byte above 0x7F, or any byte where ASCII is not kept, occurs in a text.
struct ByteCounts {
  uint64_t of[256] = {};
  explicit ByteCounts(std::string_view text) {
    for (const char c : text) ++of[static_cast<unsigned char>(c)];
  }
};

// A text rewritten in another charset, and what it lost.
struct Rewritten {
  std::string text;
  uint64_t missing = 0;
  uint64_t characters = 0;  // not ASCII
  uint64_t letters = 0;     // of them
};

int byte_for(const uint16_t* home, uint16_t value) {
  if (value < 0x80) return value;
  for (int b = 0x80; b < 256; ++b) {
    if (home[b] == value) return b;
  }
  return -1;
}

// Rewrites `text`, read with `table`, in the charset of `home` (null: UTF-8).
Rewritten rewrite(std::string_view text, const uint16_t* table, const uint16_t* home) {
  std::string form[256];
  bool missing[256] = {};
  const ByteCounts counts(text);
  Rewritten out;
  for (int b = 0; b < 256; ++b) {
    if (counts.of[b] == 0 || table[b] == kNoCharacter) continue;
    const uint16_t value = table[b] == 0x85 ? '\n' : table[b];
    if (home == nullptr) {
      append_utf8(value, &form[b]);
    } else {
      const int as = byte_for(home, value);
      if (as >= 0) form[b].push_back(static_cast<char>(as));
      missing[b] = as < 0;
    }
    if (value >= 0x80) {
      out.characters += counts.of[b];
      if (is_letter(value)) out.letters += counts.of[b];
      if (missing[b]) out.missing += counts.of[b];
    }
  }
  out.text.reserve(text.size() * (home == nullptr ? 2 : 1));
  for (const char c : text) out.text += form[static_cast<unsigned char>(c)];
  return out;
}

}  // namespace

Pricing::Pricing(const ModelTables& tables, Scorer* scorer)
    : tables_(tables), scorer_(*scorer), home_of_language_(tables.languages().size(), -1) {
  // The first single-byte model of a language, else its UTF-8 one.
  for (int i = 0; i < tables_.nb_models(); ++i) {
    const ModelInfo& model = tables_.model(i);
    if (model.charset < 0) continue;
    int& home = home_of_language_[static_cast<size_t>(model.language)];
    const bool plain = single_byte_table(model.charset) != nullptr &&
                       (kCharsets[model.charset].flags & kAsciiCompatible) != 0 &&
                       model.charset != find_charset_index("US-ASCII");
    if (plain && (home < 0 || is_utf8(home))) home = model.charset;
    if (is_utf8(model.charset) && home < 0) home = model.charset;
  }
}

std::vector<double> Pricing::totals(std::string_view text) {
  scorer_.reset();
  scorer_.feed(text);
  return scorer_.totals();
}

void Pricing::add_costs(int charset, const std::vector<double>& totals, double extra,
                        Reading* reading) {
  for (int i = 0; i < tables_.nb_models(); ++i) {
    const ModelInfo& model = tables_.model(i);
    if (model.charset != charset) continue;
    double& cost = reading->costs[static_cast<size_t>(model.language)];
    cost = std::min(cost, totals[static_cast<size_t>(i)] + extra);
  }
}

void Pricing::price(std::string_view sample, std::vector<Reading>* readings) {
  const std::string text = without_markup(sample);
  for (Reading& reading : *readings) reading.costs.assign(tables_.languages().size(), kNoCost);
  price_directly(text, readings);
  for (Reading& reading : *readings) price_through(sample, text, &reading);
}

void Pricing::price_directly(std::string_view text, std::vector<Reading>* readings) {
  const std::vector<double> costs = totals(text);
  for (Reading& reading : *readings) {
    for (const int charset : reading.charsets) {
      if ((kCharsets[charset].flags & kMarkupSafe) != 0) add_costs(charset, costs, 0, &reading);
    }
  }
}

void Pricing::price_through(std::string_view sample, std::string_view text, Reading* reading) {
  const int charset = reading->charsets.front();
  if (reading->table != nullptr) {
    // Tags are found in what the bytes say, which is not ASCII on a mainframe.
    const bool ebcdic = (kCharsets[charset].flags & kEbcdic) != 0;
    price_table(ebcdic ? sample : text, reading);
    return;
  }
  const bool has_costs = std::any_of(reading->costs.begin(), reading->costs.end(),
                                     [](double cost) { return cost != kNoCost; });
  if (has_costs) return;
  // Behind the head, a sample is made of lines, whose bytes need not stand in pairs.
  const bool units = (kCharsets[charset].flags & (kUtf16 | kUtf32)) != 0;
  Conversion utf8;
  decode_bytes(kCharsets[charset], units ? sample.substr(0, Sample::kHead) : sample, &utf8);
  if (!utf8.bytes.empty()) reading->costs = price_utf8(utf8.bytes);
}

std::vector<double> Pricing::price_utf8(std::string_view text) {
  Reading reading;
  reading.costs.assign(tables_.languages().size(), kNoCost);
  add_costs(find_charset_index("UTF-8"), totals(without_markup(text)), 0, &reading);
  return reading.costs;
}

void Pricing::price_table(std::string_view text, Reading* reading) {
  std::vector<int> homes;
  for (size_t l = 0; l < home_of_language_.size(); ++l) {
    const int home = home_of_language_[l];
    if (home < 0 || reading->costs[l] != kNoCost) continue;
    if (std::find(homes.begin(), homes.end(), home) == homes.end()) homes.push_back(home);
  }
  for (const int home : homes) price_home(home, text, 0, reading);
}

void Pricing::price_home(int home, std::string_view text, double extra, Reading* reading) {
  const Rewritten as = rewrite(text, reading->table, single_byte_table(home));
  const auto all = static_cast<double>(as.characters);
  if (static_cast<double>(as.missing) > kMostMissing * all) return;
  if (static_cast<double>(as.letters) < kFewestLetters * all) return;
  const bool ebcdic = (kCharsets[reading->charsets.front()].flags & kEbcdic) != 0;
  const std::vector<double> costs = totals(ebcdic ? without_markup(as.text) : as.text);
  add_costs(home, costs, extra + kMissingCost * static_cast<double>(as.missing), reading);
}

}  // namespace orva
