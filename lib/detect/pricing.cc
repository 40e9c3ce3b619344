#include "lib/detect/pricing.h"

#include <algorithm>

#include "lib/detect/characters.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/focus.h"
#include "lib/detect/priors.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/sample.h"
#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

// Bytes above 0x7F that are looked at; more would not change an answer.
constexpr size_t kMostHigh = 2000;
// A reading is not asked for where more of its letters are missing from a home, or where odd signs
// outnumber its letters by more.
constexpr double kMostMissing = 0.2;
constexpr double kMostOdd = 1.5;

// What it costs that a document's ASCII is in another language.
constexpr double kOtherAscii = 6;

// The same, when the document's language is written in another script.
constexpr double kOtherScript = 4;

// Which model a language is asked through: a single-byte one before its UTF-8 one.
int home_rank(int charset) {
  if (charset < 0) return 0;
  if (kCharsets[charset].flags == 0 || charset == find_charset_index("US-ASCII")) return 0;
  if (charset == find_charset_index("UTF-8")) return 1;
  const bool plain =
      single_byte_table(charset) != nullptr && (kCharsets[charset].flags & kAsciiCompatible) != 0;
  return plain ? 2 : 0;
}

bool has_cost(const Reading& reading) {
  return std::any_of(reading.costs.begin(), reading.costs.end(),
                     [](double cost) { return cost != kNoCost; });
}

}  // namespace

namespace {

size_t high_bytes(std::string_view text) {
  return static_cast<size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; }));
}

// The sample without markup, unless most of what tells charsets apart stands within tags.
std::string text_of(std::string_view sample) {
  std::string text = without_markup(sample);
  return 2 * high_bytes(text) < high_bytes(sample) ? std::string(sample) : text;
}

// UTF-8 as the models know it, without capitals; its letters are counted by script.
std::string with_small_letters(std::string_view text, ScriptCounts* scripts) {
  std::string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const Character character = read_utf8(text.substr(at));
    if (character.state != Character::kGood) {
      out.push_back(text[at++]);
      continue;
    }
    scripts->add(character.value);
    append_utf8(small_letter(character.value), &out);
    at += character.length;
  }
  return out;
}

}  // namespace

struct Pricing::Text {
  std::vector<std::string> segments;
  ByteCounts counts;
  // By language, of the trigrams of ASCII alone: what they cost a charset, and what they cost the
  // language beyond that.
  std::vector<double> base;
  std::vector<double> extra;

  explicit Text(std::vector<std::string> from) : segments(std::move(from)), counts(segments) {}
};

Pricing::Pricing(const ModelTables& tables, Scorer* scorer)
    : tables_(tables), scorer_(*scorer), home_model_(tables.languages().size(), -1) {
  for (int i = 0; i < tables_.nb_models(); ++i) {
    int& home = home_model_[static_cast<size_t>(tables_.model(i).language)];
    const int rank = home_rank(tables_.model(i).charset);
    if (rank > (home < 0 ? 0 : home_rank(tables_.model(home).charset))) home = i;
  }
  for (const std::string& language : tables_.languages()) {
    scripts_.push_back(script_of_language(language));
  }
  for (const int home : home_model_) {
    if (home < 0) continue;
    const int charset = tables_.model(home).charset;
    if (std::find(home_charsets_.begin(), home_charsets_.end(), charset) == home_charsets_.end()) {
      home_charsets_.push_back(charset);
    }
  }
}

std::vector<double> Pricing::totals(const std::vector<std::string>& segments) {
  scorer_.reset();
  for (const std::string& segment : segments) {
    scorer_.begin_segment();
    scorer_.feed(segment);
  }
  return scorer_.totals();
}

// ASCII within a document may be markup, code or English whatever the document's language is. So it
// costs a charset hardly more than in the language that it fits best, and says nothing at all about
// languages of other scripts.
void Pricing::price_ascii(std::string_view plain, Text* text) {
  scorer_.reset();
  scorer_.set_ascii_only(true);
  scorer_.feed(plain);
  scorer_.set_ascii_only(false);
  const std::vector<double> all = scorer_.totals();
  double least = kNoCost;
  for (const int home : home_model_) {
    if (home >= 0) least = std::min(least, all[static_cast<size_t>(home)]);
  }
  for (size_t l = 0; l < home_model_.size(); ++l) {
    const int home = home_model_[l];
    double cost = home < 0 ? kNoCost : all[static_cast<size_t>(home)];
    const bool latin = scripts_[l] == kLatin || scripts_[l] == kAnyScript;
    if (home >= 0 && !latin) cost = least + kOtherScript;
    text->base.push_back(std::min(cost, home < 0 ? kNoCost : least + kOtherAscii));
    text->extra.push_back(home < 0 ? 0 : cost - text->base.back());
  }
}

