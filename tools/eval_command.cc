#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "lib/accuracy/manifest.h"
#include "lib/accuracy/tally.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/eval_output.h"
#include "tools/json_output.h"
#include "tools/modern.h"
#include "tools/output_file.h"
#include "tools/report.h"

namespace orva {
namespace {

// A document without text at all, or one that its label cannot read.
constexpr char kNoWindow[] = "no window can be cut: its charset does not read it";
constexpr char kNoPiece[] = "ends before the piece that the manifest names";
constexpr char kNoDocuments[] = "names no documents";

// The folder that a path is in, with the slash; empty for the working one.
std::string folder_of(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

class Evaluation {
 public:
  Evaluation(const EvalOptions& options, ModernDetector* detector)
      : options_(options), detector_(*detector) {}

  const Tally& tally() const { return tally_; }

  // False, with the reason, when the document cannot be judged.
  bool add(const std::string& path, const LabelledDocument& document, std::string* error) {
    std::string bytes;
    if (!read_whole_document(path, &bytes, error) || !cut(document, &bytes, error)) return false;
    Detection detection;
    if (!detector_.detect_bytes(bytes, &detection, error)) return false;
    Outcome outcome;
    outcome.charset = document.charsets.front();
    outcome.language = plain_language(document.language);
    outcome.answered_charset = detection.charset;
    outcome.answered_language = plain_language(detection.language);
    outcome.probability = detection.confidence;
    outcome.judgement = judge(document.charsets, bytes, detection.charset);
    tally_.add(outcome);
    return true;
  }

 private:
  // Leaves the bytes that the answer is wanted for.
  bool cut(const LabelledDocument& document, std::string* bytes, std::string* error) const {
    if (!cut_piece(document, bytes)) {
      *error = kNoPiece;
      return false;
    }
    if (options_.window == 0 || bytes->empty()) return true;
    *bytes = window_of(document.charsets.front(), *bytes, options_.window);
    if (bytes->empty()) *error = kNoWindow;
    return !bytes->empty();
  }

  const EvalOptions& options_;
  ModernDetector& detector_;
  Tally tally_;
};

bool write_picture(const std::string& path, const Tally& tally) {
  OutputFile out(path);
  std::string error;
  if (!out.open(&error)) {
    report_error(path, error);
    return false;
  }
  std::ofstream stream(out.temporary(), std::ios::binary);
  stream << tally_picture(tally);
  stream.close();
  if (!stream) {
    report_error(path, "cannot be written");
    return false;
  }
  if (out.commit(&error)) return true;
  report_error(path, error);
  return false;
}

bool open_manifest(const EvalOptions& options, std::vector<LabelledDocument>* documents) {
  std::string text;
  std::string error;
  const bool read = is_readable_file(options.manifest, &error) &&
                    read_whole_document(options.manifest, &text, &error) &&
                    read_manifest(text, options.piece, documents, &error);
  if (read && !documents->empty()) return true;
  report_error(options.manifest, read ? kNoDocuments : error);
  return false;
}

}  // namespace

int run_eval(const EvalOptions& options) {
  std::vector<LabelledDocument> documents;
  if (!open_manifest(options, &documents)) return kExitError;
  ModernDetector detector;
  ModernOptions modern;
  modern.models = named_models(options.models);
  modern.all = options.all;
  if (!detector.open(modern)) return kExitError;
  Evaluation evaluation(options, &detector);
  const std::string folder = folder_of(options.manifest);
  bool failed = false;
  {
    Progress progress(documents.size());
    for (size_t i = 0; i < documents.size(); ++i) {
      const bool absolute = documents[i].path.starts_with('/');
      const std::string path = absolute ? documents[i].path : folder + documents[i].path;
      progress.at(i, path);
      std::string error;
      if (evaluation.add(path, documents[i], &error)) continue;
      progress.wipe();
      report_error(path, error);
      failed = true;
    }
  }
  const Tally& tally = evaluation.tally();
  if (tally.all().documents == 0) return kExitError;
  const std::string result = options.json ? tally_json(tally) + "\n" : tally_text(tally);
  fputs(result.c_str(), stdout);
  if (!options.svg.empty() && !write_picture(options.svg, tally)) return kExitError;
  if (failed) return kExitError;
  return tally.unanswered() != 0 ? kExitNoAnswer : kExitOk;
}

}  // namespace orva
