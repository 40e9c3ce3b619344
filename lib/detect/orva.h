/* orva.h: name the charset and the language of bytes.
 *
 *   OrvaDetector* d = orva_new(NULL);                 // NULL: the built-in models
 *   OrvaResult r;
 *   if (d != NULL && orva_detect(d, bytes, length, &r) == ORVA_OK && r.charset != NULL)
 *     printf("%s %s %.2f\n", r.charset, r.language ? r.language : "-", r.probability);
 *   orva_free(d);
 *
 * In pieces: orva_reset, orva_feed until it returns ORVA_ENOUGH or the document ends, orva_finish.
 *
 * Conventions, for C99 and C++:
 *  1. A detector is used by one thread at a time; models are shared by any number of detectors and
 *     threads, and live until the last of them and their opener have let go.
 *  2. Calls return ORVA_OK (0), a positive note, or a negative OrvaError; orva_error_text words it.
 *  3. The answer does not depend on how a document was cut into pieces.
 *  4. A charset is never named that cannot decode the bytes that were read; `bytes_read` says how
 * many they were. A character cut at their end does not count against a charset.
 *  5. Strings in results belong to the library and stay valid as long as the detector.
 *  6. Nothing is printed, no exception leaves these functions, and the documents' size does not
 *     decide how much memory is used.
 */
#ifndef ORVA_LIB_DETECT_ORVA_H_
#define ORVA_LIB_DETECT_ORVA_H_

#include <stddef.h>
#include <stdint.h>

#define ORVA_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

typedef struct OrvaModels OrvaModels;
typedef struct OrvaDetector OrvaDetector;

typedef enum OrvaError {
  ORVA_OK = 0,
  ORVA_ENOUGH = 1,        /* the limit is reached; feeding more changes nothing */
  ORVA_BAD_ARGUMENT = -1, /* a null pointer, or an index or a number out of range */
  ORVA_NO_MEMORY = -2,
  ORVA_UNKNOWN_CHARSET = -3,  /* a name that the charset table lacks */
  ORVA_UNKNOWN_LANGUAGE = -4, /* a language that no model is for */
  ORVA_BAD_MODELS = -5,       /* the model files cannot be read */
  ORVA_NOT_FINISHED = -6      /* there is no answer yet */
} OrvaError;

typedef enum OrvaKind { ORVA_KIND_EMPTY = 0, ORVA_KIND_TEXT = 1, ORVA_KIND_BINARY = 2 } OrvaKind;

/* Which program's names are wanted. */
typedef enum OrvaNames {
  ORVA_NAMES_IANA = 0,
  ORVA_NAMES_ICONV = 1,
  ORVA_NAMES_PYTHON = 2,
  ORVA_NAMES_WEB = 3
} OrvaNames;

/* Bytes read of a document by default. */
enum { ORVA_DEFAULT_LIMIT = 262144 };

typedef struct OrvaResult {
  OrvaKind kind;
  const char* charset;         /* null when nothing can be said, and for empty and binary */
  const char* language;        /* ISO 639-1; null when it cannot be told */
  double probability;          /* that the charset reads the document right */
  double language_probability; /* that the language is right, if the charset is */
  int has_bom;                 /* nonzero: a byte order mark named the charset */
  uint64_t bytes_read;
  int nb_candidates;
} OrvaResult;

typedef struct OrvaCandidate {
  const char* charset;
  const char* language;
  double probability;
  double cost; /* nats, lower is better; 0 where no model was asked */
} OrvaCandidate;

/* Release of the library. */
ORVA_API const char* orva_version(void);
/* Words for a result code. */
ORVA_API const char* orva_error_text(int code);

/* Opens models from a group file and its table of charset names. Null on failure; then `*error`,
 * when it is not null, receives a text to be given to orva_free_text. */
ORVA_API OrvaModels* orva_open_models(const char* group_path, const char* names_path, char** error);
ORVA_API void orva_close_models(OrvaModels* models);
ORVA_API void orva_free_text(char* text);

/* Languages that the models tell apart, the built-in ones when null. */
ORVA_API int orva_nb_languages(const OrvaModels* models);
ORVA_API const char* orva_language(const OrvaModels* models, int index);

/* A detector over `models`, or over the built-in ones when null. Null when there are none or memory
 * is short. */
ORVA_API OrvaDetector* orva_new(OrvaModels* models);
ORVA_API void orva_free(OrvaDetector* detector);

/* Bytes to read of each document; 0 reads everything. */
ORVA_API int orva_set_limit(OrvaDetector* detector, uint64_t bytes);
/* Restrict the answer to later documents. A list replaces an earlier one of its kind; `count` 0
 * lifts it, and one with an unknown name changes nothing. Charsets go by any of their names,
 * "UTF-16" and "UTF-32" for both byte orders; an allowed one is then called in results what the
 * list calls it. Languages go by two letters, whatever follows a "-" or "_". */
ORVA_API int orva_allow_charsets(OrvaDetector* detector, const char* const* names, int count);
ORVA_API int orva_deny_charsets(OrvaDetector* detector, const char* const* names, int count);
ORVA_API int orva_allow_languages(OrvaDetector* detector, const char* const* names, int count);
ORVA_API int orva_deny_languages(OrvaDetector* detector, const char* const* names, int count);

/* One document in pieces. orva_finish may be followed by more pieces and repeated. */
ORVA_API int orva_reset(OrvaDetector* detector);
ORVA_API int orva_feed(OrvaDetector* detector, const void* bytes, size_t length);
ORVA_API int orva_finish(OrvaDetector* detector, OrvaResult* result);
/* One document in one call. */
ORVA_API int orva_detect(OrvaDetector* detector, const void* bytes, size_t length,
                         OrvaResult* result);
/* The readings that were considered, the likeliest first, after orva_finish or orva_detect. */
ORVA_API int orva_candidate(const OrvaDetector* detector, int index, OrvaCandidate* candidate);

/* The charsets that can be named, and what others call them. Null for what they cannot read. */
ORVA_API int orva_nb_charsets(void);
ORVA_API const char* orva_charset(int index);
ORVA_API const char* orva_charset_name(const char* name, OrvaNames names);

#ifdef __cplusplus
}
#endif

#endif /* ORVA_LIB_DETECT_ORVA_H_ */
