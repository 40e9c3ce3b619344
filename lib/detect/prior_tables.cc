#include "lib/detect/prior_tables.h"

#include <set>
#include <string_view>
#include <utility>

#include "lib/detect/charset_table.h"
#include "lib/detect/priors.h"

namespace orva {

namespace {

// Nats that a model is worth.
constexpr double kHasModel = 3;

// The Windows superset of an ISO charset and the other way round; -1 for none.
int sibling(std::string_view name) {
  constexpr const char* kPairs[][2] = {
      {"ISO-8859-1", "windows-1252"}, {"ISO-8859-7", "windows-1253"},
      {"ISO-8859-8", "windows-1255"}, {"ISO-8859-9", "windows-1254"},
      {"TIS-620", "windows-874"},     {"KOI8-R", "KOI8-U"}};
  for (const auto& pair : kPairs) {
    if (name == pair[0]) return find_charset_index(pair[1]);
    if (name == pair[1]) return find_charset_index(pair[0]);
  }
  return -1;
}

}  // namespace

PriorTables::PriorTables(const ModelTables& tables) {
  for (const std::string& name : tables.languages()) languages_.push_back(language_prior(name));
  std::set<std::pair<int, int>> modelled;
  for (int i = 0; i < tables.nb_models(); ++i) {
    modelled.emplace(tables.model(i).charset, tables.model(i).language);
  }
  for (int c = 0; c < kCharsetCount; ++c) {
    const int other = sibling(kCharsets[c].iana);
    for (int l = 0; l < static_cast<int>(languages_.size()); ++l) {
      const auto& name = tables.languages()[static_cast<size_t>(l)];
      pairs_.push_back(prior_cost(c) + mismatch_cost(c, name));
      const bool known =
          modelled.count({c, l}) != 0 || (other >= 0 && modelled.count({other, l}) != 0);
      names_.push_back(pairs_.back() - (known ? kHasModel : 0));
    }
  }
}

}  // namespace orva
