#include "lib/detect/orva.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

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
  std::vector<char> allowed_charsets;  // empty: all
  std::vector<char> denied_charsets;
  std::vector<char> allowed_languages;
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

char* copy_text(const std::string& text) {
  char* copy = static_cast<char*>(malloc(text.size() + 1));
  if (copy != nullptr) memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

// What the two lists let through; empty when they say nothing.
std::vector<char> combined(const std::vector<char>& allowed, const std::vector<char>& denied,
                           size_t size) {
  if (allowed.empty() && denied.empty()) return {};
  std::vector<char> out(size, 1);
  for (size_t i = 0; i < size; ++i) {
    if ((!allowed.empty() && allowed[i] == 0) || (!denied.empty() && denied[i] != 0)) out[i] = 0;
  }
  return out;
}

void apply_restrictions(OrvaDetector* d) {
  orva::Restrictions& r = d->detector.restrictions();
  r.charsets =
      combined(d->allowed_charsets, d->denied_charsets, static_cast<size_t>(orva::kCharsetCount));
  r.languages =
      combined(d->allowed_languages, d->denied_languages, d->detector.tables().languages().size());
}

int language_index(const OrvaDetector* d, const char* name) {
  const auto& languages = d->detector.tables().languages();
  for (size_t i = 0; i < languages.size(); ++i) {
    if (languages[i] == name) return static_cast<int>(i);
  }
  return -1;
}

// Marks the named items; leaves `marks` alone when one is unknown.
template <typename Find>
int mark_named(const char* const* names, int count, size_t size, int unknown, Find find,
               std::vector<char>* marks) {
  if (count < 0 || (count > 0 && names == nullptr)) return ORVA_BAD_ARGUMENT;
  std::vector<char> fresh(count == 0 ? 0 : size, 0);
  for (int i = 0; i < count; ++i) {
    if (names[i] == nullptr) return ORVA_BAD_ARGUMENT;
    const int index = find(names[i]);
    if (index < 0) return unknown;
    fresh[static_cast<size_t>(index)] = 1;
  }
  *marks = std::move(fresh);
  return ORVA_OK;
}

int set_charsets(OrvaDetector* d, const char* const* names, int count, std::vector<char>* marks) {
  return guarded([&] {
    const int result = mark_named(
        names, count, static_cast<size_t>(orva::kCharsetCount), ORVA_UNKNOWN_CHARSET,
        [](const char* name) { return orva::find_charset_index(name); }, marks);
    apply_restrictions(d);
    return result;
  });
}

int set_languages(OrvaDetector* d, const char* const* names, int count, std::vector<char>* marks) {
  return guarded([&] {
    const int result = mark_named(
        names, count, d->detector.tables().languages().size(), ORVA_UNKNOWN_LANGUAGE,
        [d](const char* name) { return language_index(d, name); }, marks);
    apply_restrictions(d);
    return result;
  });
}

const char* charset_text(int index) { return index < 0 ? nullptr : orva::kCharsets[index].iana; }

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
  result->charset = charset_text(best.charset);
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
    if (error != nullptr) *error = copy_text(why);
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
  *candidate = OrvaCandidate{charset_text(c.charset), language_text(detector, c.language),
                             c.probability, c.cost};
  return ORVA_OK;
}

int orva_nb_charsets(void) { return orva::kCharsetCount; }

const char* orva_charset(int index) {
  return index < 0 || index >= orva::kCharsetCount ? nullptr : charset_text(index);
}

const char* orva_charset_name(const char* name, OrvaNames names) {
  const orva::Charset* charset = name == nullptr ? nullptr : orva::find_charset(name);
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
