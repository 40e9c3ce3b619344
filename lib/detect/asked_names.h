// The charsets that a caller lists, by whatever names, and what the answer then calls them: the
// caller's own names, so that an answer can be looked up in the list that was given.
//
//   orva::AskedNames asked;
//   if (asked.set(names, count) && asked.holds(charset)) puts(asked.spelling(charset, false));
//
// "UTF-16" and "UTF-32" stand for both byte orders.
//
// Life cycle: set replaces the list; an empty one asks for nothing.
// Ownership:  its own copies of the names, which stay where they are as long as the object lives.
#ifndef ORVA_LIB_DETECT_ASKED_NAMES_H_
#define ORVA_LIB_DETECT_ASKED_NAMES_H_

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orva {

class AskedNames {
 public:
  // False when one is unknown; then the list stays as it was.
  bool set(const std::vector<std::string_view>& names);

  bool empty() const { return spellings_.empty(); }
  bool holds(int charset) const;
  // What the caller calls `charset`; null when it is not listed. A name for both byte orders names
  // an answer only where a mark tells which one it is.
  const char* spelling(int charset, bool has_mark) const;

 private:
  struct Spelling {
    const char* name = nullptr;
    bool both_orders = false;
  };

  const char* keep(std::string_view name);

  std::vector<Spelling> spellings_;  // by index in the charset table
  std::set<std::string, std::less<>> kept_;
};

// The index of a language that is named as people name languages: "pt", "PT", "pt-BR",
// "pt_BR.UTF-8", and by the codes that were replaced or that stand for what is written. -1 when it
// is not among `languages`.
int find_language(const std::vector<std::string>& languages, std::string_view name);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_ASKED_NAMES_H_
