#include "lib/detect/decision.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/priors.h"
#include "lib/detect/sample.h"

namespace orva {

namespace {

// Controls that text never holds: one in so many bytes makes a document binary.
constexpr uint64_t kControlsPerByte = 20;

// Margins beyond this are the same certainty.
constexpr double kMostMargin = 1e6;

// Nats a byte that text costs at most under the models of its language, as a rule; bytes at random
// cost twice as much.
constexpr double kGoodFit = 5;

// How many nats count as one when costs become probabilities: models err together over a text, the
// more the longer it is.
double temperature(double length) { return 2.0 + 0.02 * length; }

// What priors weigh beside the costs of a text with so many bytes above 0x7F, for the same reason.
double prior_weight(uint64_t high) {
  constexpr double kPerRoot = 0.12;
  constexpr uint64_t kMostPriced = 2000;
  return std::max(1.0, kPerRoot * std::sqrt(static_cast<double>(std::min(high, kMostPriced))));
}

int ascii_charset() {
  static const int charset = find_charset_index("US-ASCII");
  return charset;
}

int utf8_charset() {
  static const int charset = find_charset_index("UTF-8");
  return charset;
}

bool is_valid(const Evidence& evidence, const char* charset) {
  return evidence.decodes(find_charset_index(charset), true);
}

bool holds_letters(const Evidence& evidence) {
  for (int b = 'A'; b <= 'z'; ++b) {
    if ((b <= 'Z' || b >= 'a') && evidence.holds(static_cast<unsigned char>(b))) return true;
  }
  return false;
}

// Text of a mainframe: its blank is 0x40, its letters lie above 0x7F.
bool looks_ebcdic(const Evidence& evidence) {
  return evidence.kinds().at_signs > 4 * evidence.kinds().blanks &&
         evidence.high() * 2 > evidence.length();
}

bool has_many_controls(const Evidence& evidence) {
  return evidence.kinds().odd_controls * kControlsPerByte > evidence.length();
}

// UTF-16 without blanks: the upper bytes of Greek and Cyrillic letters are controls, and the lower
// ones of Chinese characters may be.
bool looks_utf16(const Evidence& evidence) {
  constexpr uint64_t kFewestLetters = 4;
  constexpr double kLetterCost = 6;
  constexpr uint64_t kFewestChinese = 16;
  constexpr double kChineseCost = 8.6;
  const auto& checks = evidence.unicode();
  return std::any_of(checks.begin(), checks.end(), [](const UnicodeCheck& check) {
    if (!check.valid() || check.characters() < kFewestLetters) return false;
    const bool is_long = check.characters() >= kFewestChinese;
    return check.cost() <= (is_long ? kChineseCost : kLetterCost);
  });
}

bool is_binary(const Evidence& evidence) {
  if (evidence.has_binary_signature()) return true;
  return has_many_controls(evidence) && !looks_ebcdic(evidence) && !looks_utf16(evidence);
}

// The likeliest gets `probability`; the others share what it leaves, none more than it.
void share_out(double probability, double scale, std::vector<Candidate>* candidates) {
  std::vector<Candidate>& all = *candidates;
  all[0].probability = probability;
  double sum = 0;
  for (size_t i = 1; i < all.size(); ++i) {
    const long double times = (all[1].cost - all[i].cost) / scale;
    all[i].probability = static_cast<double>(std::exp(times));
    sum += all[i].probability;
  }
  for (size_t i = 1; i < all.size(); ++i) {
    all[i].probability = std::min(probability, all[i].probability / sum * (1 - probability));
  }
}

Ground ground_of(const Reading& reading) {
  if (reading.table != nullptr) return Ground::kSingleByte;
  const uint32_t flags = kCharsets[reading.charsets.front()].flags;
  return (flags & (kUtf16 | kUtf32)) != 0 ? Ground::kWide : Ground::kMultiByte;
}

}  // namespace

struct Decider::Task {
  const Evidence& evidence;
  std::string_view sample;
  const Restrictions& restrictions;
  const uint64_t high = evidence.high();

