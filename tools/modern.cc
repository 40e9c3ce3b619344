#include "tools/modern.h"

#include <cstdlib>

#include "tools/documents.h"
#include "tools/report.h"

namespace orva {
namespace {

constexpr size_t kBlock = 1 << 16;

std::vector<const char*> pointers(const std::vector<std::string>& strings) {
  std::vector<const char*> table;
  for (const std::string& s : strings) table.push_back(s.c_str());
  return table;
}

const char* kind_name(OrvaKind kind) {
  switch (kind) {
    case ORVA_KIND_EMPTY:
      return "empty";
    case ORVA_KIND_BINARY:
      return "binary";
    case ORVA_KIND_TEXT:
      break;
  }
  return "text";
}

const struct {
  const char* name;
  OrvaNames names;
} kSchemes[] = {{"iana", ORVA_NAMES_IANA},
                {"iconv", ORVA_NAMES_ICONV},
                {"python", ORVA_NAMES_PYTHON},
                {"web", ORVA_NAMES_WEB}};

std::string text_of(const char* s) { return s == nullptr ? "" : s; }

}  // namespace

std::string named_models(const std::string& given) {
  if (!given.empty()) return given;
  const char* named = getenv("ORVA_MODELS");
  return named == nullptr ? "" : named;
}

std::string name_in_scheme(const char* charset, const std::string& scheme) {
  for (const auto& known : kSchemes) {
    if (scheme == known.name) return text_of(orva_charset_name(charset, known.names));
  }
  return text_of(charset);
}

ModernDetector::~ModernDetector() {
  orva_free(detector_);
  orva_close_models(models_);
}

bool ModernDetector::open(const ModernOptions& options) {
  if (!options.models.empty()) {
    for (const char* file : {"/Model.stc", "/Model.grp"}) {
      std::string why;
      if (is_readable_file(options.models + file, &why)) continue;
      report_error(options.models + file, why);
      return false;
    }
    char* error = nullptr;
    models_ = orva_open_models((options.models + "/Model.grp").c_str(),
                               (options.models + "/Model.stc").c_str(), &error);
    if (models_ == nullptr) {
      report_error("detect", text_of(error));
      orva_free_text(error);
      return false;
    }
  }
  names_ = options.names;
  detector_ = orva_new(models_);
  if (detector_ == nullptr) {
    report_error("detect", "out of memory");
    return false;
  }
  if (options.all) orva_set_limit(detector_, 0);
  return restrict_answers(options);
}

bool ModernDetector::restrict_answers(const ModernOptions& options) {
  using Restrict = int (*)(OrvaDetector*, const char* const*, int);
  const struct {
    Restrict restrict;
    const std::vector<std::string>& names;
    const char* option;
  } rules[] = {{orva_allow_charsets, options.charsets, "--charsets"},
               {orva_allow_languages, options.languages, "--languages"},
               {orva_deny_charsets, options.excluded, "--not"}};
  for (const auto& rule : rules) {
    if (rule.names.empty()) continue;
    const std::vector<const char*> names = pointers(rule.names);
    const int result = rule.restrict(detector_, names.data(), static_cast<int>(names.size()));
    if (result >= 0) continue;
    std::string what = orva_error_text(result);
    for (const std::string& name : rule.names) {
      const char* const one = name.c_str();
      if (rule.restrict(detector_, &one, 1) == result) what += ": \"" + name + "\"";
    }
    report_error(rule.option, what);
    return false;
  }
  return true;
}

std::string ModernDetector::name_of(const char* charset) const {
  return names_.empty() ? text_of(charset) : name_in_scheme(charset, names_);
}

bool ModernDetector::detect(const std::string& name, Detection* detection, std::string* error) {
  orva_reset(detector_);
  int fed = ORVA_OK;
  const auto take = [&](const char* bytes, size_t length) {
    fed = orva_feed(detector_, bytes, length);
    return fed == ORVA_OK;
  };
  return read_document(name, kBlock, take, error) && finish(fed, detection, error);
}

bool ModernDetector::detect_bytes(std::string_view bytes, Detection* detection,
                                  std::string* error) {
  orva_reset(detector_);
  return finish(orva_feed(detector_, bytes.data(), bytes.size()), detection, error);
}

bool ModernDetector::finish(int fed, Detection* detection, std::string* error) {
  OrvaResult result;
  const int finished = fed < 0 ? fed : orva_finish(detector_, &result);
  if (finished < 0) {
    *error = orva_error_text(finished);
    return false;
  }
  detection->answered = result.charset != nullptr;
  detection->charset = name_of(result.charset);
  detection->language = text_of(result.language);
  detection->confidence = result.probability;
  detection->bytes = result.bytes_read;
  detection->kind = kind_name(result.kind);
  detection->has_bom = result.has_bom != 0;
  for (int i = 0; i < result.nb_candidates; ++i) {
    OrvaCandidate candidate;
    if (orva_candidate(detector_, i, &candidate) < 0) break;
    detection->candidates.push_back({name_of(candidate.charset), text_of(candidate.language),
                                     candidate.probability, candidate.cost});
  }
  if (!detection->candidates.empty() && result.bytes_read > 0) {
    detection->cost = detection->candidates[0].cost / static_cast<double>(result.bytes_read);
  }
  return true;
}

}  // namespace orva
