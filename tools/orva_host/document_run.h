// One document through a detector made by contract ID.
#ifndef ORVA_TOOLS_ORVA_HOST_DOCUMENT_RUN_H_
#define ORVA_TOOLS_ORVA_HOST_DOCUMENT_RUN_H_

#include <cstddef>
#include <string>
#include <vector>

#include "platform/component_manager.h"

namespace orva {

struct Notification {
  size_t block;  // 1 for the first block of the document, 0 for `Done`
  std::string charset;
};

struct DocumentRun {
  std::vector<Notification> notifications;  // none with the string detector
  size_t blocks = 0;                        // fed
  bool answered = false;
  std::string answer;  // the string detector's, or the last notification
};

// Feeds `path` to a streaming detector in blocks of `block` bytes (0: the whole document at once)
// and ends it. False, with the reason in `error`, when there is no detector or the file cannot be
// read.
bool run_streaming(nsIComponentManager* components, const std::string& path, size_t block,
                   DocumentRun* run, std::string* error);

// Hands the whole of `path` to a string detector.
bool run_string(nsIComponentManager* components, const std::string& path, DocumentRun* run,
                std::string* error);

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_DOCUMENT_RUN_H_
