#include "lib/detect/pricing.h"

#include <algorithm>
#include <utility>

#include "lib/detect/byte_blocks.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/focus.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/sample.h"

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

Pricing::Pricing(const ModelTables& tables)
    : tables_(tables), homes_(tables.homes()), trials_(homes_) {}

std::vector<double> Pricing::price_utf8(std::string_view text, const std::vector<char>& languages,
                                        double most) {
  if (!utf8_.has_value()) utf8_.emplace(tables_);
  return utf8_->price(text, languages, most);
}

// ASCII within a document may be markup, code or English whatever the document's language is. So it
// costs a charset hardly more than in the language that it fits best, and says nothing at all about
// languages of other scripts.
void Pricing::price_ascii(std::string_view plain) {
  CostSums& sums = ascii_sums_;
  sums.start(homes_.ascii());
  // No trigram of ASCII alone holds what stands between two runs of it.
  for (size_t from = 0; from < plain.size();) {
    const size_t to = skip_ascii(plain, from);
    if (to - from > 2) sums.add(plain.substr(from, to - from), 0);
    from = skip_high(plain, to);
  }
  const std::vector<size_t>& languages = homes_.languages();
  double least = kNoCost;
  for (size_t i = 0; i < languages.size(); ++i) least = std::min(least, sums.total(i));
  base_.assign(tables_.languages().size(), kNoCost);
  extra_.assign(tables_.languages().size(), 0);
  for (size_t i = 0; i < languages.size(); ++i) {
    const size_t l = languages[i];
    const Script script = homes_.scripts()[l];
    const bool latin = script == kLatin || script == kAnyScript;
    const double cost = latin ? sums.total(i) : least + kOtherScript;
    base_[l] = std::min(cost, least + kOtherAscii);
    extra_[l] = cost - base_[l];
  }
}

void Pricing::price(std::string_view sample, const std::vector<char>& languages,
                    Pool<Reading>* readings) {
  if (languages != languages_) {
    languages_ = languages;
    possible_.clear();
  }
  sample = with_few_high(sample, kMostHigh);
  priced_ = sample.size();
  const std::string plain = normalised(main_text(sample));
  const TrialText text(high_segments(plain));
  price_ascii(plain);
  trials_.start(&text, &base_);
  for (Reading& reading : *readings) {
    const uint32_t flags = kCharsets[reading.charsets.front()].flags;
    reading.costs.assign(tables_.languages().size(), kNoCost);
    mark_possible(text.counts, &reading);
    if (reading.table == nullptr) continue;
    if ((flags & kEbcdic) == 0) {
      reading.language_extra = &extra_;
      trials_.add(&reading);
    } else {
      price_whole(sample, &reading);
      drop_impossible(&reading);
    }
  }
  trials_.run();
  price_multi_byte(sample, text, readings);
}

// The readings that take bytes together, from the likeliest charset on; those behind give up.
void Pricing::price_multi_byte(std::string_view sample, const TrialText& text,
                               Pool<Reading>* readings) {
  double best = kNoCost;
  for (const Reading& reading : *readings) best = std::min(best, least_cost(reading));
  bool asked = false;
  for (Reading& reading : *readings) {
    if (reading.table != nullptr) continue;
    const uint32_t flags = kCharsets[reading.charsets.front()].flags;
    if ((flags & kUnicode) != 0 && (flags & kMarkupSafe) != 0) {
      ListedSums sums(homes_.utf8());
      add_all(text.segments, &sums);
      price_pairs(homes_.utf8(), sums.totals(), &reading);
    } else if ((flags & kMarkupSafe) != 0) {
      if (!pair_sums_.has_value()) pair_sums_.emplace(homes_.pairs());
      if (!std::exchange(asked, true)) {
        pair_sums_->reset();
        add_all(text.segments, &*pair_sums_);
      }
      price_pairs(homes_.pairs(), pair_sums_->totals(), &reading);
    }
    if (!has_cost(reading)) price_decoded(sample, best - reading.prior, &reading);
    drop_impossible(&reading);
    best = std::min(best, least_cost(reading));
  }
}

