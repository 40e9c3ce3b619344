// Pricing: what each reading of a document costs in each language.
//
// A language is asked through one model of its own, its home: a reading of the document is decoded
// and written in the home's charset. So costs differ by what the readings differ in and by nothing
// else: a language needs a model in one charset only, and how well the models of two charsets
// happen to be trained does not matter. Readings of multi-byte charsets are asked through the
// models of the charset itself. What every reading has in common, trigrams of ASCII alone, is
// priced once.
//
// Life cycle: one object for each detector; keeps nothing of a document but the costs of its ASCII.
// Ownership:  the tables are the caller's.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_PRICING_H_
#define ORVA_LIB_DETECT_PRICING_H_

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/ascii_pricing.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/homes.h"
#include "lib/detect/readings.h"
#include "lib/detect/screening.h"
#include "lib/detect/trials.h"
#include "lib/detect/utf8_pricing.h"

namespace orva {

class Pricing {
 public:
  explicit Pricing(const ModelTables& tables);

  // Fills the costs of `readings` of the raw bytes `sample`, in the languages that `languages`, by
  // index, allows; empty allows all.
  void price(std::string_view sample, const std::vector<char>& languages, Pool<Reading>* readings);

  // Costs by language of text that is already UTF-8, read to its end unless it costs far more than
  // `most`.
  std::vector<double> price_utf8(std::string_view text, const std::vector<char>& languages,
                                 double most = kNoCost);

  // Bytes of the last sample that was priced.
  size_t priced() const { return priced_; }

 private:
  void mark_possible(const ByteCounts& counts, Reading* reading);
  // The languages of the scripts, found once for all documents with the same restrictions.
  const PossibleLanguages& possible(uint32_t scripts);
  static void drop_impossible(Reading* reading);
  void price_whole(std::string_view sample, double most, Reading* reading) const;
  void price_whole_part(std::string_view sample, Reading* reading) const;
  void price_pairs(const ListedModels& models, const std::vector<double>& totals, double stretch,
                   Reading* reading) const;
  double price_modelled(const TrialText& text, Pool<Reading>* readings);
  void price_single_bytes(const TrialText& text, double rival, Pool<Reading>* readings);
  // How much each reading costs by its letters; what is beyond the limit that is returned is not
  // worth asking about.
  double screen(const TrialText& text, double rival, const Pool<Reading>& readings);
  void ask(const TrialText& text, double limit, double rival, Pool<Reading>* readings);
  bool fits(const TrialText& text, const Pool<Reading>& readings) const;
  void price_others(std::string_view sample, const TrialText& text, Pool<Reading>* readings);
  bool is_latin(const Pool<Reading>& readings) const;
  void finish_ascii(Pool<Reading>* readings);
  void begin(const TrialText& text, Reading* reading);
  void price_decoded(std::string_view sample, double most, Reading* reading);
  void price_decoded_part(const Charset& charset, std::string_view part, double most,
                          Reading* reading);

  size_t priced_ = 0;
  const ModelTables& tables_;
  const Homes& homes_;
  const std::vector<double> no_costs_;  // by language
  AsciiPricing ascii_;                  // of the last sample
  // Which languages the caller allows, and what that leaves for each set of scripts.
  std::vector<char> languages_;
  std::deque<PossibleLanguages> possible_;
  // Of the last sample: without markup, normalised, and cut into pieces.
  TextBuffer main_;
  TextBuffer plain_;
  TrialText text_;
  Screening screening_;
  std::vector<double> screened_;  // by reading
  Trials trials_;
  // Made when they are first needed, with what they are made of.
  std::optional<ListedSums> pair_sums_;
  std::optional<Utf8Pricing> utf8_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_PRICING_H_
