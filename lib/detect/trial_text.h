// TrialText: what the single-byte readings of a text differ in, cut into pieces.
//
//   orva::TrialText text;
//   text.start(normalised(bytes));
//   for (const orva::TrialText::Piece& piece : text.pieces) ...
//
// Life cycle: start for each text.
// Ownership:  keeps a copy of the text.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_TRIAL_TEXT_H_
#define ORVA_LIB_DETECT_TRIAL_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/placement.h"

namespace orva {

struct TrialText {
  struct Piece {
    size_t segment;
    size_t context;  // where the two bytes that models see in front of it begin
    size_t from;
    size_t to;
  };

  std::vector<std::string_view> segments;  // around bytes above 0x7F
  ByteCounts counts;
  std::vector<Piece> pieces;  // in the order in which they are asked about
  size_t length = 0;          // of all pieces

  TrialText() = default;
  explicit TrialText(std::string_view normalised) { start(normalised); }
  TrialText(const TrialText&) = delete;
  TrialText& operator=(const TrialText&) = delete;

  void start(std::string_view normalised);

 private:
  void cut_first();

  std::string framed_;
  std::vector<Piece> in_order_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TRIAL_TEXT_H_
