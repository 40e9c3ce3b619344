#include "tests/reference/naive_facs.h"

#include <algorithm>
#include <cstring>

namespace orva {
namespace {

constexpr size_t kPiece = 1024;

std::string without(const std::string& text, const char* bytes, size_t nb_bytes) {
  std::string result;
  for (const char c : text) {
    if (memchr(bytes, c, nb_bytes) == nullptr) result += c;
  }
  return result;
}

// A NUL in front of the text counts for the run that the text begins with.
std::string without_long_runs(const std::string& text) {
  std::string result(1, '\0');
  for (const char c : text) {
    const size_t n = result.size();
    const bool fourth = n >= 3 && result[n - 1] == c && result[n - 2] == c && result[n - 3] == c;
    if (!fourth) result += c;
  }
  return result.substr(1);
}

// The whole input as it comes out of its pieces.
std::string all_pieces(const std::string& input, const Switches& switches) {
  std::string result;
  for (size_t at = 0; at < input.size(); at += kPiece) {
    result += naive_preprocess(input.substr(at, kPiece), switches);
  }
  return result;
}

}  // namespace

std::string naive_preprocess(const std::string& text, const Switches& switches) {
  std::string result = text;
  if (switches.dups != 0) result = without_long_runs(result);
  if (switches.caps != 0) {
    for (char& c : result) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
  }
  if (switches.digits != 0) result = without(result, "0123456789", 10);
  if (switches.blks != 0) result = without(result, " \r\n\t", 4);
  return result;
}

std::vector<Segment> naive_segments(const std::string& input, int mode, int start, int end,
                                    const Switches& switches) {
  std::string rest = input;
  if (mode == 3) {
    rest = input.substr(std::min(input.size(), static_cast<size_t>(std::max(start, 0))));
    mode = 1;
    start = end;
    end = -1;
  }
  if (end != -1 && (end <= start || start < 0)) mode = 0;
  const std::string text = all_pieces(rest, switches);

  if (mode == 2 && start < 0) {
    // The selection begins inside a head that is never announced, or behind it.
    const std::string body = text.substr(std::min(text.size(), start == -1 ? size_t{1} : 0));
    return body.empty() ? std::vector<Segment>() : std::vector<Segment>{{"", body}};
  }
  long long first = 0;
  long long length = 1000000000;
  long long stride = -1;
  if (mode == 1) {
    length = start + 2LL;
    stride = end;
  } else if (mode == 2) {
    first = start;
    stride = end == -1 ? 1000000000 : end;
    length = stride - start + 2;
  }

  std::vector<Segment> segments;
  const auto size = static_cast<long long>(text.size());
  for (long long at = first; at < size; at += stride) {
    const std::string segment =
        text.substr(static_cast<size_t>(at), static_cast<size_t>(std::max(length, 2LL)));
    segments.push_back({segment.substr(0, 2), segment.size() > 2 ? segment.substr(2) : ""});
    // A further segment begins only when there is input behind this one, even if it would overlap.
    if (stride == -1 || at + length >= size) break;
  }
  return segments;
}

}  // namespace orva
