#include "lib/detect/pricing.h"

#include <algorithm>
#include <utility>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/focus.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/sample.h"

namespace orva {

namespace {

// Bytes above 0x7F that are looked at; more would not change an answer.
constexpr size_t kMostHigh = 2000;
// Nats a byte that the text around bytes above 0x7F costs in its own language, at most; and bytes
// of it that tell whether it does.
constexpr double kMostOfLetters = 3.5;
constexpr double kMostOfPairs = 5;
// What a charset costs that a few bytes cannot tell from one that fits.
constexpr double kUnlikelyPrior = 15;
constexpr double kMostOfAny = 15;  // of a text however short
constexpr size_t kTellingText = 32;
constexpr size_t kSurelyPairs = 64;
// Bytes that tell which charset pairs are of, and how much they cost in it.
constexpr size_t kTellingPairs = 768;

void set_least(Reading* reading) {
  reading->least = least_of(reading->costs.data(), reading->costs.size()) + reading->prior;
}

// Bytes of a document that can rule a decoded reading out, and nats that do.
constexpr size_t kBeginnings[] = {64, 512};
constexpr double kFarBehind = 80;

bool is_far_behind(double most, const Reading& reading) {
  const double least = least_of(reading.costs.data(), reading.costs.size());
  return least != kNoCost && least > most + kFarBehind;
}

// Adds as much of a text as tells, in pieces from all over it; returns how many times as much all
// of it is.
double add_pieces(const TrialText& text, ListedSums* sums) {
  size_t added = 0;
  for (const TrialText::Piece& piece : text.pieces) {
    const std::string_view segment = text.segments[piece.segment];
    sums->add(segment.substr(piece.context, piece.to - piece.context));
    added += piece.to - piece.from;
    if (added >= kTellingPairs) break;
  }
  return added == 0 ? 1 : static_cast<double>(text.length) / static_cast<double>(added);
}

// Whether it is a single-byte one in which ASCII stands for itself.
bool keeps_ascii(const Reading& reading) {
  return reading.table != nullptr && (kCharsets[reading.charsets.front()].flags & kEbcdic) == 0;
}

// The cheapest one; null when none was priced.
const Reading* best_of(const Pool<Reading>& readings) {
  const Reading* best = nullptr;
  double least = kNoCost;
  for (const Reading& reading : readings) {
    if (reading.least >= least) continue;
    least = reading.least;
    best = &reading;
  }
  return best;
}

}  // namespace

Pricing::Pricing(const ModelTables& tables)
    : tables_(tables),
      homes_(tables.homes()),
      no_costs_(tables.languages().size(), kNoCost),
      ascii_(tables),
      trials_(homes_) {}

std::vector<double> Pricing::price_utf8(std::string_view text, const std::vector<char>& languages,
                                        double most) {
  if (!utf8_.has_value()) utf8_.emplace(tables_);
  return utf8_->price(text, languages, most);
}

void Pricing::price(std::string_view sample, const std::vector<char>& languages,
                    Pool<Reading>* readings) {
  if (languages != languages_) {
    languages_ = languages;
    possible_.clear();
  }
  sample = with_few_high(sample, kMostHigh);
  priced_ = sample.size();
  const std::string_view plain = normalised(main_text(sample, &main_), &plain_);
  text_.start(plain);
  ascii_.start(plain);
  for (Reading& reading : *readings) {
    reading.costs.clear();
    reading.least = kNoCost;
  }
  const double rival = price_modelled(text_, readings);
  price_single_bytes(text_, rival, readings);
  if (is_latin(*readings)) finish_ascii(readings);
  price_others(sample, text_, readings);
}

// Whether the best reading so far is in a language that ASCII tells from others.
bool Pricing::is_latin(const Pool<Reading>& readings) const {
  const Reading* const best = best_of(readings);
  if (best == nullptr) return false;
  size_t language = 0;
  double least = kNoCost;
  for (size_t l = 0; l < best->costs.size(); ++l) {
    const double cost = best->costs[l] + ascii_.extra()[l];
    if (cost >= least) continue;
    least = cost;
    language = l;
  }
  const Script script = homes_.scripts()[language];
  return script == kLatin || script == kAnyScript;
}

void Pricing::finish_ascii(Pool<Reading>* readings) {
  const std::vector<double> before = ascii_.base();
  if (!ascii_.finish()) return;
  for (Reading& reading : *readings) {
    for (size_t l = 0; l < reading.costs.size(); ++l) {
      if (reading.costs[l] != kNoCost) reading.costs[l] += ascii_.base()[l] - before[l];
    }
    set_least(&reading);
  }
}

void Pricing::begin(const TrialText& text, Reading* reading) {
  reading->costs = no_costs_;
  mark_possible(text.counts, reading);
}

// The multi-byte readings that models are for; returns what the cheapest one costs.
double Pricing::price_modelled(const TrialText& text, Pool<Reading>* readings) {
  double best = kNoCost;
  bool asked = false;
  double pairs_stretch = 1;
  for (Reading& reading : *readings) {
    const uint32_t flags = kCharsets[reading.charsets.front()].flags;
    if (reading.table != nullptr || (flags & kMarkupSafe) == 0) continue;
    begin(text, &reading);
    if ((flags & kUnicode) != 0) {
      ListedSums sums(homes_.utf8());
      const double stretch = add_pieces(text, &sums);
      price_pairs(homes_.utf8(), sums.totals(), stretch, &reading);
    } else {
      if (!pair_sums_.has_value()) pair_sums_.emplace(homes_.pairs());
      if (!std::exchange(asked, true)) {
        pair_sums_->reset();
        pairs_stretch = add_pieces(text, &*pair_sums_);
      }
      price_pairs(homes_.pairs(), pair_sums_->totals(), pairs_stretch, &reading);
    }
    drop_impossible(&reading);
    set_least(&reading);
    best = std::min(best, reading.least);
  }
  return best;
}

double Pricing::screen(const TrialText& text, double rival, const Pool<Reading>& readings) {
  screening_.start(text.segments, homes_.letters());
  screened_.clear();
  double least = kNoCost;
  double next = kNoCost;
  for (const Reading& reading : readings) {
    double cost = kNoCost;
    if (keeps_ascii(reading)) {
      cost = screening_.cost(reading.charsets.front()) + reading.prior;
    }
    screened_.push_back(cost);
    if (cost < least) std::swap(cost, least);
    next = std::min(next, cost);
  }
  const double limit = least + screening_.margin();
  // Some other reading is to show how far the best one is ahead.
  return rival == kNoCost ? std::max(limit, next) : limit;
}

// Asks about the single-byte readings that cost no more than `limit` by their letters.
void Pricing::ask(const TrialText& text, double limit, double rival, Pool<Reading>* readings) {
  trials_.start(&text, &ascii_.base(), &ascii_.extra());
  trials_.set_rival(rival);
  for (size_t i = 0; i < readings->size(); ++i) {
    Reading& reading = (*readings)[i];
    if (!keeps_ascii(reading) || screened_[i] > limit) continue;
    begin(text, &reading);
    reading.language_extra = &ascii_.extra();
    trials_.add(&reading);
  }
  trials_.run();
  for (Reading& reading : *readings) {
    if (keeps_ascii(reading)) set_least(&reading);
  }
}

// Whether the best reading so far costs what text does.
bool Pricing::fits(const TrialText& text, const Pool<Reading>& readings) const {
  const Reading* const best = best_of(readings);
  if (best == nullptr) return false;
  double beyond_ascii = kNoCost;
  for (size_t l = 0; l < best->costs.size(); ++l) {
    if (best->costs[l] != kNoCost) {
      beyond_ascii = std::min(beyond_ascii, best->costs[l] - ascii_.base()[l]);
    }
  }
  const double most = best->table != nullptr ? kMostOfLetters : kMostOfPairs;
  return beyond_ascii <= most * static_cast<double>(text.length) + kMostOfAny;
}

// Those that are likely by their letters. If the best of all does not fit as text does, letters
// misled, and all are asked about.
void Pricing::price_single_bytes(const TrialText& text, double rival, Pool<Reading>* readings) {
  double limit = screen(text, rival, *readings);
  if (rival != kNoCost && text.length >= kSurelyPairs && fits(text, *readings)) {
    // Text of pairs. One other reading is to show how far it is ahead.
    limit = *std::min_element(screened_.begin(), screened_.end());
  }
  ask(text, limit, rival, readings);
  if (!fits(text, *readings)) ask(text, kNoCost, rival, readings);
}

// The readings that do not keep ASCII, and those that no model is for, where nothing else fits.
void Pricing::price_others(std::string_view sample, const TrialText& text,
                           Pool<Reading>* readings) {
  const bool one_fits = fits(text, *readings);
  if (text.length >= kTellingText && one_fits) return;
  double best = kNoCost;
  for (const Reading& reading : *readings) best = std::min(best, reading.least);
  const double best_of_ascii = best;
  for (Reading& reading : *readings) {
    if (reading.least != kNoCost || keeps_ascii(reading)) continue;
    if (one_fits && reading.prior >= kUnlikelyPrior) continue;
    begin(text, &reading);
    if (reading.table != nullptr) {
      price_whole(sample, best_of_ascii - reading.prior, &reading);
    } else {
      price_decoded(sample, best - reading.prior, &reading);
    }
    drop_impossible(&reading);
    set_least(&reading);
    best = std::min(best, reading.least);
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
  if (keeps_ascii(*reading)) {
    // Latin letters need not be there: ASCII is not counted.
    const uint32_t scripts = script_bit(kLatin) | script_bit(kAnyScript);
    written &= scripts | alphabet_of(front).scripts(counts.high);
  }
  reading->possible = &possible(written & kAllScripts);
}

void Pricing::drop_impossible(Reading* reading) {
  for (size_t l = 0; l < reading->costs.size(); ++l) {
    if (reading->possible->marks[l] == 0) reading->costs[l] = kNoCost;
  }
}

// A reading that does not keep ASCII: all of its text is written in the homes, if its beginning may
// cost less than `most` in proportion.
void Pricing::price_whole(std::string_view sample, double most, Reading* reading) const {
  for (const size_t beginning : kBeginnings) {
    const double share = static_cast<double>(beginning) / static_cast<double>(sample.size());
    if (share > 0.5 || most == kNoCost) break;
    price_whole_part(sample.substr(0, beginning), reading);
    if (is_far_behind(most * share, *reading)) {
      for (double& cost : reading->costs) cost /= share;
      return;
    }
  }
  price_whole_part(sample, reading);
}

void Pricing::price_whole_part(std::string_view sample, Reading* reading) const {
  std::fill(reading->costs.begin(), reading->costs.end(), kNoCost);
  const ByteCounts counts({sample});
  const Alphabet& alphabet = alphabet_of(reading->charsets.front());
  const Placement placement(alphabet, counts);
  const double extra = placement.cost(sample, 0, sample.size());
  const std::vector<Rewriting>& rewritings = homes_.rewritings(reading->charsets.front());
  for (const size_t h : reading->possible->homes) {
    const Home& home = homes_.all()[h];
    const Rewriting& rewriting = rewritings[h];
    if (rewriting.lacks_more(counts, most_missing(placement.letters()), placement.letters()))
      continue;
    CostSums sums(home.models);
    sums.add(normalised(without_markup(rewriting.apply(sample))), 0);
    for (size_t i = 0; i < home.languages.size(); ++i) {
      reading->costs[home.languages[i]] = sums.total(i) + extra;
    }
  }
}

// A multi-byte reading, through the models of its own charset.
void Pricing::price_pairs(const ListedModels& models, const std::vector<double>& totals,
                          double stretch, Reading* reading) const {
  for (size_t i = 0; i < totals.size(); ++i) {
    const ModelInfo& model = models.info(i);
    if (!reading->holds(model.charset)) continue;
    const auto l = static_cast<size_t>(model.language);
    if (ascii_.base()[l] == kNoCost) continue;
    reading->costs[l] = std::min(reading->costs[l], ascii_.base()[l] + totals[i] * stretch);
  }
}

// What no model is for is decoded and asked through UTF-8; all of it only if its beginning may cost
// less than `most` in proportion.
void Pricing::price_decoded(std::string_view sample, double most, Reading* reading) {
  const Charset& charset = kCharsets[reading->charsets.front()];
  // Behind the head, a sample is made of lines, whose bytes need not stand in pairs.
  const bool units = (charset.flags & (kUtf16 | kUtf32)) != 0;
  if (units) sample = sample.substr(0, Sample::kHead);
  for (const size_t beginning : kBeginnings) {
    const double share = static_cast<double>(beginning) / static_cast<double>(sample.size());
    if (share > 0.5 || most == kNoCost) break;
    price_decoded_part(charset, sample.substr(0, beginning), most * share, reading);
    if (is_far_behind(most * share, *reading)) {
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
