#include "lib/detect/orva.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "lib/detect/asked_names.h"
#include "lib/detect/builtin_models.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/detector.h"

struct OrvaModels {
  std::shared_ptr<const orva::ModelTables> tables;
};

struct OrvaDetector {
  explicit OrvaDetector(std::shared_ptr<const orva::ModelTables> tables)
      : detector(std::move(tables)) {}

  orva::Detector detector;
  const orva::Decision* decision = nullptr;
  orva::AskedNames allowed_charsets;  // empty: all
  orva::AskedNames denied_charsets;
  std::vector<char> allowed_languages;  // likewise
  std::vector<char> denied_languages;
};

namespace {

constexpr char kVersion[] = "0.1.0";

// Runs `body`, which may throw for want of memory.
template <typename Body>
int guarded(Body body) {
  try {
    return body();
  } catch (...) {
    return ORVA_NO_MEMORY;
  }
}

char* copy_text(const char* text) {
  const size_t size = strlen(text) + 1;
  char* copy = static_cast<char*>(malloc(size));
  if (copy != nullptr) memcpy(copy, text, size);
  return copy;
}

// What the two lists let through; empty when they say nothing.
void apply_restrictions(OrvaDetector* d) {
  orva::Restrictions r;
  if (!d->allowed_charsets.empty() || !d->denied_charsets.empty()) {
    const orva::Restrictions any;
    for (int c = 0; c < orva::kCharsetCount; ++c) {
      const bool allowed =
          d->allowed_charsets.empty() ? any.allows_charset(c) : d->allowed_charsets.holds(c);
      r.charsets.push_back(allowed && !d->denied_charsets.holds(c) ? 1 : 0);
    }
  }
  if (!d->allowed_languages.empty() || !d->denied_languages.empty()) {
    for (size_t l = 0; l < d->detector.tables().languages().size(); ++l) {
      const bool allowed = d->allowed_languages.empty() || d->allowed_languages[l] != 0;
      const bool denied = !d->denied_languages.empty() && d->denied_languages[l] != 0;
      r.languages.push_back(allowed && !denied ? 1 : 0);
    }
  }
  d->detector.restrict(std::move(r));
}

// A caller's list; false when it is none.
bool take_names(const char* const* names, int count, std::vector<std::string_view>* out) {
  if (count < 0 || (count > 0 && names == nullptr)) return false;
  for (int i = 0; i < count; ++i) {
    if (names[i] == nullptr) return false;
    out->emplace_back(names[i]);
  }
  return true;
}

int set_charsets(OrvaDetector* d, const char* const* names, int count, orva::AskedNames* list) {
  return guarded([&] {
    std::vector<std::string_view> wanted;
    if (!take_names(names, count, &wanted)) return ORVA_BAD_ARGUMENT;
    if (!list->set(wanted)) return ORVA_UNKNOWN_CHARSET;
    apply_restrictions(d);
    return ORVA_OK;
  });
}

int set_languages(OrvaDetector* d, const char* const* names, int count, std::vector<char>* marks) {
  return guarded([&] {
    std::vector<std::string_view> wanted;
    if (!take_names(names, count, &wanted)) return ORVA_BAD_ARGUMENT;
    const auto& languages = d->detector.tables().languages();
    std::vector<char> fresh(wanted.empty() ? 0 : languages.size(), 0);
    for (const std::string_view name : wanted) {
      const int index = orva::find_language(languages, name);
      if (index < 0) return ORVA_UNKNOWN_LANGUAGE;
      fresh[static_cast<size_t>(index)] = 1;
    }
    *marks = std::move(fresh);
    apply_restrictions(d);
    return ORVA_OK;
  });
}

// The name of a charset as the caller's list has it, else the registered one.
const char* charset_text(const OrvaDetector* d, int index) {
  if (index < 0) return nullptr;
  const char* asked = d->allowed_charsets.spelling(index, d->decision->has_mark);
  return asked != nullptr ? asked : orva::kCharsets[index].iana;
}

const char* language_text(const OrvaDetector* d, int index) {
  if (index < 0) return nullptr;
  return d->detector.tables().languages()[static_cast<size_t>(index)].c_str();
}

OrvaKind kind_of(orva::DocumentKind kind) {
  if (kind == orva::DocumentKind::kEmpty) return ORVA_KIND_EMPTY;
  return kind == orva::DocumentKind::kText ? ORVA_KIND_TEXT : ORVA_KIND_BINARY;
}

void fill_result(const OrvaDetector* d, OrvaResult* result) {
  const orva::Decision& decision = *d->decision;
  *result = OrvaResult{};
  result->kind = kind_of(decision.kind);
  result->has_bom = decision.has_mark ? 1 : 0;
  result->bytes_read = d->detector.bytes_read();
  result->nb_candidates = static_cast<int>(decision.candidates.size());
  if (decision.candidates.empty()) return;
  const orva::Candidate& best = decision.candidates.front();
  result->charset = charset_text(d, best.charset);
  result->language = language_text(d, best.language);
  result->probability = best.probability;
  result->language_probability = best.language < 0 ? 0 : best.language_probability;
}

// The languages of `models`, of the built-in ones when null; none when these cannot be had.
const std::vector<std::string>& languages_of(const OrvaModels* models) {
  static const std::vector<std::string> kNone;
  if (models != nullptr) return models->tables->languages();
  try {
    // Held for good, so that the names outlast every detector.
    static const auto kBuiltIn = orva::builtin_models();
    return kBuiltIn == nullptr ? kNone : kBuiltIn->languages();
  } catch (...) {
    return kNone;
  }
}

}  // namespace

