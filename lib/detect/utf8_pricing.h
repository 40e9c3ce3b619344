// Utf8Pricing: what a text in UTF-8 costs in each language that has a model for it.
//
// The models are asked about a little of the text, taken from all over it, then twice as much, and
// so on, until one language is far ahead of the others, or all are so far behind that the
// text is none. So a long text costs hardly more time than a short one.
//
// Life cycle: one object for each detector; keeps no state between calls.
// Ownership:  the tables are the caller's.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_UTF8_PRICING_H_
#define ORVA_LIB_DETECT_UTF8_PRICING_H_

#include <string_view>
#include <vector>

#include "lib/detect/homes.h"
#include "lib/detect/model_tables.h"
#include "lib/detect/text_buffer.h"

namespace orva {

class Utf8Pricing {
 public:
  explicit Utf8Pricing(const ModelTables& tables);

  // Costs of all of `text`, by language, in those that `languages`, by index, allows; empty allows
  // all. A text that costs far more than `most` in all of them is not read to its end.
  std::vector<double> price(std::string_view text, const std::vector<char>& languages, double most);
  // How far a language must be ahead of the others, in nats; infinity asks about all of the text.
  void set_margin(double nats) { margin_ = nats; }

 private:
  std::vector<double> costs_so_far();
  bool is_told(const std::vector<double>& costs, double most) const;

  size_t language_of(size_t column) const {
    return static_cast<size_t>(models_.info(column).language);
  }

  const ModelTables& tables_;
  const ListedModels& models_;
  ListedSums sums_;
  // Of the text: without markup, in small letters, normalised.
  TextBuffer main_;
  TextBuffer small_;
  TextBuffer plain_;
  std::vector<size_t> columns_;  // of the models of languages that it can be in
  double margin_ = 80;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_UTF8_PRICING_H_
