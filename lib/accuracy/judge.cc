#include "lib/accuracy/judge.h"

#include <algorithm>

#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/iconv_codec.h"

namespace orva {

namespace {

constexpr char kMark[] = "\xEF\xBB\xBF";  // U+FEFF in UTF-8
constexpr char kReplacement[] = "\xEF\xBF\xBD";

// East Asian labels and the charset that documents so labelled are really written in and read with.
constexpr const char* kReadAs[][2] = {{"GB2312", "GB18030"},  {"GBK", "GB18030"},
                                      {"EUC-KR", "CP949"},    {"Shift_JIS", "CP932"},
                                      {"Big5", "BIG5-HKSCS"}, {"CP950", "BIG5-HKSCS"}};

bool is_trail(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The byte order of a label that leaves it open.
std::string resolved(const std::string& label, std::string_view bytes) {
  if (find_charset(label) != nullptr) return label;
  const Charset* named = find_charset(label + "LE");
  if (named == nullptr || (named->flags & kUnicode) == 0) return label;
  const std::string_view mark =
      (named->flags & kUtf32) != 0 ? std::string_view("\0\0\xFE\xFF", 4) : "\xFE\xFF";
  return label + (bytes.starts_with(mark) ? "BE" : "LE");
}

ConvertResult decode(const std::string& label, std::string_view bytes, Conversion* out) {
  const Charset* charset = find_charset(label);
  return charset != nullptr ? decode_bytes(*charset, bytes, out)
                            : iconv_decode(label.c_str(), bytes, out);
}

// A document's text; without its byte order mark. With `lenient` a sign replaces each byte that
// cannot be read. False when that is not asked for and there are such, or nothing decodes `label`.
bool read_text(const std::string& label, std::string_view bytes, bool lenient, std::string* text) {
  text->clear();
  for (;;) {
    Conversion part;
    const ConvertResult result = decode(label, bytes, &part);
    if (result == kNoConverter || (result == kBadInput && !lenient)) return false;
    *text += part.bytes;
    if (result == kConverted) break;
    *text += kReplacement;
    bytes.remove_prefix(std::min(part.offset + 1, bytes.size()));
  }
  if (text->starts_with(kMark)) text->erase(0, sizeof(kMark) - 1);
  return true;
}

// Where a window of `size` bytes begins: a quarter of it before the first character outside ASCII.
size_t window_start(const std::string& text, size_t size) {
  const auto high = std::find_if(text.begin(), text.end(),
                                 [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
  if (high == text.end()) return 0;
  const auto at = static_cast<size_t>(high - text.begin());
  return at - std::min(at, size / 4);  // all before `at` is ASCII
}

bool is_same_charset(const std::string& a, const std::string& b) {
  const Charset* charset = find_charset(a);
  return a == b || (charset != nullptr && charset == find_charset(b));
}

void add_supersets(std::vector<std::string>* labels) {
  const size_t given = labels->size();
  for (size_t i = 0; i < given; ++i) {
    for (const auto& pair : kReadAs) {
      if (is_same_charset((*labels)[i], pair[0])) labels->emplace_back(pair[1]);
    }
  }
}

}  // namespace

bool is_known_label(const std::string& label) {
  const std::string charset = resolved(label, "");
  if (charset.empty()) return false;
  Conversion none;
  return find_charset(charset) != nullptr || decode(charset, "", &none) != kNoConverter;
}

Judgement judge(const std::vector<std::string>& labels, std::string_view bytes,
                const std::string& answer) {
  Judgement judgement;
  if (answer.empty()) return judgement;
  std::vector<std::string> right;
  for (const std::string& label : labels) {
    right.push_back(resolved(label, bytes));
    judgement.same_name = judgement.same_name || is_same_charset(right.back(), answer);
  }
  add_supersets(&right);
  std::string read;
  std::string wanted;
  for (const bool lenient : {false, true}) {
    bool any = false;
    for (const std::string& label : right) {
      if (!read_text(label, bytes, lenient, &wanted)) continue;
      any = true;
      if (!read_text(answer, bytes, lenient, &read) || read != wanted) continue;
      judgement.same_text = true;
      return judgement;
    }
    if (any) break;
  }
  return judgement;
}

std::string window_of(const std::string& label, std::string_view bytes, size_t size) {
  const std::string charset_name = resolved(label, bytes);
  const Charset* charset = find_charset(charset_name);
  std::string text;
  if (charset == nullptr || !read_text(charset_name, bytes, false, &text)) return "";
  const size_t start = window_start(text, size);
  // No charset writes a character of n bytes of UTF-8 in less than n / 3.
  size_t end = std::min(text.size(), start + 3 * size);
  while (end < text.size() && is_trail(text[end])) ++end;
  Conversion written;
  const std::string_view part = std::string_view(text).substr(start, end - start);
  if (encode_text(*charset, part, &written) != kConverted || written.dropped != 0) return "";
  return written.bytes.substr(0, size);
}

std::string plain_language(std::string_view language) {
  std::string plain(language.substr(0, language.find_first_of("-_@.")));
  for (char& c : plain) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  if (plain == "nb" || plain == "nn") return "no";
  if (plain == "iw") return "he";
  return plain == "in" ? "id" : plain;
}

}  // namespace orva
