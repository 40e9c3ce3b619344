#include "tests/reference/naive_evidence.h"

#include "lib/detect/sample.h"

namespace orva {

NaiveMultiByte naive_multi_byte(MultiByteKind kind, std::string_view bytes) {
  NaiveMultiByte out;
  for (std::string_view rest = bytes; !rest.empty();) {
    const int length = character_length(kind, rest);
    out.valid = length != 0;  // what the end cuts may become one
    if (length <= 0) break;
    out.wide += length > 1 ? 1 : 0;
    out.offset += static_cast<uint64_t>(length);
    rest.remove_prefix(static_cast<size_t>(length));
  }
  return out;
}

std::string naive_sample(std::string_view bytes) {
  std::string text(bytes.substr(0, Sample::kHead));
  std::string line;
  const auto end_line = [&] {
    for (const char c : line) {
      if (static_cast<unsigned char>(c) < 0x80) continue;
      text += line;
      break;
    }
    line.clear();
  };
  for (size_t i = Sample::kHead; i < bytes.size() && text.size() < Sample::kLimit; ++i) {
    line.push_back(bytes[i]);
    const bool full =
        line.size() >= Sample::kLongestLine && static_cast<unsigned char>(bytes[i]) < 0x30;
    if (bytes[i] == '\n' || full || line.size() >= 2 * Sample::kLongestLine) end_line();
  }
  end_line();
  return text;
}

}  // namespace orva
