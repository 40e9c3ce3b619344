#include "lib/detect/priors.h"

#include <string_view>
#include <vector>

#include "lib/detect/characters.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/scripts.h"

namespace orva {

namespace {

struct Prior {
  std::string_view charset;
  double cost;
};

// Those that differ from what their kind costs.
constexpr Prior kPriors[] = {
    {"US-ASCII", 0},       {"UTF-8", 0},        {"ISO-8859-1", 0},     {"windows-1252", 0.1},
    {"windows-1250", 0.6}, {"ISO-8859-2", 0.5}, {"windows-1251", 0.2}, {"KOI8-R", 1},
    {"KOI8-U", 1.5},       {"ISO-8859-5", 3},   {"windows-1253", 0.6}, {"ISO-8859-7", 0.5},
    {"windows-1254", 0.9}, {"ISO-8859-9", 0.8}, {"windows-1255", 0.5}, {"ISO-8859-8", 1},
    {"windows-1256", 0.5}, {"ISO-8859-6", 2},   {"windows-1257", 1},   {"windows-1258", 1.5},
    {"windows-874", 0.5},  {"TIS-620", 0.4},    {"ISO-8859-11", 0.45}, {"ISO-8859-15", 1},
    {"ISO-8859-13", 2},    {"ISO-8859-4", 3},   {"ISO-8859-3", 3.5},   {"ISO-8859-10", 4.5},
    {"ISO-8859-14", 5},    {"ISO-8859-16", 4},  {"IBM866", 4},         {"IBM850", 6},
    {"IBM437", 6.2},       {"IBM852", 6},       {"macintosh", 6},      {"x-mac-cyrillic", 6},
    {"Shift_JIS", 0.2},    {"EUC-JP", 0.2},     {"GB18030", 0},        {"GBK", 0.1},
    {"GB2312", 0.05},      {"Big5", 0.3},       {"EUC-KR", 0.3},       {"EUC-TW", 4},
    {"Johab", 20},         {"VISCII", 5},       {"TCVN", 7},           {"hp-roman8", 14},
    {"ISO-IR-111", 14},    {"BALTIC", 12},      {"KOI8-T", 10},        {"PTCP154", 6},
    {"KZ-1048", 6},        {"IBM037", 8},       {"IBM500", 8.1},       {"x-mac-iceland", 8}};

constexpr double kDosPrior = 7;
constexpr double kMacPrior = 7;
constexpr double kEbcdicPrior = 9;
constexpr double kOtherPrior = 14;

// Languages by how many documents there are in them.
constexpr std::string_view kMostUsed = "en";
constexpr std::string_view kMuchUsed =
    "ar bg cs da de el es fa fi fr he hu it ja ko nl no pl pt ro ru sv th tr uk vi zh";
constexpr std::string_view kUsed = "be ca et gl hi hr hy id is ka kk lt lv mk sk sl sr";
constexpr double kMuchUsedPrior = 0.5;
constexpr double kUsedPrior = 1;
constexpr double kLittleUsedPrior = 2;

constexpr double kOtherScriptPrior = 8;
// Charsets that were made for some languages; hardly any document in them is in another one.
struct MadeFor {
  std::string_view charset;
  std::string_view languages;
};
constexpr MadeFor kMadeFor[] = {{"KOI8-U", "uk be ru"},
                                {"KOI8-T", "tg"},
                                {"IBM1125", "uk ru be"},
                                {"PTCP154", "kk az mn tg ru"},
                                {"KZ-1048", "kk ru"},
                                {"VISCII", "vi"},
                                {"TCVN", "vi"},
                                {"windows-1258", "vi"},
                                {"ISO-8859-3", "mt eo tr"},
                                {"ISO-8859-4", "et lv lt"},
                                {"ISO-8859-10", "is no da sv fi et lv lt"},
                                {"ISO-8859-14", "cy ga gd br"},
                                {"ISO-8859-16", "ro hr hu pl sl sq"},
                                {"ISO-8859-13", "et lv lt"},
                                {"windows-1257", "et lv lt"},
                                {"IBM775", "et lv lt"},
                                {"BALTIC", "et lv lt"},
                                {"IBM852", "bs cs hr hu pl ro sk sl sq sr"},
                                {"x-mac-ce", "cs hu pl sk et lv lt"},
                                {"x-mac-turkish", "tr"},
                                {"x-mac-iceland", "is"},
                                {"IBM857", "tr az"},
                                {"IBM860", "pt"},
                                {"IBM861", "is"},
                                {"IBM863", "fr"},
                                {"IBM865", "da no"}};
constexpr double kOtherLanguagePrior = 4;
// A charset with more letters of another script is made for that.
constexpr int kFewLetters = 30;

bool is_of_other_script(const uint16_t* table) {
  int letters = 0;
  for (int b = 0; b < 256; ++b) {
    const uint16_t value = table[b];
    if (value >= 0x370 && value < 0x1E00 && is_letter(value)) ++letters;
  }
  return letters > kFewLetters;
}

double find_prior(int charset) {
  for (const Prior& prior : kPriors) {
    if (prior.charset == kCharsets[charset].iana) return prior.cost;
  }
  const uint32_t flags = kCharsets[charset].flags;
  if ((flags & (kUtf16 | kUtf32)) != 0) return 3;
  if ((flags & kDos) != 0) return kDosPrior;
  if ((flags & kMac) != 0) return kMacPrior;
  if ((flags & kEbcdic) != 0) return kEbcdicPrior;
  return kOtherPrior;
}

}  // namespace

double mismatch_cost(int charset, std::string_view language) {
  const uint16_t* table = single_byte_table(charset);
  for (const MadeFor& made : kMadeFor) {
    if (made.charset == kCharsets[charset].iana && !is_listed(made.languages, language)) {
      return kOtherLanguagePrior;
    }
  }
  if (table == nullptr || script_of_language(language) != kLatin) return 0;
  return is_of_other_script(table) ? kOtherScriptPrior : 0;
}

double language_prior(std::string_view language) {
  if (is_listed(kMostUsed, language)) return 0;
  if (is_listed(kMuchUsed, language)) return kMuchUsedPrior;
  return is_listed(kUsed, language) ? kUsedPrior : kLittleUsedPrior;
}

double prior_cost(int charset) {
  static const std::vector<double> costs = [] {
    std::vector<double> all;
    for (int c = 0; c < kCharsetCount; ++c) all.push_back(find_prior(c));
    return all;
  }();
  return costs[static_cast<size_t>(charset)];
}

}  // namespace orva
