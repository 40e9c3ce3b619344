#include "lib/detect/homes.h"

#include <malloc.h>

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

// Calls use(trigram, index, q) for what the accumulators with a mark know, in the trigrams' order.
template <typename Use>
void for_each_value(const ModelTables& tables, const std::vector<char>& marks, Use use) {
  tables.for_each_trigram([&](unsigned char a, unsigned char b, unsigned char c, int leaf) {
    int count = 0;
    const uint16_t* values = tables.leaf_values(leaf, &count);
    for (int v = 0; v < count; ++v) {
      const auto index = static_cast<size_t>(value_index(values[v]));
      if (marks[index] == 0) continue;
      use(trigram_of(a, b, c), index, static_cast<int>(value_cost(values[v])));
    }
  });
}

// Of the models and their fact sets.
std::vector<char> marks_of(const ModelTables& tables, const std::vector<int>& models) {
  std::vector<char> marks(static_cast<size_t>(tables.nb_indices()), 0);
  for (const int m : models) {
    const int fact = tables.model(m).fact;
    marks[static_cast<size_t>(m)] = 1;
    if (fact >= 0) marks[static_cast<size_t>(fact)] = 1;
  }
  return marks;
}

// Making a table takes several times the memory that it keeps, of which the C library would not
// return most.
void return_memory() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

}  // namespace

Homes::Homes(const ModelTables& tables) : tables_(tables) {
  std::vector<int> home_model(tables.languages().size(), -1);
  for (int i = 0; i < tables.nb_models(); ++i) {
    int& home = home_model[static_cast<size_t>(tables.model(i).language)];
    const int rank = home_rank(tables.model(i).charset);
    if (rank > (home < 0 ? 0 : home_rank(tables.model(home).charset))) home = i;
  }
  for (size_t l = 0; l < home_model.size(); ++l) {
    scripts_.push_back(script_of_language(tables.languages()[l]));
    if (home_model[l] < 0) continue;
    languages_.push_back(l);
    models_.push_back(home_model[l]);
  }
  rewritings_ =
      std::make_unique<Lazy<std::vector<Rewriting>>[]>(static_cast<size_t>(kCharsetCount));
}

const Homes::SingleByte& Homes::single_byte() const {
  return single_byte_.get([this] {
    auto made = make_single_byte();
    return_memory();
    return made;
  });
}

const ListedModels& Homes::listed(bool unicode, const Lazy<ListedModels>& lazy) const {
  return lazy.get([this, unicode] {
    auto made = make_listed(unicode);
    return_memory();
    return made;
  });
}

const ListedModels& Homes::utf8() const { return listed(true, utf8_); }

const ListedModels& Homes::pairs() const { return listed(false, pairs_); }

std::unique_ptr<const Homes::SingleByte> Homes::make_single_byte() const {
  auto made = std::make_unique<SingleByte>(
      SingleByte{{}, HomeModels(tables_, models_, HomeModels::kAsciiOnly), {}, 0, {}});
  std::vector<int> charsets;  // each once
  for (const int m : models_) {
    const int charset = tables_.model(m).charset;
    if (std::find(charsets.begin(), charsets.end(), charset) == charsets.end()) {
      charsets.push_back(charset);
    }
  }
  std::vector<Column> columns(static_cast<size_t>(tables_.nb_indices()));
  for (const int charset : charsets) {
    std::vector<size_t> own;
    std::vector<int> own_models;
    for (size_t i = 0; i < languages_.size(); ++i) {
      const ModelInfo& info = tables_.model(models_[i]);
      if (info.charset != charset) continue;
      const Column column = {made->homes.size(), own.size(), i};
      columns[static_cast<size_t>(models_[i])] = column;
      if (info.fact >= 0) columns[static_cast<size_t>(info.fact)] = column;
      own.push_back(languages_[i]);
      own_models.push_back(models_[i]);
    }
    const HomeAlphabet alphabet(single_byte_table(charset));
    HomeModels models(tables_, own_models, HomeModels::kAnyBytes);
    const size_t width = models.width();
    made->homes.push_back({charset, std::move(own), alphabet, HomeForms(alphabet, models.folding()),
                           std::move(models), made->nb_columns});
    made->nb_columns += width;
  }
  for_each_value(tables_, marks_of(tables_, models_), [&](uint32_t trigram, size_t index, int q) {
    const Column& column = columns[index];
    made->homes[column.home].models.set(trigram, column.own, q);
    if ((trigram & 0x808080U) == 0) made->ascii.set(trigram, column.all, q);
  });
  for (Home& home : made->homes) home.models.finish();
  made->ascii.finish();
  made->letters = LetterCosts(tables_, made->homes);
  find_missing(made.get());
  return made;
}

void Homes::find_missing(SingleByte* made) {
  for (int c = 0; c < kCharsetCount; ++c) {
    for (const Home& home : made->homes) {
      HighBytes& missing = made->missing.emplace_back();
      if (single_byte_table(c) == nullptr) continue;
      const LetterCodes& codes = letter_codes_of(c);
      for (int b = 0x80; b < 256; ++b) {
        const auto byte = static_cast<unsigned char>(b);
        if (codes.is_letter(byte) && home.forms.lacks(codes.of(byte))) missing.add(byte);
      }
    }
  }
}

std::unique_ptr<const ListedModels> Homes::make_listed(bool unicode) const {
  const std::vector<int> models = multi_byte_models(tables_, unicode);
  auto made = std::make_unique<ListedModels>(tables_, models);
  for_each_value(tables_, marks_of(tables_, models), [&](uint32_t trigram, size_t index, int q) {
    made->set(trigram, static_cast<int>(index), q);
  });
  made->finish();
  return made;
}

const std::vector<Rewriting>& Homes::rewritings(int charset) const {
  return rewritings_[static_cast<size_t>(charset)].get([&] {
    auto made = std::make_unique<std::vector<Rewriting>>();
    for (const Home& home : all()) made->emplace_back(alphabet_of(charset), home.alphabet);
    return made;
  });
}

PossibleLanguages Homes::possible(uint32_t scripts, const std::vector<char>& allowed) const {
  PossibleLanguages possible;
  possible.scripts = scripts;
  for (size_t l = 0; l < scripts_.size(); ++l) {
    const bool can = (scripts & script_bit(scripts_[l])) != 0;
    possible.marks.push_back(can && (allowed.empty() || allowed[l] != 0) ? 1 : 0);
  }
  const std::vector<Home>& homes = all();
  for (size_t h = 0; h < homes.size(); ++h) {
    const std::vector<size_t>& languages = homes[h].languages;
    const bool any = std::any_of(languages.begin(), languages.end(),
                                 [&](size_t l) { return possible.marks[l] != 0; });
    if (any) possible.homes.push_back(h);
    const size_t from = possible.barred.size();
    possible.barred.resize(from + homes[h].models.width(), kNoCost);
    for (size_t i = 0; i < languages.size(); ++i) {
      if (possible.marks[languages[i]] != 0) possible.barred[from + i] = 0;
    }
  }
  return possible;
}

}  // namespace orva
