// What the component's streaming detector answers, without a host: a handle, the charset names, and
// one document after the other.
#ifndef ORVA_TOOLS_CLASSIC_H_
#define ORVA_TOOLS_CLASSIC_H_

#include <string>
#include <vector>

#include "lib/api/pemb.h"
#include "tools/detection.h"

namespace orva {

// A model group with its charset names.
class ClassicDetector {
 public:
  ClassicDetector() = default;
  ~ClassicDetector();
  ClassicDetector(const ClassicDetector&) = delete;
  ClassicDetector& operator=(const ClassicDetector&) = delete;

  // Opens Model.grp and Model.stc of `dir`. False after reporting what is wrong.
  bool open(const std::string& dir);

  // Names one document, fed in blocks of `block` bytes (0: whole). False, with the reason in
  // `error`, when it cannot be read.
  bool detect(const std::string& name, size_t block, Detection* detection, std::string* error);

 private:
  class Run;

  PembHandle* handle_ = nullptr;
  std::vector<std::string> charsets_;
};

// The folder of the models: `given`, else the one that ORVA_MODELS names, else the one installed
// beside the program, else that of the source tree it was built in. Empty when there is none.
std::string find_models(const std::string& given);

// Opens a group file, which must be a regular file. Null after reporting why it cannot be loaded.
PembHandle* open_group(const std::string& path);

// Releases a handle and its record.
void close_group(PembHandle* handle);

}  // namespace orva

#endif  // ORVA_TOOLS_CLASSIC_H_
