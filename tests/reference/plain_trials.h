// Trials by definition: each reading is written in each home, and each home is asked about each.
#ifndef ORVA_TESTS_REFERENCE_PLAIN_TRIALS_H_
#define ORVA_TESTS_REFERENCE_PLAIN_TRIALS_H_

#include <cstddef>
#include <vector>

#include "lib/detect/homes.h"
#include "lib/detect/readings.h"
#include "lib/detect/trial_text.h"

namespace orva {

class PlainTrials {
 public:
  explicit PlainTrials(const Homes& homes) : homes_(homes) {}

  void start(const TrialText* text, const std::vector<double>* base,
             const std::vector<double>* extra);
  void set_rival(double cost) { rival_ = cost; }
  void set_margin(double nats) { margin_ = nats; }
  void set_told(double nats) { told_ = nats; }
  void add(Reading* reading);
  void run();

 private:
  struct InHome {
    size_t home = 0;
    CostSums sums;
    size_t length = 0;
    bool alive = true;
  };
  struct Trial {
    Reading* reading = nullptr;
    std::vector<InHome> homes;
    double extra = 0;
    size_t length = 0;
    double least = kNoCost;
    double behind = 0;
    bool alive = true;
  };

  void ask(size_t first, size_t last, Trial* trial) const;
  void compare(Trial* trial) const;
  bool is_told() const;
  void settle(Trial* trial) const;

  const Homes& homes_;
  const TrialText* text_ = nullptr;
  const std::vector<double>* base_ = nullptr;
  const std::vector<double>* extra_ = nullptr;
  double margin_ = 60;
  double told_ = 80;
  double rival_ = kNoCost;
  std::vector<Trial> trials_;
};

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_PLAIN_TRIALS_H_
