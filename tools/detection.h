// What was found out about one document.
#ifndef ORVA_TOOLS_DETECTION_H_
#define ORVA_TOOLS_DETECTION_H_

#include <cstdint>
#include <string>
#include <vector>

namespace orva {

struct RankedReading {
  std::string charset;
  std::string language;  // empty when it cannot be told
  double probability = 0;
  double cost = 0;  // nats for the bytes read, 0 where no model was asked
};

struct Detection {
  bool answered = false;
  std::string charset;
  std::string language;   // two letters, empty when it cannot be told
  std::string model;      // the winning model of the component's path
  double confidence = 0;  // probability; on the component's path the language's ratio
  double cost = 0;        // mean cost per byte of the answer
  uint64_t bytes = 0;     // bytes of the document that were read
  std::string kind;       // "text", "binary" or "empty"; not told by the component's path
  bool has_bom = false;
  std::vector<RankedReading> candidates;  // likeliest first
};

}  // namespace orva

#endif  // ORVA_TOOLS_DETECTION_H_
