#include "tools/classic.h"

#include <cstdlib>
#include <filesystem>

#include "lib/api/detection_run.h"
#include "lib/api/markup.h"
#include "lib/api/model_names.h"
#include "tools/documents.h"
#include "tools/group_files.h"
#include "tools/report.h"

namespace orva {

// One document: the same steps, in the same order, as a host's calls lead to.
class ClassicDetector::Run {
 public:
  explicit Run(PembHandle* handle) : handle_(handle) { pemb_load(handle); }

  // False once the answer is certain.
  bool take(const char* bytes, size_t length) {
    text_.resize(length);
    const size_t kept = strip_markup(bytes, length, text_.data(), &in_markup_);
    feed_text(handle_, text_.data(), static_cast<unsigned>(kept));
    scores_ = read_scores(handle_, &best_);
    return !is_certain(scores_);
  }

  int best() const { return best_; }
  const RunScores& scores() const { return scores_; }

 private:
  PembHandle* handle_;
  std::vector<char> text_;
  int in_markup_ = 0;
  int best_ = -1;
  RunScores scores_;
};

ClassicDetector::~ClassicDetector() { close_group(handle_); }

bool ClassicDetector::open(const std::string& dir) {
  const std::string names_path = dir + "/Model.stc";
  std::string error;
  if (!is_readable_file(names_path, &error) || !load_model_names(names_path, &charsets_, &error)) {
    report_error(names_path, error);
    return false;
  }
  handle_ = open_group(dir + "/Model.grp");
  if (handle_ == nullptr) return false;
  const int nb_models = pemb_nb_models(handle_);
  if (charsets_.size() != static_cast<size_t>(nb_models)) {
    report_error(names_path, "names " + std::to_string(charsets_.size()) +
                                 " charsets, but Model.grp holds " + std::to_string(nb_models) +
                                 " models");
    return false;
  }
  return true;
}

bool ClassicDetector::detect(const std::string& name, size_t block, Detection* detection,
                             std::string* error) {
  Run run(handle_);
  const auto take = [&](const char* bytes, size_t length) {
    detection->bytes += length;
    return run.take(bytes, length);
  };
  if (!read_document(name, block, take, error)) return false;
  if (run.best() < 0 || run.scores().scores == nullptr) return true;
  detection->answered = true;
  detection->charset = charsets_[static_cast<size_t>(run.best())];
  detection->model = pemb_model_name(handle_, run.best());
  detection->language = detection->model.substr(0, 2);
  detection->confidence = static_cast<double>(run.scores().ratio);
  detection->cost = static_cast<double>(run.scores().scores[run.best()]);
  return true;
}

std::string find_models(const std::string& given) {
  if (!given.empty()) return given;
  const char* named = getenv("ORVA_MODELS");
  if (named != nullptr && *named != '\0') return named;
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  for (const char* place : {"../share/orva", "../../models"}) {
    const fs::path dir = program.parent_path() / place;
    if (fs::exists(dir / "Model.grp", error)) return dir.lexically_normal().string();
  }
  return {};
}

PembHandle* open_group(const std::string& path) {
  std::string error;
  if (!is_readable_file(path, &error)) {
    report_error(path, error);
    return nullptr;
  }
  PembHandle* handle = pemb_init(path.c_str());
  if (handle == nullptr) report_error(path, refusal_of_group(path));
  return handle;
}

void close_group(PembHandle* handle) {
  pemb_dispose(handle);
  free(handle);
}

}  // namespace orva
