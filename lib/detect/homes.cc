#include "lib/detect/homes.h"

#include <algorithm>
#include <utility>

#include "lib/detect/charset_table.h"

namespace orva {

namespace {

// Which model a language is asked through: a single-byte one before its UTF-8 one.
int home_rank(int charset) {
  if (charset < 0) return 0;
  if (kCharsets[charset].flags == 0 || charset == find_charset_index("US-ASCII")) return 0;
  if (charset == find_charset_index("UTF-8")) return 1;
  const bool plain =
      single_byte_table(charset) != nullptr && (kCharsets[charset].flags & kAsciiCompatible) != 0;
  return plain ? 2 : 0;
}

// The models of the multi-byte charsets that keep ASCII: those of Unicode, or all others.
std::vector<int> multi_byte_models(const ModelTables& tables, bool unicode) {
  constexpr uint32_t kBoth = kMultiByte | kMarkupSafe;
  std::vector<int> models;
  for (int i = 0; i < tables.nb_models(); ++i) {
    const int charset = tables.model(i).charset;
    if (charset < 0) continue;
    const uint32_t flags = kCharsets[charset].flags;
    if ((flags & kBoth) == kBoth && ((flags & kUnicode) != 0) == unicode) models.push_back(i);
  }
  return models;
}

}  // namespace

Homes::Homes(const ModelTables& tables) {
  std::vector<int> home_model(tables.languages().size(), -1);
  for (int i = 0; i < tables.nb_models(); ++i) {
    int& home = home_model[static_cast<size_t>(tables.model(i).language)];
    const int rank = home_rank(tables.model(i).charset);
    if (rank > (home < 0 ? 0 : home_rank(tables.model(home).charset))) home = i;
  }
  std::vector<int> charsets;  // each once
  std::vector<int> models;
  for (size_t l = 0; l < home_model.size(); ++l) {
    scripts_.push_back(script_of_language(tables.languages()[l]));
    if (home_model[l] < 0) continue;
    languages_.push_back(l);
    models.push_back(home_model[l]);
    const int charset = tables.model(home_model[l]).charset;
    if (std::find(charsets.begin(), charsets.end(), charset) == charsets.end()) {
      charsets.push_back(charset);
    }
  }
  ascii_ = std::make_unique<HomeModels>(tables, models, HomeModels::kAsciiOnly);
  std::vector<Column> columns(static_cast<size_t>(tables.nb_indices()));
  for (const int charset : charsets) {
    std::vector<size_t> own;
    std::vector<int> own_models;
    for (size_t i = 0; i < languages_.size(); ++i) {
      const ModelInfo& info = tables.model(models[i]);
      if (info.charset != charset) continue;
      const Column column = {homes_.size(), own.size(), i};
      columns[static_cast<size_t>(models[i])] = column;
      if (info.fact >= 0) columns[static_cast<size_t>(info.fact)] = column;
      own.push_back(languages_[i]);
      own_models.push_back(models[i]);
    }
    homes_.push_back({charset, std::move(own), HomeAlphabet(single_byte_table(charset)),
                      HomeModels(tables, own_models, HomeModels::kAnyBytes)});
  }
  utf8_ = std::make_unique<ListedModels>(tables, multi_byte_models(tables, true));
  pairs_ = std::make_unique<ListedModels>(tables, multi_byte_models(tables, false));
  add_trigrams(tables, columns);
  rewritings_ = std::make_unique<Rewritings[]>(static_cast<size_t>(kCharsetCount));
}

const std::vector<Rewriting>& Homes::rewritings(int charset) const {
  Rewritings& all = rewritings_[static_cast<size_t>(charset)];
  std::call_once(all.made, [&] {
    std::vector<Rewriting> made;
    for (const Home& h : homes_) made.emplace_back(alphabet_of(charset), h.alphabet);
    all.in_home = std::move(made);
  });
  return all.in_home;
}

PossibleLanguages Homes::possible(uint32_t scripts, const std::vector<char>& allowed) const {
  PossibleLanguages possible;
  possible.scripts = scripts;
  for (size_t l = 0; l < scripts_.size(); ++l) {
    const bool can = (scripts & script_bit(scripts_[l])) != 0;
    possible.marks.push_back(can && (allowed.empty() || allowed[l] != 0) ? 1 : 0);
  }
  for (size_t h = 0; h < homes_.size(); ++h) {
    const std::vector<size_t>& languages = homes_[h].languages;
    const bool any = std::any_of(languages.begin(), languages.end(),
                                 [&](size_t l) { return possible.marks[l] != 0; });
    if (any) possible.homes.push_back(h);
  }
  return possible;
}

void Homes::add_trigrams(const ModelTables& tables, const std::vector<Column>& columns) {
  const auto visit = [&](unsigned char a, unsigned char b, unsigned char c, int leaf) {
    const uint32_t trigram = trigram_of(a, b, c);
    int count = 0;
    const uint16_t* values = tables.leaf_values(leaf, &count);
    for (int v = 0; v < count; ++v) {
      const int index = value_index(values[v]);
      const int q = value_cost(values[v]);
      utf8_->set(trigram, index, q);
      pairs_->set(trigram, index, q);
      const Column& column = columns[static_cast<size_t>(index)];
      if (column.home == Column::kNone) continue;
      homes_[column.home].models.set(trigram, column.own, q);
      if ((a | b | c) < 0x80) ascii_->set(trigram, column.all, q);
    }
  };
  tables.for_each_trigram(visit);
  for (Home& home : homes_) home.models.finish();
  ascii_->finish();
  utf8_->finish();
  pairs_->finish();
}

}  // namespace orva
