// AsciiPricing: what the ASCII of a document costs in each language, when the document is in a
// charset that keeps ASCII and all readings have it in common.
//
// The models are asked about a little of it, taken from all over the text, then twice as much, and
// so on, until one language is far ahead of the others.
//
// Life cycle: start for each text, then finish where it matters; the costs are those so far.
// Ownership:  the tables are the caller's.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_ASCII_PRICING_H_
#define ORVA_LIB_DETECT_ASCII_PRICING_H_

#include <cstddef>
#include <string_view>
#include <vector>

#include "lib/detect/homes.h"
#include "lib/detect/model_tables.h"

namespace orva {

class AsciiPricing {
 public:
  explicit AsciiPricing(const ModelTables& tables);

  // Prices a text by a little of it, which will do for languages of other scripts than the Latin
  // one. `plain` must stay until finish.
  void start(std::string_view plain);
  // Asks about as much as tells the languages apart; false if nothing was left to ask.
  bool finish();
  // By language: what the trigrams of ASCII alone cost a charset, and what they cost the language
  // beyond that.
  const std::vector<double>& base() const { return base_; }
  const std::vector<double>& extra() const { return extra_; }
  // What they cost a charset at least.
  double least() const { return least_; }
  // How far a language must be ahead of the others, in nats; infinity asks about all of the text.
  void set_margin(double nats) { margin_ = nats; }

 private:
  void feed(size_t first, size_t step);
  bool is_told() const;
  void set_costs();

  const Homes& homes_;
  std::vector<bool> latin_;  // by column: ASCII says something about the language
  std::string_view plain_;
  size_t step_ = 1;  // pieces so far apart were asked about
  size_t fed_ = 0;   // bytes of them
  CostSums sums_;
  double margin_ = 80;
  double least_ = 0;
  std::vector<double> base_;
  std::vector<double> extra_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_ASCII_PRICING_H_
