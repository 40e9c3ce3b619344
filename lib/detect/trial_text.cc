#include "lib/detect/trial_text.h"

#include <algorithm>

#include "lib/detect/focus.h"

namespace orva {

namespace {

// Bytes of a piece, and how many of the pieces that follow each other are asked about far apart.
constexpr size_t kPiece = 32;
constexpr size_t kFirstPiece = 14;
constexpr size_t kStride = 16;

}  // namespace

void TrialText::start(std::string_view normalised) {
  framed_ = kFront;
  framed_ += normalised;
  find_high_segments(framed_, &segments);
  counts.start(segments);
  length = 0;
  in_order_.clear();
  for (size_t s = 0; s < segments.size(); ++s) {
    for (size_t from = 0; from < segments[s].size(); from += kPiece) {
      const size_t to = std::min(from + kPiece, segments[s].size());
      in_order_.push_back({s, context_before(segments[s], from), from, to});
      length += to - from;
    }
  }
  pieces.clear();
  for (const size_t first : {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15}) {
    for (size_t i = first; i < in_order_.size(); i += kStride) pieces.push_back(in_order_[i]);
  }
  if (!pieces.empty()) cut_first();
}

// A few bytes tell most wrong readings.
void TrialText::cut_first() {
  Piece& first = pieces.front();
  if (first.to - first.from < 2 * kFirstPiece) return;
  Piece rest = first;
  first.to = rest.from = first.from + kFirstPiece;
  rest.context = context_before(segments[rest.segment], rest.from);
  pieces.insert(pieces.begin() + 1, rest);
}

}  // namespace orva
