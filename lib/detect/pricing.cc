#include "lib/detect/pricing.h"

#include <algorithm>
#include <utility>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/focus.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/sample.h"
#include "lib/detect/trials.h"

namespace orva {

namespace {

// Bytes above 0x7F that are looked at; more would not change an answer.
constexpr size_t kMostHigh = 2000;
// What it costs that a document's ASCII is in another language.
constexpr double kOtherAscii = 6;

// The same, when the document's language is written in another script.
constexpr double kOtherScript = 4;

double least_cost(const Reading& reading) {
  double least = kNoCost;
  for (const double cost : reading.costs) least = std::min(least, cost + reading.prior);
  return least;
}

// Bytes of a document that can rule a decoded reading out, and nats that do.
constexpr size_t kBeginning = 512;
constexpr double kFarBehind = 80;

void add_all(const std::vector<std::string>& texts, ListedSums* sums) {
  for (const std::string& text : texts) sums->add(text);
}

bool has_cost(const Reading& reading) {
  return std::any_of(reading.costs.begin(), reading.costs.end(),
                     [](double cost) { return cost != kNoCost; });
}

}  // namespace

struct Pricing::Text {
  TrialText high;
  // By language, of the trigrams of ASCII alone: what they cost a charset, and what they cost the
  // language beyond that.
  std::vector<double> base;
  std::vector<double> extra;