const PossibleLanguages& Pricing::possible(uint32_t scripts) {
  const auto at =
      std::find_if(possible_.begin(), possible_.end(),
                   [scripts](const PossibleLanguages& p) { return p.scripts == scripts; });
  if (at != possible_.end()) return *at;
  return possible_.emplace_back(homes_.possible(scripts, languages_));
}

// A language is possible if the caller allows it, it can be written in the reading's charsets and
// the reading has a letter of it.
void Pricing::mark_possible(const ByteCounts& counts, Reading* reading) {
  uint32_t written = 0;
  for (const int charset : reading->charsets) written |= written_scripts(charset);
  const int front = reading->charsets.front();
  if (reading->table != nullptr && (kCharsets[front].flags & kEbcdic) == 0) {
    // Latin letters need not be there: ASCII is not counted.
    uint32_t scripts = script_bit(kLatin) | script_bit(kAnyScript);
    const Alphabet& alphabet = alphabet_of(front);
    for (const unsigned char b : counts.present) scripts |= alphabet.traits(b);
    written &= scripts;
  }
  reading->possible = &possible(written & kAllScripts);
}

void Pricing::drop_impossible(Reading* reading) {
  for (size_t l = 0; l < reading->costs.size(); ++l) {
    if (reading->possible->marks[l] == 0) reading->costs[l] = kNoCost;
  }
}

// A reading that does not keep ASCII: all of its text is written in the homes.
void Pricing::price_whole(std::string_view sample, Reading* reading) const {
  const std::vector<std::string> texts = {std::string(sample)};
  const ByteCounts counts(texts);
  const Alphabet& alphabet = alphabet_of(reading->charsets.front());
  const Placement placement(alphabet, counts);
  const double extra = placement.cost(sample, 0, sample.size());
  const std::vector<Rewriting>& rewritings = homes_.rewritings(reading->charsets.front());
  for (const size_t h : reading->possible->homes) {
    const Home& home = homes_.all()[h];
    const Rewriting& rewriting = rewritings[h];
    if (lacks_letters(rewriting, counts, placement)) continue;
    CostSums sums(home.models);
    sums.add(normalised(without_markup(rewriting.apply(sample))), 0);
    for (size_t i = 0; i < home.languages.size(); ++i) {
      reading->costs[home.languages[i]] = sums.total(i) + extra;
    }
  }
}

// A multi-byte reading, through the models of its own charset.
void Pricing::price_pairs(const ListedModels& models, const std::vector<double>& totals,
                          Reading* reading) const {
  for (size_t i = 0; i < totals.size(); ++i) {
    const ModelInfo& model = models.info(i);
    if (!reading->holds(model.charset)) continue;
    const auto l = static_cast<size_t>(model.language);
    if (base_[l] == kNoCost) continue;
    reading->costs[l] = std::min(reading->costs[l], base_[l] + totals[i]);
  }
}

// What no model is for is decoded and asked through UTF-8; all of it only if its beginning may cost
// less than `most` in proportion.
void Pricing::price_decoded(std::string_view sample, double most, Reading* reading) {
  const Charset& charset = kCharsets[reading->charsets.front()];
  // Behind the head, a sample is made of lines, whose bytes need not stand in pairs.
  const bool units = (charset.flags & (kUtf16 | kUtf32)) != 0;
  if (units) sample = sample.substr(0, Sample::kHead);
  const double share = static_cast<double>(kBeginning) / static_cast<double>(sample.size());
  if (share < 0.5 && most != kNoCost) {
    price_decoded_part(charset, sample.substr(0, kBeginning), most * share, reading);
    const double least = *std::min_element(reading->costs.begin(), reading->costs.end());
    if (least != kNoCost && least > most * share + kFarBehind) {
      for (double& cost : reading->costs) cost /= share;
      return;
    }
  }
  price_decoded_part(charset, sample, most, reading);
}

void Pricing::price_decoded_part(const Charset& charset, std::string_view part, double most,
                                 Reading* reading) {
  Conversion utf8;
  decode_bytes(charset, part, &utf8);
  if (!utf8.bytes.empty()) reading->costs = price_utf8(utf8.bytes, languages_, most);
}

}  // namespace orva
