// Scripts: which letters a language is written in, and which letters a charset holds.
//
//   if (orva::can_write(charset, orva::script_of_language("ru"))) ...
//
// Threads:    any number.
#ifndef ORVA_LIB_DETECT_SCRIPTS_H_
#define ORVA_LIB_DETECT_SCRIPTS_H_

#include <cstdint>
#include <string_view>

namespace orva {

enum Script {
  kLatin,
  kGreek,
  kCyrillic,
  kHebrew,
  kArabic,
  kThai,
  kDevanagari,
  kArmenian,
  kGeorgian,
  kChinese,
  kJapanese,
  kKorean,
  kAnyScript,  // of languages that are not known here; the number of the others, too
};

inline constexpr uint32_t kAllScripts = (1U << (kAnyScript + 1)) - 1;

constexpr uint32_t script_bit(Script script) { return 1U << script; }

// A bit for each script that a letter can be of.
uint32_t scripts_of_letter(uint32_t value);

// The script of a language by its two-letter code.
Script script_of_language(std::string_view language);

// Whether `name` is one of `names`, which stand a blank apart.
bool is_listed(std::string_view names, std::string_view name);

// Whether a document in `charset` can be in a language of `script`. Any charset that holds ASCII
// can be English; one made for Chinese is not used for Russian, though it holds Cyrillic letters.
bool can_write(int charset, Script script);
// A bit for each script that a document in `charset` can be in a language of, kAnyScript included.
uint32_t written_scripts(int charset);

// How many letters of each script a text holds. A Chinese character or a Korean syllable counts for
// two letters.
class ScriptCounts {
 public:
  void add(uint32_t value);
  // The same of `count` letters of an alphabet.
  void add_letters(Script script, uint64_t count) {
    counts_[script] += count;
    all_ += count;
  }
  // Whether a text of these letters can be in a language of `script`: enough of them are its own.
  bool can_be(Script script) const;
  // Whether there is a letter of `script`. Latin ones need not be there: ASCII may not be counted.
  bool has(Script script) const;

 private:
  uint64_t of(Script script) const;

  uint64_t counts_[kAnyScript] = {};
  uint64_t han_ = 0;  // characters that Chinese, Japanese and Korean share
  uint64_t all_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_SCRIPTS_H_
