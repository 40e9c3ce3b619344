// Detector: names the charset and language of one document at a time, fed in pieces of any size.
// The answer does not depend on how the document was cut.
//
//   orva::Detector detector(tables);
//   detector.feed(piece);
//   const orva::Decision& decision = detector.finish();
//
// Life cycle: feed any number of times, finish, reset; finish may be repeated.
// Ownership:  shares the tables with any number of detectors.
// Threads:    one at a time for each detector.
#ifndef ORVA_LIB_DETECT_DETECTOR_H_
#define ORVA_LIB_DETECT_DETECTOR_H_

#include <memory>
#include <string_view>

#include "lib/detect/decision.h"
#include "lib/detect/sample.h"

namespace orva {

class Detector {
 public:
  // Bytes read of a document unless told otherwise: of 57 large files four had another answer as a
  // whole, and reading that much takes a few milliseconds (doc/DETECTOR.md).
  static constexpr uint64_t kDefaultLimit = 262144;
  static constexpr uint64_t kNoLimit = 0;

  explicit Detector(std::shared_ptr<const ModelTables> tables);
  Detector(const Detector&) = delete;
  Detector& operator=(const Detector&) = delete;

  const ModelTables& tables() const { return *tables_; }
  // What answers to give from the next document on.
  void restrict(Restrictions restrictions);
  // kNoLimit reads everything.
  void set_limit(uint64_t bytes) { limit_ = bytes; }

  // Starts a new document; limit and restrictions stay.
  void reset();
  // False when the limit is reached, so that more need not be read.
  bool feed(std::string_view bytes);
  const Decision& finish();

  uint64_t bytes_read() const { return evidence_.length(); }

 private:
  std::shared_ptr<const ModelTables> tables_;
  uint64_t limit_ = kDefaultLimit;
  Restrictions restrictions_;
  Evidence evidence_;
  Sample sample_;
  std::unique_ptr<Decider> decider_;  // made for the first decision
  Decision decision_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_DETECTOR_H_
