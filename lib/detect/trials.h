// Trials: the single-byte readings of a text against each other.
//
// All readings are asked about a little of the text, those that are far behind give up, the others
// are asked about twice as much, and so on. So most readings cost next to nothing, and the cost of
// one that gave up is what it would be if the text went on as it began. What several readings write
// alike in a home is asked about once.
//
// Life cycle: start with a text, add each reading, run once; then start again.
// Ownership:  homes, text, costs and readings are not owned.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_TRIALS_H_
#define ORVA_LIB_DETECT_TRIALS_H_

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "lib/detect/homes.h"
#include "lib/detect/placement.h"
#include "lib/detect/pool.h"
#include "lib/detect/readings.h"
#include "lib/detect/rewriting.h"

namespace orva {

// Whether a reading is not to be asked about in a home, for its letters are not there.
bool lacks_letters(const Rewriting& rewriting, const ByteCounts& counts,
                   const Placement& placement);

// What readings differ in, cut into pieces.
struct TrialText {
  struct Piece {
    size_t segment;
    size_t context;  // where the two bytes that models see in front of it begin
    size_t from;
    size_t to;
  };

  std::vector<std::string> segments;
  ByteCounts counts;
  std::vector<Piece> pieces;  // in the order in which they are asked about
  size_t length = 0;          // of all pieces

  explicit TrialText(std::vector<std::string> from);

 private:
  void cut_first();
};

class Trials {
 public:
  explicit Trials(const Homes& homes);
  ~Trials();
  Trials(const Trials&) = delete;
  Trials& operator=(const Trials&) = delete;

  // `base` is added to the costs of each language.
  void start(const TrialText* text, const std::vector<double>* base);
  // A reading of another kind, at `cost` for all of the text and its prior, is in the running.
  void set_rival(double cost) { rival_ = cost; }
  void add(Reading* reading);
  // How far behind the best a reading gives up, in nats; infinity to ask all to the end.
  void set_margin(double nats) { margin_ = nats; }
  // How far a language must be ahead of the others when one reading is left to ask about no more.
  void set_told(double nats) { told_ = nats; }
  // Fills the costs of all readings.
  void run();

 private:
  struct InHome;
  struct Trial;

  // A piece as it was written: its context, and from where on it is asked about.
  struct Part {
    size_t begin;
    size_t from;
    size_t end;
    bool operator==(const Part&) const = default;
  };
  // What some pieces cost in a home, as some readings write them.
  struct Answer;

  void ask(size_t first, size_t last, Trial* trial);
  const CostSums& answer(const HomeModels& models, std::string_view written, Pool<Answer>* known);
  void compare(Trial* trial);
  bool is_told() const;
  // What the rival may have cost at most when so much was asked about.
  double rival_at(size_t asked) const;
  void settle(Trial* trial) const;
  static void keep_behind(const Trial& trial, double least);

  const Homes& homes_;
  const TrialText* text_ = nullptr;
  const std::vector<double>* base_ = nullptr;
  double margin_ = 60;
  double told_ = 80;
  double rival_ = kNoCost;
  Pool<Trial> trials_;
  std::vector<std::pair<double, double>> least_;  // by home: cost, and with what the language costs
  std::vector<Pool<Answer>> answers_;             // about the pieces that are asked about, by home
  std::vector<Part> parts_;
  std::string written_;  // of them, in a home
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TRIALS_H_
