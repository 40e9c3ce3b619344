// The detector of lib/detect, as the command line uses it: documents in, detections out.
#ifndef ORVA_TOOLS_MODERN_H_
#define ORVA_TOOLS_MODERN_H_

#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/orva.h"
#include "tools/detection.h"

namespace orva {

// What "iana", "iconv", "python" or "web" call a charset, empty where it lacks it; the charset
// as it stands for an empty scheme.
std::string name_in_scheme(const char* charset, const std::string& scheme);

struct ModernOptions {
  std::string models;                 // folder of Model.grp and Model.stc; empty: the built-in ones
  bool all = false;                   // read whole documents instead of their beginning
  std::vector<std::string> charsets;  // answer only these; empty for any
  std::vector<std::string> languages;  // likewise
  std::vector<std::string> excluded;   // charsets never to be answered
  std::string names;                   // whose charset names to give: see name_in_scheme
};

// The folder that --models or ORVA_MODELS names; empty for the built-in models.
std::string named_models(const std::string& given);

class ModernDetector {
 public:
  ModernDetector() = default;
  ~ModernDetector();
  ModernDetector(const ModernDetector&) = delete;
  ModernDetector& operator=(const ModernDetector&) = delete;

  // False after reporting what is wrong.
  bool open(const ModernOptions& options);

  // Names one document. False, with the reason in `error`, when it cannot be read.
  bool detect(const std::string& name, Detection* detection, std::string* error);
  // The same for a document in memory.
  bool detect_bytes(std::string_view bytes, Detection* detection, std::string* error);

  const OrvaModels* models() const { return models_; }

 private:
  std::string name_of(const char* charset) const;
  bool restrict_answers(const ModernOptions& options);
  // Takes the answer; `fed` is what feeding came to.
  bool finish(int fed, Detection* detection, std::string* error);

  OrvaModels* models_ = nullptr;
  OrvaDetector* detector_ = nullptr;
  std::string names_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_MODERN_H_
