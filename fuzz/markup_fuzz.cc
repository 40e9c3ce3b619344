// Markup stripping: cut anywhere, the text gets no longer, and only white space may differ.
#include <algorithm>
#include <string>

#include "fuzz/fuzz_target.h"
#include "lib/api/markup.h"

namespace {

std::string without_blanks(std::string text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  text.erase(std::remove_if(text.begin(), text.end(), is_blank), text.end());
  return text;
}

std::string stripped(const char* bytes, size_t size, size_t cut) {
  int in_markup = 0;
  std::string out(size, '\0');
  size_t kept = orva::strip_markup(bytes, cut, out.data(), &in_markup);
  kept += orva::strip_markup(bytes + cut, size - cut, out.data() + kept, &in_markup);
  if (kept > size) __builtin_trap();
  out.resize(kept);
  return without_blanks(out);
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const char* const bytes = reinterpret_cast<const char*>(data);
  if (stripped(bytes, size, data[0] % size) != stripped(bytes, size, 0)) __builtin_trap();
  return 0;
}