  bool allows(const char* charset) const { return allows(find_charset_index(charset)); }
  bool allows(int charset) const { return restrictions.allows_charset(charset); }
};

Decision Decider::decide(const Evidence& evidence, std::string_view sample,
                         const Restrictions& restrictions) {
  Decision decision;
  if (evidence.length() == 0) return decision;
  const Task task{evidence, sample, restrictions};
  decision.kind = DocumentKind::kText;
  if (decide_by_mark(task, &decision) || decide_by_escapes(task, &decision)) return decision;
  if (is_binary(evidence) && !evidence.holds(0)) {
    decision.kind = DocumentKind::kBinary;
    return decision;
  }
  if (evidence.has_binary_signature()) {
    decision.kind = DocumentKind::kBinary;
    return decision;
  }
  if (decide_ascii(task, &decision) || decide_utf8(task, &decision)) return decision;
  decide_by_cost(task, &decision);
  if (decision.candidates.empty() && decide_escapeless(task, &decision)) return decision;
  if (decision.candidates.empty() && evidence.holds(0)) decision.kind = DocumentKind::kBinary;
  return decision;
}

void Decider::settle(const Task& task, int charset, std::string_view text, Ground ground,
                     Decision* decision) {
  Reading reading;
  reading.charsets.push_back(charset);
  reading.costs = pricing_.price_utf8(text, task.restrictions.languages);
  weigh_languages(task);
  Candidate candidate = best_of(task, reading, &decision->grounds);
  decision->grounds.ground = ground;
  decision->grounds.misfit = 0;
  candidate.charset = charset;
  candidate.probability = charset_confidence(decision->grounds);
  candidate.language_probability = language_confidence(decision->grounds);
  decision->candidates.push_back(candidate);
}

bool Decider::decide_by_mark(const Task& task, Decision* decision) {
  const char* charset = task.evidence.mark();
  if (charset == nullptr || !task.allows(charset) || !is_valid(task.evidence, charset))
    return false;
  decision->has_mark = true;
  const int index = find_charset_index(charset);
  Conversion text;
  decode_bytes(kCharsets[index],
               task.sample.substr(0, Sample::kHead).substr(task.evidence.mark_length()), &text);
  settle(task, index, text.bytes, Ground::kMark, decision);
  return true;
}

bool Decider::decide_by_escapes(const Task& task, Decision* decision) {
  const char* charset = task.evidence.escapes().charset();
  if (charset == nullptr || !task.allows(charset)) return false;
  const char* language = std::string_view(charset) == "ISO-2022-JP"   ? "ja"
                         : std::string_view(charset) == "ISO-2022-KR" ? "ko"
                                                                      : "zh";
  Candidate candidate;
  candidate.charset = find_charset_index(charset);
  decision->grounds.ground = Ground::kEscapes;
  decision->grounds.length = static_cast<double>(task.sample.size());
  candidate.probability = charset_confidence(decision->grounds);
  const auto& names = tables_.languages();
  const auto at = std::find(names.begin(), names.end(), language);
  if (at != names.end()) candidate.language = static_cast<int>(at - names.begin());
  candidate.language_probability = 1;
  decision->candidates.push_back(candidate);
  return true;
}

bool Decider::decide_ascii(const Task& task, Decision* decision) {
  const Evidence& evidence = task.evidence;
  if (evidence.high() != 0 || evidence.holds(0) || !task.allows(ascii_charset())) return false;
  if (has_many_controls(evidence)) return false;
  settle(task, ascii_charset(), task.sample, Ground::kAscii, decision);
  if (!holds_letters(evidence)) decision->candidates.back().language = -1;
  return true;
}

// ASCII is text of the 7-bit charsets, too, for who wants one of those alone.
bool Decider::decide_escapeless(const Task& task, Decision* decision) {
  const Evidence& evidence = task.evidence;
  if (evidence.high() != 0 || evidence.holds(0)) return false;
  for (const char shift : {'\x0E', '\x0F', '\x1B'}) {
    if (evidence.holds(static_cast<unsigned char>(shift))) return false;
  }
  for (int c = 0; c < kCharsetCount; ++c) {
    if ((kCharsets[c].flags & kSevenBit) == 0 || !task.restrictions.allows_charset(c)) continue;
    if (evidence.holds('~') && std::string_view(kCharsets[c].iana) == "HZ-GB-2312") continue;
    settle(task, c, task.sample, Ground::kAscii, decision);
    return true;
  }
  return false;
}

bool Decider::decide_utf8(const Task& task, Decision* decision) {
  const MultiByteCheck& check = task.evidence.multi_byte(MultiByteKind::kUtf8);
  if (!check.valid() || check.wide() == 0 || task.evidence.holds(0)) return false;
  if (!task.allows(utf8_charset())) return false;
  settle(task, utf8_charset(), task.sample, Ground::kUtf8, decision);
  return true;
}

// Of the charsets that read the document alike, the one that its language is usually written in.
int Decider::name_for(const Reading& reading, int language, const Task& task) const {
  int best = -1;
  double least = 0;
  for (const int charset : reading.charsets) {
    if (!task.restrictions.allows_charset(charset)) continue;
    const double cost = priors_.name(charset, language);
    if (best >= 0 && cost >= least) continue;
    best = charset;
    least = cost;
  }
  return best;
}

// What languages cost before a letter is read, kNoCost for those that are not allowed.
void Decider::weigh_languages(const Task& task) {
  const double scale = temperature(static_cast<double>(task.sample.size()));
  language_priors_.resize(tables_.languages().size());
  for (size_t l = 0; l < language_priors_.size(); ++l) {
    const bool allowed = task.restrictions.allows_language(l);
    language_priors_[l] = allowed ? scale * priors_.language(l) : kNoCost;
  }
}

// REQUIRES: languages were weighed.
Candidate Decider::best_of(const Task& task, const Reading& reading, Grounds* grounds) {
  *grounds = Grounds{};
  grounds->length = static_cast<double>(task.sample.size());
  grounds->high = static_cast<double>(task.high);
  Candidate best;
  best.cost = least_of(reading.costs.data(), reading.costs.size());
  if (best.cost == kNoCost) return best;
  compared_.resize(reading.costs.size());
  const auto& extra = reading.language_extra != nullptr ? *reading.language_extra : no_extra_;
  const TwoLeast two = two_least_sums(reading.costs.data(), extra.data(), language_priors_.data(),
                                      compared_.size(), compared_.data());
  if (two.least == kNoCost) return best;
  best.language = static_cast<int>(place_of(two.least, compared_.data(), compared_.size()));
  best.charset = name_for(reading, best.language, task);
  grounds->language_margin = std::min(two.next - two.least, kMostMargin);
  const double bytes = static_cast<double>(std::max<size_t>(pricing_.priced(), 1));
  grounds->misfit = std::max(best.cost / bytes - kGoodFit, 0.0);
  best.cost += priors_.pair(best.charset, best.language) * prior_weight(task.high);
  return best;
}

void Decider::decide_by_cost(const Task& task, Decision* decision) {
  const auto allowed = [&task](int c) { return task.restrictions.allows_charset(c); };
  find_readings(task.evidence, allowed, false, &readings_);
  if (readings_.empty()) find_readings(task.evidence, allowed, true, &readings_);
  const double weight = prior_weight(task.high);
  for (Reading& reading : readings_) {
    reading.prior = prior_cost(reading.charsets.front()) * weight;
  }
  pricing_.price(task.sample, task.restrictions.languages, &readings_);
  weigh_languages(task);
  std::vector<std::pair<Candidate, Grounds>> ranked;
  ranked.reserve(readings_.size());
  for (const Reading& reading : readings_) {
    if (reading.least == kNoCost) continue;
    Grounds grounds;
    const Candidate candidate = best_of(task, reading, &grounds);
    grounds.ground = ground_of(reading);
    if (candidate.language >= 0) ranked.emplace_back(candidate, grounds);
  }
  if (ranked.empty()) return;
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first.cost < b.first.cost; });
  for (const auto& [candidate, grounds] : ranked) decision->candidates.push_back(candidate);
  decision->grounds = ranked.front().second;
  Candidate& best = decision->candidates.front();
  best.language_probability = language_confidence(decision->grounds);
  if (ranked.size() == 1 && readings_.size() > 1) {
    // None of the others is worth pricing.
    decision->grounds.margin = kMostMargin;
  } else if (ranked.size() == 1) {
    // Where the caller left only one, that it decodes the bytes says little: it has to fit.
    const bool by_itself = task.restrictions.charsets.empty();
    if (by_itself) decision->grounds.ground = Ground::kAlone;
    decision->grounds.margin = by_itself ? 0 : kMostMargin;
  } else {
    decision->grounds.margin = std::min(ranked[1].first.cost - ranked[0].first.cost, kMostMargin);
  }
  share_out(charset_confidence(decision->grounds),
            temperature(static_cast<double>(task.sample.size())), &decision->candidates);
}

}  // namespace orva
