#include "lib/detect/ascii_pricing.h"

#include <algorithm>
#include <utility>

#include "lib/detect/byte_blocks.h"
#include "lib/detect/focus.h"
#include "lib/detect/readings.h"

namespace orva {

namespace {

// What it costs that a document's ASCII is in another language.
constexpr double kOtherAscii = 6;
// The same, when the document's language is written in another script.
constexpr double kOtherScript = 4;

// Bytes of a piece, and how many of them are asked about first; then twice as much each time.
constexpr size_t kPiece = 64;
constexpr size_t kFirst = 4;

}  // namespace

AsciiPricing::AsciiPricing(const ModelTables& tables)
    : homes_(tables.homes()),
      base_(tables.languages().size(), kNoCost),
      extra_(tables.languages().size(), 0) {
  for (const size_t l : homes_.languages()) {
    const Script script = homes_.scripts()[l];
    latin_.push_back(script == kLatin || script == kAnyScript);
  }
}

// Feeds every `step`th piece, from the `first` one on.
void AsciiPricing::feed(size_t first, size_t step) {
  for (size_t from = first * kPiece; from < plain_.size(); from += step * kPiece) {
    const std::string_view to_its_end = plain_.substr(0, from + kPiece);
    // No trigram of ASCII alone holds what stands between two runs of it.
    for (size_t at = context_before(plain_, from); at < to_its_end.size();) {
      const size_t end = skip_ascii(to_its_end, at);
      if (end - at > 2) sums_.add(to_its_end.substr(at, end - at), std::max(from, at) - at);
      at = skip_high(to_its_end, end);
    }
    fed_ += to_its_end.size() - from;
  }
}

// Whether more of the text would change nothing.
bool AsciiPricing::is_told() const {
  double least = kNoCost;
  double next = kNoCost;
  for (size_t i = 0; i < latin_.size(); ++i) {
    if (!latin_[i]) continue;
    double cost = sums_.total(i);
    if (cost < least) std::swap(cost, least);
    next = std::min(next, cost);
  }
  return next >= least + margin_;
}

void AsciiPricing::start(std::string_view plain) {
  plain_ = plain;
  sums_.start(homes_.ascii());
  step_ = 1;
  while (step_ * kFirst * kPiece < plain.size()) step_ *= 2;
  fed_ = 0;
  feed(0, step_);
  set_costs();
}

bool AsciiPricing::finish() {
  if (step_ == 1 || is_told()) return false;
  for (; step_ > 1 && !is_told(); step_ /= 2) feed(step_ / 2, step_);
  set_costs();
  return true;
}

// ASCII within a document may be markup, code or English whatever the document's language is. So it
// costs a charset hardly more than in the language that it fits best, and says nothing at all about
// languages of other scripts.
void AsciiPricing::set_costs() {
  const double stretch =
      fed_ == plain_.size() ? 1 : static_cast<double>(plain_.size()) / static_cast<double>(fed_);
  const std::vector<size_t>& languages = homes_.languages();
  least_ = kNoCost;
  for (size_t i = 0; i < languages.size(); ++i) least_ = std::min(least_, sums_.total(i) * stretch);
  for (size_t i = 0; i < languages.size(); ++i) {
    const size_t l = languages[i];
    const double cost = latin_[i] ? sums_.total(i) * stretch : least_ + kOtherScript;
    base_[l] = std::min(cost, least_ + kOtherAscii);
    extra_[l] = cost - base_[l];
  }
}

}  // namespace orva
