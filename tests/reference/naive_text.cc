#include "tests/reference/naive_text.h"

#include "lib/detect/characters.h"
#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

constexpr int kLongestRun = 3;
constexpr size_t kLongestTag = 2048;

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool begins_tag(std::string_view text, size_t at) {
  if (at + 1 >= text.size()) return false;
  const char c = text[at + 1];
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '/' || c == '!' || c == '?';
}

}  // namespace

std::string naive_normalised(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  char last = 0;
  int run = 0;
  for (const char raw : text) {
    const char c = is_digit(raw) ? '0' : raw;
    run = c == last ? run + 1 : 1;
    last = c;
    if (run > (is_digit(c) ? 1 : kLongestRun)) continue;
    if (is_blank(c) && !out.empty() && is_blank(out.back())) continue;
    out.push_back(c);
  }
  return out;
}

std::string naive_without_markup(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  bool blank = false;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '<' && begins_tag(text, i)) {
      const size_t end = text.substr(i, kLongestTag).find('>');
      if (end != std::string_view::npos) {
        i += end;
        continue;
      }
    }
    const bool now = is_blank(text[i]);
    if (!now || !blank) out.push_back(text[i]);
    blank = now;
  }
  return out;
}

std::string naive_small_letters(std::string_view text, ScriptCounts* scripts) {
  std::string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const Character character = read_utf8(text.substr(at));
    if (character.state != Character::kGood) {
      out.push_back(text[at++]);
      continue;
    }
    scripts->add(character.value);
    append_utf8(small_letter(character.value), &out);
    at += character.length;
  }
  return out;
}

}  // namespace orva
