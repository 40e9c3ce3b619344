// PieceCosts: what pieces of a text cost in the homes, as its readings write them.
//
//   costs.start(homes);
//   orva::LetterCode* end = costs.room(size);
//   ...                                     // written from there on
//   size_t text = costs.add(end, parts);
//   costs.want(text, home);
//   costs.ask();
//   const double* sums = costs.sums(text, home);
//
// What several readings write alike is asked about once.
//
// Life cycle: start, add what is to be asked, want, ask, read the sums; then start again.
// Ownership:  the homes are not owned.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_PIECE_COSTS_H_
#define ORVA_LIB_DETECT_PIECE_COSTS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/detect/home_models.h"
#include "lib/detect/homes.h"
#include "lib/detect/letter_codes.h"

namespace orva {

class PieceCosts {
 public:
  // A piece as it was written: its context, and from where on it is asked about.
  struct Part {
    size_t begin;
    size_t from;
    size_t end;
    bool operator==(const Part&) const = default;
  };

  // Forgets all texts.
  void start(const std::vector<Home>& homes);
  // Where the codes of the next text go; at most `size` of them. REQUIRES: add before the next one.
  LetterCode* room(size_t size);
  // The text from room() to `end`, of these parts; the number of an earlier one if that is the
  // same. REQUIRES: fewer than 65000 bytes in each home.
  size_t add(const LetterCode* end, const std::vector<Part>& parts);
  // That sums() will be asked for.
  void want(size_t text, size_t home);
  void ask();
  // By column of the home's models, in their units; whole numbers.
  const double* sums(size_t text, size_t home) const {
    return sums_.data() + places_[text * homes_->size() + home];
  }

 private:
  static constexpr size_t kNowhere = static_cast<size_t>(-1);

  struct Text {
    uint64_t print;  // of the codes
    size_t first;    // of the codes
    size_t size;
    size_t first_part;
    size_t nb_parts;
  };
  bool is_same(const Text& text, const LetterCode* codes, size_t size,
               const std::vector<Part>& parts) const;
  void ask(const Home& home, const Text& text, double* sums);

  const std::vector<Home>* homes_ = nullptr;
  std::vector<LetterCode> codes_;
  size_t used_ = 0;  // of codes_
  std::vector<Text> texts_;
  std::vector<Part> parts_;
  std::vector<size_t> places_;  // by text and home: in sums_
  std::vector<double> sums_;
  size_t nb_sums_ = 0;                 // of them
  std::vector<unsigned char> folded_;  // the last part, as models see it
  std::vector<uint32_t> now_;          // what it costs
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_PIECE_COSTS_H_
