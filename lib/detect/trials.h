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
#include <vector>

#include "lib/detect/homes.h"
#include "lib/detect/piece_costs.h"
#include "lib/detect/pool.h"
#include "lib/detect/readings.h"
#include "lib/detect/trial_text.h"

namespace orva {

// How many of so many letters a home may lack in which a reading is asked about.
uint64_t most_missing(uint64_t letters);

class Trials {
 public:
  explicit Trials(const Homes& homes);
  ~Trials();
  Trials(const Trials&) = delete;
  Trials& operator=(const Trials&) = delete;

  // By language, `base` is added to the costs, and `extra` as well where languages are compared.
  void start(const TrialText* text, const std::vector<double>* base,
             const std::vector<double>* extra);
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

  bool lacks_letters(const HighBytes& missing, uint64_t most) const;
  void write(size_t first, size_t last, Trial* trial);
  void ask(size_t first, size_t last);
  void compare(Trial* trial);
  bool is_told() const;
  // What the rival may have cost at most when so much was asked about.
  double rival_at(size_t asked) const;
  void settle(Trial* trial) const;
  static void keep_behind(const Trial& trial, double least);

  const Homes& homes_;
  const Home* all_ = nullptr;  // of them
  const TrialText* text_ = nullptr;
  const std::vector<double>* base_ = nullptr;
  // The same by column of all homes, and with what is added where languages are compared.
  std::vector<double> column_base_;
  std::vector<double> column_extra_;
  double margin_ = 60;
  double told_ = 80;
  double rival_ = kNoCost;
  Pool<Trial> trials_;
  PieceCosts costs_;                     // of the pieces that are asked about
  std::vector<PieceCosts::Part> parts_;  // of the text that was written last
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TRIALS_H_