const char* orva_version(void) { return kVersion; }

const char* orva_error_text(int code) {
  switch (code) {
    case ORVA_OK:
      return "no error";
    case ORVA_ENOUGH:
      return "enough was read";
    case ORVA_BAD_ARGUMENT:
      return "an argument is null or out of range";
    case ORVA_NO_MEMORY:
      return "not enough memory";
    case ORVA_UNKNOWN_CHARSET:
      return "unknown charset";
    case ORVA_UNKNOWN_LANGUAGE:
      return "no model for this language";
    case ORVA_BAD_MODELS:
      return "the model files cannot be read";
    case ORVA_NOT_FINISHED:
      return "the document is not finished";
    default:
      return "unknown code";
  }
}

OrvaModels* orva_open_models(const char* group_path, const char* names_path, char** error) {
  if (error != nullptr) *error = nullptr;
  if (group_path == nullptr || names_path == nullptr) return nullptr;
  try {
    std::string why;
    auto tables = orva::ModelTables::load_files(group_path, names_path, &why);
    if (tables != nullptr) return new OrvaModels{std::move(tables)};
    if (error != nullptr) *error = copy_text(why.c_str());
  } catch (...) {
    if (error != nullptr) *error = copy_text(orva_error_text(ORVA_NO_MEMORY));
  }
  return nullptr;
}

void orva_close_models(OrvaModels* models) { delete models; }

void orva_free_text(char* text) { free(text); }

int orva_nb_languages(const OrvaModels* models) {
  return static_cast<int>(languages_of(models).size());
}

const char* orva_language(const OrvaModels* models, int index) {
  if (index < 0 || index >= orva_nb_languages(models)) return nullptr;
  return languages_of(models)[static_cast<size_t>(index)].c_str();
}

OrvaDetector* orva_new(OrvaModels* models) {
  try {
    auto tables = models == nullptr ? orva::builtin_models() : models->tables;
    return tables == nullptr ? nullptr : new OrvaDetector(std::move(tables));
  } catch (...) {
    return nullptr;
  }
}

void orva_free(OrvaDetector* detector) { delete detector; }

int orva_set_limit(OrvaDetector* detector, uint64_t bytes) {
  if (detector == nullptr) return ORVA_BAD_ARGUMENT;
  detector->detector.set_limit(bytes);
  return ORVA_OK;
}

