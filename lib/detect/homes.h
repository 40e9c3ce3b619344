// Homes: the one model through which each language is asked, and the models of a charset together.
//
// Each part is made from the group's trigrams when it is first asked for: few programs ask for all.
//
// Life cycle: what the constructor chose is constant.
// Ownership:  belongs to its ModelTables, which must stay.
// Threads:    any number may ask.
#ifndef ORVA_LIB_DETECT_HOMES_H_
#define ORVA_LIB_DETECT_HOMES_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "lib/detect/home_forms.h"
#include "lib/detect/home_models.h"
#include "lib/detect/lazy.h"
#include "lib/detect/least.h"
#include "lib/detect/letter_costs.h"
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
  HomeForms forms;
  HomeModels models;        // in the order of `languages`
  size_t first_column = 0;  // among the columns of all homes, in which each has its models' width

  // As many as languages, or one more: costs are compared two at a time.
  size_t nb_columns() const { return (languages.size() + 1) / 2 * 2; }
};

// What a reading can be in: languages, and the homes that have any of them.
struct PossibleLanguages {
  uint32_t scripts = 0;     // a bit for each that it can be written in
  std::vector<char> marks;  // by language
  std::vector<size_t> homes;
  std::vector<double> barred;  // by column of all homes: 0, or kNoCost
};

class Homes {
 public:
  explicit Homes(const ModelTables& tables);

  const std::vector<Home>& all() const { return single_byte().homes; }
  // The languages that have a home, and what ASCII costs in them.
  const std::vector<size_t>& languages() const { return languages_; }
  const HomeModels& ascii() const { return single_byte().ascii; }
  const LetterCosts& letters() const { return single_byte().letters; }
  // The models of UTF-8, and those of charsets that keep ASCII and take bytes together.
  const ListedModels& utf8() const;
  const ListedModels& pairs() const;
  // Of all homes.
  size_t nb_columns() const { return single_byte().nb_columns; }
  // The letters of a charset that a home lacks; those of the next home follow. REQUIRES: a
  // single-byte one that keeps ASCII.
  const HighBytes& missing(int charset, size_t home) const {
    return single_byte().missing[static_cast<size_t>(charset) * all().size() + home];
  }
  // How texts of a single-byte charset are written, by home. Made at their first use.
  const std::vector<Rewriting>& rewritings(int charset) const;
  // The languages of the scripts, of those that `allowed`, by index, allows; empty allows all.
  PossibleLanguages possible(uint32_t scripts, const std::vector<char>& allowed) const;
  // By language.
  const std::vector<Script>& scripts() const { return scripts_; }

 private:
  // Where the trigrams of an accumulator go: to a column of a home, and to one of ascii().
  struct Column {
    size_t home = 0;
    size_t own = 0;
    size_t all = 0;
  };

  struct SingleByte {
    std::vector<Home> homes;
    HomeModels ascii;
    LetterCosts letters;
    size_t nb_columns = 0;
    std::vector<HighBytes> missing;  // by charset and home
  };

  const SingleByte& single_byte() const;
  std::unique_ptr<const SingleByte> make_single_byte() const;
  static void find_missing(SingleByte* made);
  const ListedModels& listed(bool unicode, const Lazy<ListedModels>& lazy) const;
  std::unique_ptr<const ListedModels> make_listed(bool unicode) const;

  const ModelTables& tables_;
  std::vector<size_t> languages_;
  std::vector<int> models_;  // the homes of `languages_`
  std::vector<Script> scripts_;
  Lazy<SingleByte> single_byte_;
  Lazy<ListedModels> utf8_;
  Lazy<ListedModels> pairs_;
  std::unique_ptr<Lazy<std::vector<Rewriting>>[]> rewritings_;  // by charset, then by home
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_HOMES_H_
