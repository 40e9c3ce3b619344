// Homes: the one model through which each language is asked, and the models of a charset together.
//
// Life cycle: made whole by the constructor, constant from then on.
// Ownership:  belongs to its ModelTables.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_HOMES_H_
#define ORVA_LIB_DETECT_HOMES_H_

#include <memory>
#include <mutex>
#include <vector>

#include "lib/detect/home_models.h"
#include "lib/detect/listed_models.h"
#include "lib/detect/model_tables.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/scripts.h"

namespace orva {

// The languages whose home has one charset.
struct Home {
  int charset;
  std::vector<size_t> languages;
  HomeAlphabet alphabet;
  HomeModels models;  // in the order of `languages`
};

// What a reading can be in: languages, and the homes that have any of them.
struct PossibleLanguages {
  uint32_t scripts = 0;     // a bit for each that it can be written in
  std::vector<char> marks;  // by language
  std::vector<size_t> homes;
};

class Homes {
 public:
  explicit Homes(const ModelTables& tables);

  const std::vector<Home>& all() const { return homes_; }
  // The languages that have a home, and what ASCII costs in them.
  const std::vector<size_t>& languages() const { return languages_; }
  const HomeModels& ascii() const { return *ascii_; }
  // The models of UTF-8, and those of charsets that keep ASCII and take bytes together.
  const ListedModels& utf8() const { return *utf8_; }
  const ListedModels& pairs() const { return *pairs_; }
  // How texts of a single-byte charset are written, by home. Made at their first use.
  const std::vector<Rewriting>& rewritings(int charset) const;
  // The languages of the scripts, of those that `allowed`, by index, allows; empty allows all.
  PossibleLanguages possible(uint32_t scripts, const std::vector<char>& allowed) const;
  // By language.
  const std::vector<Script>& scripts() const { return scripts_; }

 private:
  // Where the trigrams of an accumulator go: to a column of a home, and to one of ascii().
  struct Column {
    static constexpr size_t kNone = ~size_t{0};
    size_t home = kNone;
    size_t own = 0;
    size_t all = 0;
  };

  // The rewritings of one charset, by home.
  struct Rewritings {
    std::once_flag made;
    std::vector<Rewriting> in_home;
  };

  void add_trigrams(const ModelTables& tables, const std::vector<Column>& columns);

  std::vector<Home> homes_;
  std::vector<size_t> languages_;
  std::unique_ptr<HomeModels> ascii_;
  std::unique_ptr<ListedModels> utf8_;
  std::unique_ptr<ListedModels> pairs_;
  std::vector<Script> scripts_;
  std::unique_ptr<Rewritings[]> rewritings_;  // by charset
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_HOMES_H_
