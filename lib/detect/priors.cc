#include "lib/detect/priors.h"

#include <string_view>

#include "lib/detect/charset_table.h"

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
    {"ISO-8859-14", 5},    {"ISO-8859-16", 4},  {"IBM866", 4},         {"macintosh", 6},
    {"x-mac-cyrillic", 6}, {"Shift_JIS", 0.2},  {"EUC-JP", 0.2},       {"GB18030", 0},
    {"Big5", 0.3},         {"EUC-KR", 0.3},     {"EUC-TW", 4},         {"Johab", 6},
    {"VISCII", 5},         {"TCVN", 7},         {"hp-roman8", 10},     {"ISO-IR-111", 9},
    {"BALTIC", 10},        {"KOI8-T", 8},       {"PTCP154", 6},        {"KZ-1048", 6},
    {"IBM037", 8},         {"IBM500", 8.1},     {"x-mac-iceland", 8}};

constexpr double kDosPrior = 7;
constexpr double kMacPrior = 7;
constexpr double kEbcdicPrior = 9;
constexpr double kOtherPrior = 8;

}  // namespace

double prior_cost(int charset) {
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

}  // namespace orva
