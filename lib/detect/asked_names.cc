#include "lib/detect/asked_names.h"

#include <algorithm>
#include <utility>

#include "lib/detect/charset_table.h"

namespace orva {

namespace {

// The positions of what a name stands for; none when it is unknown.
std::vector<int> charsets_of(std::string_view name) {
  const int index = find_charset_index(name);
  if (index >= 0) return {index};
  const Charset* family = find_family(name);
  if (family == nullptr) return {};
  std::vector<int> members;
  for (const char* order : {"LE", "BE"}) {
    members.push_back(find_charset_index(std::string(family->iana) + order));
  }
  return members;
}

struct OtherCode {
  std::string_view code;
  std::string_view language;
};
// Source: ISO 639-1, its withdrawn codes, and the codes of the written forms of one language.
constexpr OtherCode kOtherCodes[] = {{"nb", "no"}, {"nn", "no"}, {"iw", "he"},  {"in", "id"},
                                     {"ji", "yi"}, {"mo", "ro"}, {"fil", "tl"}, {"jp", "ja"}};

}  // namespace

bool AskedNames::set(const std::vector<std::string_view>& names) {
  std::vector<Spelling> fresh(names.empty() ? 0 : static_cast<size_t>(kCharsetCount));
  for (const std::string_view name : names) {
    const std::vector<int> found = charsets_of(name);
    if (found.empty()) return false;
    for (const int charset : found) {
      Spelling& spelling = fresh[static_cast<size_t>(charset)];
      // The first name counts, but one that fits better than a name for both byte orders.
      if (spelling.name != nullptr && (found.size() > 1 || !spelling.both_orders)) continue;
      spelling = {keep(name), found.size() > 1};
    }
  }
  spellings_ = std::move(fresh);
  return true;
}

bool AskedNames::holds(int charset) const {
  return !empty() && spellings_[static_cast<size_t>(charset)].name != nullptr;
}

const char* AskedNames::spelling(int charset, bool has_mark) const {
  if (!holds(charset)) return nullptr;
  const Spelling& spelling = spellings_[static_cast<size_t>(charset)];
  return spelling.both_orders && !has_mark ? nullptr : spelling.name;
}

const char* AskedNames::keep(std::string_view name) { return kept_.emplace(name).first->c_str(); }

int find_language(const std::vector<std::string>& languages, std::string_view name) {
  std::string code(name.substr(0, name.find_first_of("-_.@")));
  for (char& c : code) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  auto at = std::find(languages.begin(), languages.end(), code);
  for (const OtherCode& other : kOtherCodes) {
    if (at == languages.end() && other.code == code) {
      at = std::find(languages.begin(), languages.end(), other.language);
    }
  }
  return at == languages.end() ? -1 : static_cast<int>(at - languages.begin());
}

}  // namespace orva
