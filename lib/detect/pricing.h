// Pricing: what each reading of a document costs in each language.
//
// The models of a reading's own charsets are asked directly, all in one pass. A language that has
// no model for any of them is asked through another charset that it has one for: the text is
// decoded and written in that charset, where it can hold it. So a language needs a model in one
// charset only, and costs in different charsets stay comparable.
//
// Life cycle: one object for each document or reused; keeps no state between calls.
// Ownership:  tables and scorer are the caller's.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_PRICING_H_
#define ORVA_LIB_DETECT_PRICING_H_

#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/evidence.h"
#include "lib/detect/readings.h"
#include "lib/detect/scorer.h"

namespace orva {

class Pricing {
 public:
  Pricing(const ModelTables& tables, Scorer* scorer);

  // Fills the costs of `readings` of the raw bytes `sample`.
  void price(std::string_view sample, std::vector<Reading>* readings);

  // Costs by language of text that is already UTF-8.
  std::vector<double> price_utf8(std::string_view text);

 private:
  void price_directly(std::string_view text, std::vector<Reading>* readings);
  void price_through(std::string_view sample, std::string_view text, Reading* reading);
  void price_table(std::string_view text, Reading* reading);
  void price_home(int home, std::string_view text, double extra, Reading* reading);
  void add_costs(int charset, const std::vector<double>& totals, double extra, Reading* reading);
  std::vector<double> totals(std::string_view text);

  const ModelTables& tables_;
  Scorer& scorer_;
  // The charset through which a language is asked; -1 when it has no model of a usable kind.
  std::vector<int> home_of_language_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_PRICING_H_
