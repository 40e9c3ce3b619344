#include <unistd.h>

#include <cstdio>

#include "tools/classic.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/json_output.h"
#include "tools/report.h"

namespace orva {
namespace {

std::string text_line(const std::string& path, const Detection& detection) {
  if (detection.model < 0) return path + ": - -";
  return path + ": " + detection.charset + " " + detection.language;
}

}  // namespace

int run_detect(const DetectOptions& options) {
  std::vector<std::string> names = options.files;
  if (names.empty()) {
    if (isatty(STDIN_FILENO) != 0) {
      report_error("detect", "no file given (\"-\" reads standard input)");
      return kExitError;
    }
    names.emplace_back("-");
  }
  const std::string models = find_models(options.models);
  if (models.empty()) {
    report_error("detect", "no models found; name their folder with --models or ORVA_MODELS");
    return kExitError;
  }
  ClassicDetector detector;
  if (!detector.open(models)) return kExitError;

  bool failed = false;
  bool unanswered = false;
  const std::vector<std::string> files = expand_documents(names, options.recursive, &failed);
  Progress progress(files.size());
  for (size_t i = 0; i < files.size(); ++i) {
    progress.at(i, files[i]);
    Detection detection;
    std::string error;
    const bool read = detector.detect(files[i], options.block, &detection, &error);
    progress.wipe();
    if (!read) {
      report_error(files[i], error);
      failed = true;
      continue;
    }
    if (detection.model < 0) unanswered = true;
    const std::string line =
        options.json ? detection_json(files[i], detection) : text_line(files[i], detection);
    printf("%s\n", line.c_str());
  }
  if (failed) return kExitError;
  return unanswered ? kExitNoAnswer : kExitOk;
}

}  // namespace orva
