// What CLidFacs delivers, by definition instead of by cursor: every piece of the input is
// normalised with copies of strings, and segments are cut out of the whole.
#ifndef ORVA_TESTS_REFERENCE_NAIVE_FACS_H_
#define ORVA_TESTS_REFERENCE_NAIVE_FACS_H_

#include <string>
#include <vector>

namespace orva {

struct Switches {
  int dups = 0;
  int caps = 0;
  int digits = 0;
  int blks = 0;
};

// `text` with the switches applied.
std::string naive_preprocess(const std::string& text, const Switches& switches);

// A segment: its first two bytes (fewer at the end of the input) and the rest.
struct Segment {
  std::string head;
  std::string body;
  bool operator==(const Segment& other) const = default;
};

// The segments of `input` for a selection as CLidFacs::init1 takes it.
std::vector<Segment> naive_segments(const std::string& input, int mode, int start, int end,
                                    const Switches& switches);

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_NAIVE_FACS_H_
