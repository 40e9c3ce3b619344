#include "lib/detect/scripts.h"

#include <algorithm>
#include <vector>

#include "lib/detect/charset_table.h"

namespace orva {

namespace {

struct Block {
  uint32_t first;
  uint32_t last;
  Script script;
};

constexpr Block kBlocks[] = {
    {'A', 'Z', kLatin},        {'a', 'z', kLatin},          {0x00C0, 0x024F, kLatin},
    {0x0370, 0x03FF, kGreek},  {0x0400, 0x052F, kCyrillic}, {0x0531, 0x0587, kArmenian},
    {0x0591, 0x05F4, kHebrew}, {0x0600, 0x06FF, kArabic},   {0x0900, 0x097F, kDevanagari},
    {0x0E01, 0x0E4E, kThai},   {0x10A0, 0x10FF, kGeorgian}, {0x1100, 0x11FF, kKorean},
    {0x1E00, 0x1EFF, kLatin},  {0x1F00, 0x1FFF, kGreek},    {0x3041, 0x30FF, kJapanese},
    {0xAC00, 0xD7A3, kKorean}, {0xFB1D, 0xFB4F, kHebrew},   {0xFB50, 0xFDFF, kArabic},
    {0xFE70, 0xFEFC, kArabic}, {0xFF66, 0xFF9D, kJapanese}};

bool is_han(uint32_t value) {
  return (value >= 0x3400 && value <= 0x9FFF) || (value >= 0x20000 && value <= 0x2FFFF);
}

Script find_script(uint32_t value) {
  for (const Block& block : kBlocks) {
    if (value >= block.first && value <= block.last) return block.script;
  }
  return kAnyScript;
}

// Of the characters below; most text has no others but Chinese ones and Korean syllables.
struct ScriptTable {
  static constexpr uint32_t kSize = 0x3100;
  uint8_t of[kSize];

  ScriptTable() {
    for (uint32_t v = 0; v < kSize; ++v) of[v] = static_cast<uint8_t>(find_script(v));
  }
};

// The script of a letter; kAnyScript for what is none of these, and for Chinese characters.
Script script_of(uint32_t value) {
  static const ScriptTable table;
  return value < ScriptTable::kSize ? static_cast<Script>(table.of[value]) : find_script(value);
}

struct Languages {
  Script script;
  std::string_view names;
};

constexpr Languages kLanguages[] = {
    {kLatin,
     "af az br bs ca cs cy da de en eo es et eu fi fr ga gl hr hu id is it lt "
     "lv ms mt nl no pl pt ro sk sl sq sv sw tl tr vi"},
    {kGreek, "el"},
    {kCyrillic, "be bg kk mk mn ru sr tg uk"},
    {kHebrew, "he yi"},
    {kArabic, "ar fa ur"},
    {kThai, "th"},
    {kDevanagari, "hi"},
    {kArmenian, "hy"},
    {kGeorgian, "ka"},
    {kChinese, "zh"},
    {kJapanese, "ja"},
    {kKorean, "ko"}};

struct CharsetScript {
  const char* charset;
  Script script;
};

constexpr CharsetScript kEastAsian[] = {{"Shift_JIS", kJapanese},   {"EUC-JP", kJapanese},
                                        {"ISO-2022-JP", kJapanese}, {"EUC-KR", kKorean},
                                        {"ISO-2022-KR", kKorean},   {"Johab", kKorean}};

// A charset with fewer letters of a script holds them for formulas.
constexpr int kFewestLetters = 20;
// Text in another script quotes a language with a smaller share of its letters.
constexpr double kLeastShare = 0.05;
constexpr uint64_t kLettersPerCharacter = 2;

uint32_t scripts_of_table(const uint16_t* table) {
  int counts[kAnyScript + 1] = {};
  for (int b = 0; b < 256; ++b) ++counts[script_of(table[b])];
  uint32_t scripts = 0;
  for (int s = 0; s < kAnyScript; ++s) {
    if (counts[s] >= kFewestLetters) scripts |= script_bit(static_cast<Script>(s));
  }
  return scripts;
}

uint32_t scripts_of_charset(int index) {
  const Charset& charset = kCharsets[index];
  if ((charset.flags & kUnicode) != 0) return ~0U;
  const uint16_t* table = single_byte_table(index);
  if (table != nullptr) return scripts_of_table(table) | script_bit(kLatin);
  if ((charset.flags & (kMultiByte | kSevenBit)) == 0) return script_bit(kLatin);
  for (const CharsetScript& known : kEastAsian) {
    if (std::string_view(known.charset) == charset.iana) return script_bit(known.script);
  }
  return script_bit(kChinese);
}

}  // namespace

uint32_t scripts_of_letter(uint32_t value) {
  if (is_han(value)) return script_bit(kChinese) | script_bit(kJapanese);
  const Script script = script_of(value);
  return script == kAnyScript ? 0 : script_bit(script);
}

Script script_of_language(std::string_view language) {
  for (const Languages& languages : kLanguages) {
    if (is_listed(languages.names, language)) return languages.script;
  }
  return kAnyScript;
}

bool is_listed(std::string_view names, std::string_view name) {
  for (size_t at = 0; at < names.size();) {
    const size_t end = std::min(names.find(' ', at), names.size());
    if (names.substr(at, end - at) == name) return true;
    at = end + 1;
  }
  return false;
}

uint32_t written_scripts(int charset) {
  static const std::vector<uint32_t> scripts = [] {
    std::vector<uint32_t> all;
    for (int c = 0; c < kCharsetCount; ++c) all.push_back(scripts_of_charset(c));
    return all;
  }();
  return scripts[static_cast<size_t>(charset)] | script_bit(kAnyScript);
}

bool can_write(int charset, Script script) {
  return (written_scripts(charset) & script_bit(script)) != 0;
}

void ScriptCounts::add(uint32_t value) {
  if (is_han(value)) {
    han_ += kLettersPerCharacter;
    all_ += kLettersPerCharacter;
    return;
  }
  const Script script = script_of(value);
  if (script == kAnyScript) return;
  const uint64_t weight = script == kKorean ? kLettersPerCharacter : 1;
  counts_[script] += weight;
  all_ += weight;
}

uint64_t ScriptCounts::of(Script script) const {
  const bool has_han = script == kChinese || script == kJapanese;
  return counts_[script] + (has_han ? han_ : 0);
}

bool ScriptCounts::can_be(Script script) const {
  return all_ == 0 || script == kAnyScript ||
         static_cast<double>(of(script)) > kLeastShare * static_cast<double>(all_);
}

bool ScriptCounts::has(Script script) const {
  return script == kLatin || script == kAnyScript || of(script) > 0;
}

}  // namespace orva