void Pricing::price(std::string_view sample, std::vector<Reading>* readings) {
  sample = with_few_high(sample, kMostHigh);
  priced_ = sample.size();
  const std::string plain = normalised(text_of(sample));
  Text text(high_segments(plain));
  price_ascii(plain, &text);
  const std::vector<double> direct = totals(text.segments);
  for (Reading& reading : *readings) {
    const uint32_t flags = kCharsets[reading.charsets.front()].flags;
    reading.costs.assign(tables_.languages().size(), kNoCost);
    if (reading.table != nullptr && (flags & kEbcdic) == 0) {
      price_table(text, &reading);
    } else if (reading.table != nullptr) {
      price_whole(sample, &reading);
    } else {
      if ((flags & kMarkupSafe) != 0) price_pairs(text, direct, &reading);
      if (!has_cost(reading)) price_decoded(sample, &reading);
    }
    drop_other_scripts(text.counts, &reading);
  }
}

// No language is left that is not written in the reading's charsets, or of whose letters the
// reading has none.
void Pricing::drop_other_scripts(const ByteCounts& counts, Reading* reading) const {
  const bool ebcdic = (kCharsets[reading->charsets.front()].flags & kEbcdic) != 0;
  const bool counted = reading->table != nullptr && !ebcdic;
  ScriptCounts scripts;
  for (int b = 0; b < 256 && counted; ++b) {
    if (counts.of[b] != 0) scripts.add(reading->table[b]);
  }
  for (size_t l = 0; l < scripts_.size(); ++l) {
    const bool can = std::any_of(reading->charsets.begin(), reading->charsets.end(),
                                 [&](int charset) { return can_write(charset, scripts_[l]); });
    if (!can || (counted && !scripts.has(scripts_[l]))) reading->costs[l] = kNoCost;
  }
}

// A single-byte reading, through the homes.
void Pricing::price_table(const Text& text, Reading* reading) {
  for (const int charset : home_charsets_) {
    const Rewriting rewriting(reading->table, single_byte_table(charset), text.counts, false);
    const auto letters = static_cast<double>(rewriting.letters());
    if (static_cast<double>(rewriting.missing()) > kMostMissing * letters) continue;
    if (static_cast<double>(rewriting.odd()) > kMostOdd * (letters + 1)) continue;
    std::vector<std::string> segments;
    double extra = rewriting.sign_cost() + rewriting.lone_letters_cost(text.segments);
    for (const std::string& segment : text.segments) {
      segments.push_back(rewriting.apply(segment));
      extra += rewriting.place_cost(segment);
    }
    const std::vector<double> all = totals(segments);
    for (size_t l = 0; l < home_model_.size(); ++l) {
      const int home = home_model_[l];
      if (home < 0 || tables_.model(home).charset != charset) continue;
      reading->costs[l] = text.base[l] + all[static_cast<size_t>(home)] + extra;
    }
  }
  reading->language_extra = text.extra;
}

// A reading that does not keep ASCII: all of its text is written in the homes.
void Pricing::price_whole(std::string_view sample, Reading* reading) {
  const ByteCounts counts({std::string(sample)});
  for (const int charset : home_charsets_) {
    const Rewriting rewriting(reading->table, single_byte_table(charset), counts, true);
    const auto letters = static_cast<double>(rewriting.letters());
    if (static_cast<double>(rewriting.missing()) > kMostMissing * letters) continue;
    const std::string text = normalised(without_markup(rewriting.apply(sample)));
    const double extra = rewriting.sign_cost() + rewriting.place_cost(sample);
    const std::vector<double> all = totals({text});
    for (size_t l = 0; l < home_model_.size(); ++l) {
      const int home = home_model_[l];
      if (home < 0 || tables_.model(home).charset != charset) continue;
      reading->costs[l] = all[static_cast<size_t>(home)] + extra;
    }
  }
}

// A multi-byte reading, through the models of its own charset.
void Pricing::price_pairs(const Text& text, const std::vector<double>& totals, Reading* reading) {
  for (int i = 0; i < tables_.nb_models(); ++i) {
    const ModelInfo& model = tables_.model(i);
    if (model.charset < 0 || !reading->holds(model.charset)) continue;
    const auto l = static_cast<size_t>(model.language);
    if (text.base[l] == kNoCost) continue;
    double& cost = reading->costs[l];
    cost = std::min(cost, text.base[l] + totals[static_cast<size_t>(i)]);
  }
}

// What no model is for is decoded and asked through UTF-8.
void Pricing::price_decoded(std::string_view sample, Reading* reading) {
  const Charset& charset = kCharsets[reading->charsets.front()];
  // Behind the head, a sample is made of lines, whose bytes need not stand in pairs.
  const bool units = (charset.flags & (kUtf16 | kUtf32)) != 0;
  Conversion utf8;
  decode_bytes(charset, units ? sample.substr(0, Sample::kHead) : sample, &utf8);
  if (!utf8.bytes.empty()) reading->costs = price_utf8(utf8.bytes);
}

std::vector<double> Pricing::price_utf8(std::string_view text) {
  ScriptCounts scripts;
  const std::vector<double> all = totals({normalised(with_small_letters(text_of(text), &scripts))});
  std::vector<double> costs(tables_.languages().size(), kNoCost);
  const int utf8 = find_charset_index("UTF-8");
  for (int i = 0; i < tables_.nb_models(); ++i) {
    const ModelInfo& model = tables_.model(i);
    const auto l = static_cast<size_t>(model.language);
    if (model.charset != utf8 || !scripts.can_be(scripts_[l])) continue;
    costs[l] = std::min(costs[l], all[static_cast<size_t>(i)]);
  }
  return costs;
}

}  // namespace orva
