#include <unistd.h>

#include <cstdio>
#include <functional>

#include "tools/classic.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/json_output.h"
#include "tools/modern.h"
#include "tools/report.h"

namespace orva {
namespace {

using Detect = std::function<bool(const std::string& name, Detection*, std::string* error)>;

std::string or_dash(const std::string& text) { return text.empty() ? "-" : text; }

std::string text_line(const std::string& path, const Detection& detection) {
  if (!detection.answered) return path + ": - -";
  return path + ": " + or_dash(detection.charset) + " " + or_dash(detection.language);
}

bool open_classic(const DetectOptions& options, ClassicDetector* detector) {
  const std::string models = find_models(options.models);
  if (!models.empty()) return detector->open(models);
  report_error("detect", "no models found; name their folder with --models or ORVA_MODELS");
  return false;
}

bool open_modern(const DetectOptions& options, ModernDetector* detector) {
  ModernOptions modern;
  modern.models = named_models(options.models);
  modern.all = options.all;
  modern.charsets = options.charsets;
  modern.languages = options.languages;
  modern.excluded = options.excluded;
  modern.names = options.names;
  return detector->open(modern);
}

// Answers for every document; the status of the whole run.
int detect_all(const std::vector<std::string>& names, const DetectOptions& options,
               const Detect& detect) {
  bool failed = false;
  bool unanswered = false;
  const std::vector<std::string> files = expand_documents(names, options.recursive, &failed);
  Progress progress(files.size());
  for (size_t i = 0; i < files.size(); ++i) {
    progress.at(i, files[i]);
    Detection detection;
    std::string error;
    const bool read = detect(files[i], &detection, &error);
    progress.wipe();
    if (!read) {
      report_error(files[i], error);
      failed = true;
      continue;
    }
    if (!detection.answered) unanswered = true;
    const std::string line =
        options.json ? detection_json(files[i], detection) : text_line(files[i], detection);
    printf("%s\n", line.c_str());
  }
  if (failed) return kExitError;
  return unanswered ? kExitNoAnswer : kExitOk;
}

int print_list(const DetectOptions& options) {
  ModernDetector detector;
  if (!open_modern(options, &detector)) return kExitError;
  printf("charsets:");
  for (int i = 0; i < orva_nb_charsets(); ++i) {
    printf(" %s", or_dash(name_in_scheme(orva_charset(i), options.names)).c_str());
  }
  printf("\nlanguages:");
  for (int i = 0; i < orva_nb_languages(detector.models()); ++i) {
    printf(" %s", orva_language(detector.models(), i));
  }
  printf("\n");
  return kExitOk;
}

}  // namespace

int run_detect(const DetectOptions& options) {
  if (options.list) return print_list(options);
  std::vector<std::string> names = options.files;
  if (names.empty()) {
    if (isatty(STDIN_FILENO) != 0) {
      report_error("detect", "no file given (\"-\" reads standard input)");
      return kExitError;
    }
    names.emplace_back("-");
  }
  if (options.classic) {
    ClassicDetector detector;
    if (!open_classic(options, &detector)) return kExitError;
    return detect_all(names, options, [&](const auto& name, auto* detection, auto* error) {
      const bool read = detector.detect(name, options.block, detection, error);
      detection->charset = name_in_scheme(detection->charset.c_str(), options.names);
      return read;
    });
  }
  ModernDetector detector;
  if (!open_modern(options, &detector)) return kExitError;
  return detect_all(names, options, [&](const auto& name, auto* detection, auto* error) {
    return detector.detect(name, detection, error);
  });
}

}  // namespace orva