int orva_allow_charsets(OrvaDetector* detector, const char* const* names, int count) {
  if (detector == nullptr) return ORVA_BAD_ARGUMENT;
  return set_charsets(detector, names, count, &detector->allowed_charsets);
}

int orva_deny_charsets(OrvaDetector* detector, const char* const* names, int count) {
  if (detector == nullptr) return ORVA_BAD_ARGUMENT;
  return set_charsets(detector, names, count, &detector->denied_charsets);
}

int orva_allow_languages(OrvaDetector* detector, const char* const* names, int count) {
  if (detector == nullptr) return ORVA_BAD_ARGUMENT;
  return set_languages(detector, names, count, &detector->allowed_languages);
}

int orva_deny_languages(OrvaDetector* detector, const char* const* names, int count) {
  if (detector == nullptr) return ORVA_BAD_ARGUMENT;
  return set_languages(detector, names, count, &detector->denied_languages);
}

int orva_reset(OrvaDetector* detector) {
  if (detector == nullptr) return ORVA_BAD_ARGUMENT;
  detector->decision = nullptr;
  return guarded([detector] {
    detector->detector.reset();
    return ORVA_OK;
  });
}

int orva_feed(OrvaDetector* detector, const void* bytes, size_t length) {
  if (detector == nullptr || (bytes == nullptr && length != 0)) return ORVA_BAD_ARGUMENT;
  detector->decision = nullptr;
  return guarded([=] {
    const std::string_view piece(static_cast<const char*>(bytes), length);
    return detector->detector.feed(piece) ? ORVA_OK : ORVA_ENOUGH;
  });
}

int orva_finish(OrvaDetector* detector, OrvaResult* result) {
  if (detector == nullptr || result == nullptr) return ORVA_BAD_ARGUMENT;
  *result = OrvaResult{};
  return guarded([=] {
    detector->decision = &detector->detector.finish();
    fill_result(detector, result);
    return ORVA_OK;
  });
}

int orva_detect(OrvaDetector* detector, const void* bytes, size_t length, OrvaResult* result) {
  const int reset = orva_reset(detector);
  if (reset != ORVA_OK) return reset;
  const int fed = orva_feed(detector, bytes, length);
  return fed < 0 ? fed : orva_finish(detector, result);
}

int orva_candidate(const OrvaDetector* detector, int index, OrvaCandidate* candidate) {
  if (detector == nullptr || candidate == nullptr || index < 0) return ORVA_BAD_ARGUMENT;
  if (detector->decision == nullptr) return ORVA_NOT_FINISHED;
  const auto& all = detector->decision->candidates;
  if (static_cast<size_t>(index) >= all.size()) return ORVA_BAD_ARGUMENT;
  const orva::Candidate& c = all[static_cast<size_t>(index)];
  *candidate = OrvaCandidate{charset_text(detector, c.charset), language_text(detector, c.language),
                             c.probability, c.cost};
  return ORVA_OK;
}

int orva_nb_charsets(void) { return orva::kCharsetCount; }

const char* orva_charset(int index) {
  return index < 0 || index >= orva::kCharsetCount ? nullptr : orva::kCharsets[index].iana;
}

const char* orva_charset_name(const char* name, OrvaNames names) {
  const orva::Charset* charset = name == nullptr ? nullptr : orva::find_charset(name);
  if (charset == nullptr && name != nullptr) charset = orva::find_family(name);
  if (charset == nullptr) return nullptr;
  switch (names) {
    case ORVA_NAMES_IANA:
      return charset->iana;
    case ORVA_NAMES_ICONV:
      return orva::charset_name(*charset, orva::NameScheme::kIconv);
    case ORVA_NAMES_PYTHON:
      return orva::charset_name(*charset, orva::NameScheme::kPython);
    case ORVA_NAMES_WEB:
      return orva::charset_name(*charset, orva::NameScheme::kWeb);
  }
  return nullptr;
}
