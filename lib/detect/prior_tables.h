// PriorTables: the priors of all pairs of a charset and a language of the models, looked up.
//
// Life cycle: made whole by the constructor, constant from then on.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_PRIOR_TABLES_H_
#define ORVA_LIB_DETECT_PRIOR_TABLES_H_

#include <cstddef>
#include <vector>

#include "lib/detect/model_tables.h"

namespace orva {

class PriorTables {
 public:
  explicit PriorTables(const ModelTables& tables);

  // Nats for a charset with a language; both are indices.
  double pair(int charset, int language) const { return pairs_[at(charset, language)]; }
  // The same, less where a model shows that documents of the language are in the charset or in the
  // one that differs from it in a few signs.
  double name(int charset, int language) const { return names_[at(charset, language)]; }
  // In units of the detector's doubt.
  double language(size_t language) const { return languages_[language]; }

 private:
  size_t at(int charset, int language) const {
    return static_cast<size_t>(charset) * languages_.size() + static_cast<size_t>(language);
  }

  std::vector<double> languages_;
  std::vector<double> pairs_;
  std::vector<double> names_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_PRIOR_TABLES_H_