  explicit Text(std::vector<std::string> segments) : high(std::move(segments)) {}
};

Pricing::Pricing(const ModelTables& tables)
    : tables_(tables), homes_(tables.homes()), pair_sums_(homes_.pairs()), utf8_(tables) {}

// ASCII within a document may be markup, code or English whatever the document's language is. So it
// costs a charset hardly more than in the language that it fits best, and says nothing at all about
// languages of other scripts.
void Pricing::price_ascii(std::string_view plain, Text* text) const {
  CostSums sums(homes_.ascii());
  sums.add(plain, 0);
  const std::vector<size_t>& languages = homes_.languages();
  double least = kNoCost;
  for (size_t i = 0; i < languages.size(); ++i) least = std::min(least, sums.total(i));
  text->base.assign(tables_.languages().size(), kNoCost);
  text->extra.assign(tables_.languages().size(), 0);
  for (size_t i = 0; i < languages.size(); ++i) {
    const size_t l = languages[i];
    const Script script = homes_.scripts()[l];
    const bool latin = script == kLatin || script == kAnyScript;
    const double cost = latin ? sums.total(i) : least + kOtherScript;
    text->base[l] = std::min(cost, least + kOtherAscii);
    text->extra[l] = cost - text->base[l];
  }
}

void Pricing::price(std::string_view sample, const std::vector<char>& languages,
                    std::vector<Reading>* readings) {
  sample = with_few_high(sample, kMostHigh);
  priced_ = sample.size();
  const std::string plain = normalised(main_text(sample));
  Text text(high_segments(plain));
  price_ascii(plain, &text);
  Trials trials(homes_, text.high, text.base);
  for (Reading& reading : *readings) {
    const uint32_t flags = kCharsets[reading.charsets.front()].flags;
    reading.costs.assign(tables_.languages().size(), kNoCost);
    mark_possible(text.high.counts, languages, &reading);
    if (reading.table == nullptr) continue;
    if ((flags & kEbcdic) == 0) {
      trials.add(&reading);
      reading.language_extra = text.extra;
    } else {
      price_whole(sample, &reading);
      drop_impossible(&reading);
    }
  }
  trials.run();
  price_multi_byte(sample, text, languages, readings);
}

// The readings that take bytes together, from the likeliest charset on; those behind give up.
void Pricing::price_multi_byte(std::string_view sample, const Text& text,
                               const std::vector<char>& languages, std::vector<Reading>* readings) {
  double best = kNoCost;
  for (const Reading& reading : *readings) best = std::min(best, least_cost(reading));
  pair_sums_.reset();
  bool asked = false;
  for (Reading& reading : *readings) {
    if (reading.table != nullptr) continue;
    const uint32_t flags = kCharsets[reading.charsets.front()].flags;
    if ((flags & kUnicode) != 0 && (flags & kMarkupSafe) != 0) {
      ListedSums sums(homes_.utf8());
      add_all(text.high.segments, &sums);
      price_pairs(text, homes_.utf8(), sums.totals(), &reading);
    } else if ((flags & kMarkupSafe) != 0) {
      if (!std::exchange(asked, true)) add_all(text.high.segments, &pair_sums_);
      price_pairs(text, homes_.pairs(), pair_sums_.totals(), &reading);
    }
    if (!has_cost(reading)) price_decoded(sample, languages, best - reading.prior, &reading);
    drop_impossible(&reading);
    best = std::min(best, least_cost(reading));
  }
}

// A language is possible if the caller allows it, it can be written in the reading's charsets and
// the reading has a letter of it.
void Pricing::mark_possible(const ByteCounts& counts, const std::vector<char>& languages,
                            Reading* reading) const {
  const bool ebcdic = (kCharsets[reading->charsets.front()].flags & kEbcdic) != 0;
  const bool counted = reading->table != nullptr && !ebcdic;
  // Latin letters need not be there: ASCII is not counted.
  uint32_t scripts = script_bit(kLatin) | script_bit(kAnyScript);
  if (counted) {
    const Alphabet& alphabet = alphabet_of(reading->charsets.front());
    for (const unsigned char b : counts.present) scripts |= alphabet[b].scripts;
  }
  bool can[kAnyScript + 1];
  for (int s = 0; s <= kAnyScript; ++s) {
    const auto script = static_cast<Script>(s);
    can[s] = (!counted || (scripts & script_bit(script)) != 0) &&
             std::any_of(reading->charsets.begin(), reading->charsets.end(),
                         [&](int charset) { return can_write(charset, script); });
  }
  const std::vector<Script>& script_of = homes_.scripts();
  reading->possible.assign(script_of.size(), false);
  for (size_t l = 0; l < script_of.size(); ++l) {
    reading->possible[l] = can[script_of[l]] && (languages.empty() || languages[l] != 0);
  }
}

void Pricing::drop_impossible(Reading* reading) {
  for (size_t l = 0; l < reading->costs.size(); ++l) {
    if (!reading->possible[l]) reading->costs[l] = kNoCost;
  }
}

// A reading that does not keep ASCII: all of its text is written in the homes.
void Pricing::price_whole(std::string_view sample, Reading* reading) const {
  const std::vector<std::string> texts = {std::string(sample)};
  const ByteCounts counts(texts);
  const Alphabet& alphabet = alphabet_of(reading->charsets.front());
  const Placement placement(alphabet, counts);
  const double extra = placement.cost(sample, 0, sample.size());
  for (size_t h = 0; h < homes_.all().size(); ++h) {
    const Home& home = homes_.all()[h];
    const Rewriting& rewriting = homes_.rewriting(reading->charsets.front(), h);
    if (lacks_letters(rewriting, counts, placement)) continue;
    CostSums sums(home.models);
    sums.add(normalised(without_markup(rewriting.apply(sample))), 0);
    for (size_t i = 0; i < home.languages.size(); ++i) {
      reading->costs[home.languages[i]] = sums.total(i) + extra;
    }
  }
}

// A multi-byte reading, through the models of its own charset.
void Pricing::price_pairs(const Text& text, const ListedModels& models,
                          const std::vector<double>& totals, Reading* reading) {
  for (size_t i = 0; i < totals.size(); ++i) {
    const ModelInfo& model = models.info(i);
    if (!reading->holds(model.charset)) continue;
    const auto l = static_cast<size_t>(model.language);
    if (text.base[l] == kNoCost) continue;
    reading->costs[l] = std::min(reading->costs[l], text.base[l] + totals[i]);
  }
}

// What no model is for is decoded and asked through UTF-8; all of it only if its beginning may cost
// less than `most` in proportion.
void Pricing::price_decoded(std::string_view sample, const std::vector<char>& languages,
                            double most, Reading* reading) {
  const Charset& charset = kCharsets[reading->charsets.front()];
  // Behind the head, a sample is made of lines, whose bytes need not stand in pairs.
  const bool units = (charset.flags & (kUtf16 | kUtf32)) != 0;
  if (units) sample = sample.substr(0, Sample::kHead);
  const double share = static_cast<double>(kBeginning) / static_cast<double>(sample.size());
  if (share < 0.5 && most != kNoCost) {
    price_decoded_part(charset, sample.substr(0, kBeginning), languages, most * share, reading);
    const double least = *std::min_element(reading->costs.begin(), reading->costs.end());
    if (least != kNoCost && least > most * share + kFarBehind) {
      for (double& cost : reading->costs) cost /= share;
      return;
    }
  }
  price_decoded_part(charset, sample, languages, most, reading);
}

void Pricing::price_decoded_part(const Charset& charset, std::string_view part,
                                 const std::vector<char>& languages, double most,
                                 Reading* reading) {
  Conversion utf8;
  decode_bytes(charset, part, &utf8);
  if (!utf8.bytes.empty()) reading->costs = utf8_.price(utf8.bytes, languages, most);
}

}  // namespace orva
