#include "lib/detect/charset_table.h"

namespace orva {

namespace {

constexpr uint32_t kPlain = kAsciiCompatible | kMarkupSafe;  // a single byte a character
constexpr uint32_t kPairs = kPlain | kMultiByte;             // bytes above 0x7F lead pairs

}  // namespace

// The C library's Shift_JIS, Big5 and EUC-KR lack what real documents in them hold, so their
// converters are the supersets that browsers read these names with. Its macintosh sisters are
// missing or older than the currency signs of 1998 and are converted by our own tables.
// clang-format off
const Charset kCharsets[] = {
    // registered, iconv, Python, web, others
    {"US-ASCII", "ASCII", "ascii", "windows-1252",
     "ANSI_X3.4-1968 646 ISO646-US ansi-x3.4-1986 cp367 csascii ibm367 iso-646.irv-1991 "
     "iso-ir-6",
     kPlain | kWeb},
    {"UTF-8", "UTF-8", "utf-8", "UTF-8",
     "utf8 unicode-1-1-utf-8 utf-8-sig cp65001 utf8-ucs2 utf8-ucs4 csUTF8 unicode20utf8 "
     "x-unicode20utf8",
     kPlain | kMultiByte | kWeb | kUnicode},
    {"UTF-16LE", "UTF-16LE", "utf-16-le", "UTF-16LE",
     "ucs-2le unicodelittleunmarked unicodefeff csUTF16LE",
     kMultiByte | kUtf16 | kUnicode | kWeb},
    {"UTF-16BE", "UTF-16BE", "utf-16-be", "UTF-16BE",
     "ucs-2be unicodebigunmarked unicodefffe csUTF16BE",
     kMultiByte | kUtf16 | kUnicode | kWeb},
    {"UTF-32LE", "UTF-32LE", "utf-32-le", "",
     "ucs-4le",
     kMultiByte | kUtf32 | kUnicode},
    {"UTF-32BE", "UTF-32BE", "utf-32-be", "",
     "ucs-4be",
     kMultiByte | kUtf32 | kUnicode},
    {"windows-1250", "CP1250", "cp1250", "windows-1250",
     "x-cp1250 win1250 ms1250 1250",
     kPlain | kWindows | kWeb},
    {"windows-1251", "CP1251", "cp1251", "windows-1251",
     "x-cp1251 win1251 ms1251 1251",
     kPlain | kWindows | kWeb},
    {"windows-1252", "CP1252", "cp1252", "windows-1252",
     "x-cp1252 win1252 ms1252 1252",
     kPlain | kWindows | kWeb},
    {"windows-1253", "CP1253", "cp1253", "windows-1253",
     "x-cp1253 win1253 ms1253 1253",
     kPlain | kWindows | kWeb},
    {"windows-1254", "CP1254", "cp1254", "windows-1254",
     "x-cp1254 win1254 ms1254 1254",
     kPlain | kWindows | kWeb},
    {"windows-1255", "CP1255", "cp1255", "windows-1255",
     "x-cp1255 win1255 ms1255 1255",
     kPlain | kWindows | kWeb},
    {"windows-1256", "CP1256", "cp1256", "windows-1256",
     "x-cp1256 win1256 ms1256 1256",
     kPlain | kWindows | kWeb},
    {"windows-1257", "CP1257", "cp1257", "windows-1257",
     "x-cp1257 win1257 ms1257 1257",
     kPlain | kWindows | kWeb},
    {"windows-1258", "CP1258", "cp1258", "windows-1258",
     "x-cp1258 win1258 ms1258 1258",
     kPlain | kWindows | kWeb},
    {"windows-874", "CP874", "cp874", "windows-874",
     "dos-874 ms874 x-windows-874",
     kPlain | kWindows | kWeb},
    {"ISO-8859-1", "ISO-8859-1", "iso8859-1", "windows-1252",
     "ISO_8859-1 iso88591 latin1 l1 iso-ir-100 IBM819 CP819 csisolatin1 iso8859 "
     "iso_8859_1_1987",
     kPlain | kIso | kWeb},
    {"ISO-8859-2", "ISO-8859-2", "iso8859-2", "ISO-8859-2",
     "ISO_8859-2 iso88592 latin2 l2 iso-ir-101 IBM912 csisolatin2 iso_8859_2_1987",
     kPlain | kIso | kWeb},
    {"ISO-8859-3", "ISO-8859-3", "iso8859-3", "ISO-8859-3",
     "ISO_8859-3 iso88593 latin3 l3 iso-ir-109 IBM913 csisolatin3 iso_8859_3_1988",
     kPlain | kIso | kWeb},
    {"ISO-8859-4", "ISO-8859-4", "iso8859-4", "ISO-8859-4",
     "ISO_8859-4 iso88594 latin4 l4 iso-ir-110 IBM914 csisolatin4 iso_8859_4_1988",
     kPlain | kIso | kWeb},
    {"ISO-8859-5", "ISO-8859-5", "iso8859-5", "ISO-8859-5",
     "ISO_8859-5 iso88595 cyrillic iso-ir-144 IBM915 csisolatincyrillic iso_8859_5_1988",
     kPlain | kIso | kWeb},
    {"ISO-8859-6", "ISO-8859-6", "iso8859-6", "ISO-8859-6",
     "ISO_8859-6 iso88596 arabic iso-ir-127 ECMA-114 ASMO-708 IBM1089 csisolatinarabic "
     "iso_8859_6_1987 csiso88596e csiso88596i iso-8859-6-e iso-8859-6-i",
     kPlain | kIso | kWeb},
    {"ISO-8859-7", "ISO-8859-7", "iso8859-7", "ISO-8859-7",
     "ISO_8859-7 iso88597 greek greek8 iso-ir-126 ECMA-118 ELOT_928 IBM813 sun_eu_greek "
     "csisolatingreek iso_8859_7_1987",
     kPlain | kIso | kWeb},
    {"ISO-8859-8", "ISO-8859-8", "iso8859-8", "ISO-8859-8",
     "ISO_8859-8 iso88598 hebrew iso-ir-138 ISO-8859-8-I ISO-8859-8-E logical visual IBM916 "
     "csisolatinhebrew iso_8859_8_1988 csiso88598e csiso88598i",
     kPlain | kIso | kWeb},
    {"ISO-8859-9", "ISO-8859-9", "iso8859-9", "windows-1254",
     "ISO_8859-9 iso88599 latin5 l5 iso-ir-148 IBM920 csisolatin5 iso_8859_9_1989",
     kPlain | kIso | kWeb},
    {"ISO-8859-10", "ISO-8859-10", "iso8859-10", "ISO-8859-10",
     "ISO_8859-10 iso885910 latin6 l6 iso-ir-157 IBM919 csisolatin6 iso_8859_10_1992",
     kPlain | kIso | kWeb},
    {"ISO-8859-11", "ISO-8859-11", "iso8859-11", "windows-874",
     "ISO_8859-11 iso885911 iso-ir-166 iso_8859_11_2001",
     kPlain | kIso | kWeb},
    {"ISO-8859-13", "ISO-8859-13", "iso8859-13", "ISO-8859-13",
     "ISO_8859-13 iso885913 latin7 l7 iso-ir-179",
     kPlain | kIso | kWeb},
    {"ISO-8859-14", "ISO-8859-14", "iso8859-14", "ISO-8859-14",
     "ISO_8859-14 iso885914 latin8 l8 iso-ir-199 iso-celtic iso_8859_14_1998",
     kPlain | kIso | kWeb},
    {"ISO-8859-15", "ISO-8859-15", "iso8859-15", "ISO-8859-15",
     "ISO_8859-15 iso885915 latin9 l9 Latin-9 IBM923 csisolatin9",
     kPlain | kIso | kWeb},
    {"ISO-8859-16", "ISO-8859-16", "iso8859-16", "ISO-8859-16",
     "ISO_8859-16 iso885916 latin10 l10 iso-ir-226 iso_8859_16_2001",
     kPlain | kIso | kWeb},
    {"KOI8-R", "KOI8-R", "koi8-r", "KOI8-R",
     "koi koi8 csKOI8R IBM878",
     kPlain | kWeb},
    {"KOI8-U", "KOI8-U", "koi8-u", "KOI8-U",
     "koi8-ru IBM1168",
     kPlain | kWeb},
    {"KOI8-T", "KOI8-T", "koi8-t", "",
     "",
     kPlain},
    {"IBM437", "CP437", "cp437", "",
     "cp437 437 cspc8codepage437",
     kPlain | kDos},
    {"IBM720", "", "cp720", "",
     "cp720 720",
     kPlain | kDos},
    {"IBM737", "CP737", "cp737", "",
     "cp737 737",
     kPlain | kDos},
    {"IBM775", "CP775", "cp775", "",
     "cp775 775 cspc775baltic",
     kPlain | kDos},
    {"IBM850", "CP850", "cp850", "",
     "cp850 850 cspc850multilingual",
     kPlain | kDos},
    {"IBM852", "CP852", "cp852", "",
     "cp852 852 cspcp852",
     kPlain | kDos},
    {"IBM855", "CP855", "cp855", "",
     "cp855 855 csibm855",
     kPlain | kDos},
    {"IBM856", "CP856", "cp856", "",
     "cp856 856",
     kPlain | kDos},
    {"IBM857", "CP857", "cp857", "",
     "cp857 857 csibm857",
     kPlain | kDos},
    {"IBM860", "CP860", "cp860", "",
     "cp860 860 csibm860",
     kPlain | kDos},
    {"IBM861", "CP861", "cp861", "",
     "cp861 861 cp-is csibm861",
     kPlain | kDos},
    {"IBM862", "CP862", "cp862", "",
     "cp862 862 cspc862latinhebrew",
     kPlain | kDos},
    {"IBM863", "CP863", "cp863", "",
     "cp863 863 csibm863",
     kPlain | kDos},
    {"IBM864", "CP864", "cp864", "",
     "cp864 864 csibm864",
     kPlain | kDos},
    {"IBM865", "CP865", "cp865", "",
     "cp865 865 csibm865",
     kPlain | kDos},
    {"IBM866", "CP866", "cp866", "IBM866",
     "cp866 866 csIBM866",
     kPlain | kDos | kWeb},
    {"IBM869", "CP869", "cp869", "",
     "cp869 869 cp-gr csibm869",
     kPlain | kDos},
    {"IBM1125", "CP1125", "cp1125", "",
     "cp1125 1125 RUSCII cp866u",
     kPlain | kDos},
    {"IBM858", "CP858", "cp858", "",
     "cp858 858 CCSID00858 CP00858 IBM00858 PC-Multilingual-850+euro csibm858",
     kPlain | kDos},
    {"IBM037", "CP037", "cp037", "",
     "37 ebcdic-cp-us ebcdic-cp-ca ebcdic-cp-nl IBM37 037 csibm037 ebcdic-cp-wt ibm039",
     kEbcdic},
    {"IBM273", "CP273", "cp273", "",
     "273 csibm273",
     kEbcdic},
    {"IBM424", "CP424", "cp424", "",
     "424 ebcdic-cp-he csibm424",
     kEbcdic},
    {"IBM500", "CP500", "cp500", "",
     "500 ebcdic-cp-be ebcdic-cp-ch csibm500",
     kEbcdic},
    {"IBM875", "CP875", "cp875", "",
     "875 x-IBM875",
     kEbcdic},
    {"IBM1026", "CP1026", "cp1026", "",
     "1026 csibm1026",
     kEbcdic},
    {"IBM1140", "CP1140", "cp1140", "",
     "1140 CCSID01140 CP01140 IBM01140 ebcdic-us-37+euro",
     kEbcdic},
    {"macintosh", "MACINTOSH", "mac_roman", "macintosh",
     "mac macroman x-mac-roman csMacintosh",
     kPlain | kMac | kWeb},
    {"x-mac-cyrillic", "", "mac_cyrillic", "x-mac-cyrillic",
     "MAC-CYRILLIC maccyrillic x-mac-ukrainian CP10007",
     kPlain | kMac | kWeb},
    {"x-mac-ce", "MAC-CENTRALEUROPE", "mac_latin2", "",
     "x-mac-centraleurroman x-mac-centraleurope maclatin2 maccentraleurope macce mac-centeuro",
     kPlain | kMac},
    {"x-mac-greek", "", "mac_greek", "",
     "macgreek",
     kPlain | kMac},
    {"x-mac-turkish", "", "mac_turkish", "",
     "macturkish",
     kPlain | kMac},
    {"x-mac-iceland", "", "mac_iceland", "",
     "maciceland MAC-IS x-mac-icelandic",
     kPlain | kMac},
    {"VISCII", "VISCII", "", "",
     "viscii1.1-1 csVISCII",
     kPlain},
    {"TCVN", "TCVN", "", "",
     "TCVN5712-1 TCVN-5712 x-viet-tcvn5712",
     kPlain},
    {"TIS-620", "TIS-620", "tis-620", "windows-874",
     "tis620 TIS620.2533-0 thai tis-620-0 tis-620-2529-0 tis-620-2529-1",
     kPlain | kWeb},
    {"Shift_JIS", "CP932", "cp932", "Shift_JIS",
     "windows-31J sjis x-sjis ms_kanji ms932 windows-932 csShiftJIS csWindows31J 932 "
     "x-mac-japanese",
     kPairs | kWeb},
    {"EUC-JP", "EUC-JP-MS", "euc_jp", "EUC-JP",
     "ujis x-euc-jp eucjp-ms csEUCPkdFmtJapanese",
     kPairs | kWeb},
    {"ISO-2022-JP", "ISO-2022-JP", "iso2022_jp", "ISO-2022-JP",
     "jis csISO2022JP",
     kMultiByte | kSevenBit | kWeb},
    {"GB18030", "GB18030", "gb18030", "gb18030",
     "gb18030-2000 csGB18030",
     kPairs | kWeb},
    {"GB2312", "GB2312", "gb2312", "GBK",
     "EUC-CN GB_2312-80 csGB2312 CN-GB iso-ir-58 chinese csiso58gb231280 eucgb2312-cn "
     "gb2312-1980 x-mac-simp-chinese",
     kPairs | kWeb | kPart},
    {"GBK", "GBK", "gbk", "GBK",
     "CP936 MS936 windows-936 x-gbk 936",
     kPairs | kWeb | kPart},
    {"HZ-GB-2312", "", "hz", "",
     "HZ csHZGB2312 hz-gb",
     kMultiByte | kSevenBit},
    {"ISO-2022-CN", "ISO-2022-CN", "", "",
     "csISO2022CN",
     kMultiByte | kSevenBit},
    {"Big5", "BIG5-HKSCS", "big5hkscs", "Big5",
     "Big5-HKSCS big-five cn-big5 CP950 MS950 windows-950 x-x-big5 csBig5 big5-tw hkscs "
     "x-mac-trad-chinese",
     kPairs | kWeb},
    {"EUC-TW", "EUC-TW", "", "",
     "x-euc-tw",
     kPairs},
    {"EUC-KR", "UHC", "cp949", "EUC-KR",
     "windows-949 CP949 MS949 KS_C_5601-1987 KS_C_5601-1989 KSC_5601 korean iso-ir-149 csEUCKR "
     "csKSC56011987 949 ks-x-1001 x-mac-korean",
     kPairs | kWeb},
    {"ISO-2022-KR", "ISO-2022-KR", "iso2022_kr", "",
     "csISO2022KR",
     kMultiByte | kSevenBit},
    {"Johab", "JOHAB", "johab", "",
     "CP1361 MS1361 windows-1361",
     kAsciiCompatible | kMultiByte},
    {"PTCP154", "PT154", "ptcp154", "",
     "PT154 CP154 Cyrillic-Asian csPTCP154",
     kPlain},
    {"KZ-1048", "RK1048", "kz1048", "",
     "STRK1048-2002 csKZ1048",
     kPlain},
    {"hp-roman8", "HP-ROMAN8", "hp-roman8", "",
     "roman8 r8 csHPRoman8 cp1051 ibm1051",
     kPlain},
    {"BALTIC", "BALTIC", "", "",
     "iso-ir-179a winbaltrim",
     kPlain},
    {"ISO-IR-111", "ECMA-CYRILLIC", "", "",
     "ECMA-113 ECMA-CYRILLIC koi8-e csISO111ECMACyrillic",
     kPlain | kIso},
    {"ARMSCII-8", "ARMSCII-8", "", "",
     "armscii8",
     kPlain},
    {"GEORGIAN-ACADEMY", "GEORGIAN-ACADEMY", "", "",
     "",
     kPlain},
    {"GEORGIAN-PS", "GEORGIAN-PS", "", "",
     "",
     kPlain},
};
// clang-format on

const int kCharsetCount = static_cast<int>(sizeof kCharsets / sizeof kCharsets[0]);

namespace {

char folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool counts(char c) {
  const char f = folded(c);
  return (f >= 'a' && f <= 'z') || (f >= '0' && f <= '9');
}

// Whether two names have the same letters and digits in the same order.
bool same_name(std::string_view a, std::string_view b) {
  size_t i = 0;
  size_t j = 0;
  for (;;) {
    while (i < a.size() && !counts(a[i])) ++i;
    while (j < b.size() && !counts(b[j])) ++j;
    if (i == a.size() || j == b.size()) return i == a.size() && j == b.size();
    if (folded(a[i++]) != folded(b[j++])) return false;
  }
}

bool among_aliases(std::string_view aliases, std::string_view name) {
  while (!aliases.empty()) {
    const size_t blank = aliases.find(' ');
    if (same_name(aliases.substr(0, blank), name)) return true;
    if (blank == std::string_view::npos) break;
    aliases.remove_prefix(blank + 1);
  }
  return false;
}

bool holds_letter_or_digit(std::string_view name) {
  for (const char c : name) {
    if (counts(c)) return true;
  }
  return false;
}

}  // namespace

int find_charset_index(std::string_view name) {
  if (!holds_letter_or_digit(name)) return -1;
  for (int i = 0; i < kCharsetCount; ++i) {
    if (same_name(kCharsets[i].iana, name)) return i;
  }
  for (int i = 0; i < kCharsetCount; ++i) {
    const Charset& c = kCharsets[i];
    if (same_name(c.python, name) || same_name(c.iconv, name) || among_aliases(c.aliases, name)) {
      return i;
    }
  }
  return -1;
}

const Charset* find_charset(std::string_view name) {
  const int i = find_charset_index(name);
  return i < 0 ? nullptr : &kCharsets[i];
}

const Charset* find_family(std::string_view name) {
  static constexpr Charset kFamilies[] = {
      {"UTF-16", "UTF-16", "utf-16", "", "ISO-10646-UCS-2 UCS-2", kMultiByte | kUtf16 | kUnicode},
      {"UTF-32", "UTF-32", "utf-32", "", "ISO-10646-UCS-4 UCS-4", kMultiByte | kUtf32 | kUnicode}};
  for (const Charset& family : kFamilies) {
    if (same_name(family.iana, name) || among_aliases(family.aliases, name)) return &family;
  }
  return nullptr;
}

int charset_index(const Charset* charset) { return static_cast<int>(charset - kCharsets); }

const char* charset_name(const Charset& charset, NameScheme scheme) {
  const char* name = charset.iana;
  if (scheme == NameScheme::kIconv) name = charset.iconv;
  if (scheme == NameScheme::kPython) name = charset.python;
  if (scheme == NameScheme::kWeb) name = charset.web;
  return *name == 0 ? nullptr : name;
}

}  // namespace orva
