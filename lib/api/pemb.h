/* pemb.h: name the language and charset model that fits a stream of bytes best.
 *
 *   PembHandle* h = pemb_init("Model.grp");
 *   if (h != NULL) {
 *     int best = -1;
 *     float ratio = 0;
 *     pemb_load(h);                                  // once per document
 *     pemb_nexts(h, bytes, length);                  // any number of times
 *     if (pemb_get_scores(h, &best, &ratio) != NULL)
 *       printf("%s %g\n", pemb_model_name(h, best), ratio);
 *     pemb_dispose(h);
 *   }
 *
 * Conventions, for C99 and C++:
 *  1. A handle is used by one thread at a time and serves one document at a time.
 *  2. pemb_load comes before the first pemb_nexts of every document.
 *  3. pemb_nexts takes at most PEMB_MAX_PIECE bytes a call and rewrites them in place.
 *  4. The first two characters of a document only set up the walk; scores exist from the third on.
 *  5. Scores are mean costs per byte, one per model in group order; the lowest is the best. The
 *     array belongs to the handle and is overwritten by the next pemb_get_scores.
 *  6. The ratio is the share, in (0, 1], that the best model's language takes against the others;
 *     the component ends a document early above 0.8.
 *  7. A null handle or buffer, where one is needed, is refused: null or -1.
 *  8. pemb_dispose releases what the handle owns, but not the small handle record itself, which must
 *     not be used again.
 *  9. Nothing is printed, and no C++ exception leaves these functions.
 * 10. pemb_init and pemb_group switch the whole process to returning allocation failures instead of
 *     ending on them.
 */
#ifndef ORVA_LIB_API_PEMB_H_
#define ORVA_LIB_API_PEMB_H_

#define PEMB_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* Largest number of bytes that one pemb_nexts accepts. */
enum { PEMB_MAX_PIECE = 10000 };

typedef struct PembHandle PembHandle;

/* Opens the model group file `path`. Null when it cannot be read or is no valid group. */
PEMB_API PembHandle* pemb_init(const char* path);

/* Starts a new document. 0; -1 when the evaluator is not ready or the handle is null. */
PEMB_API int pemb_load(PembHandle* handle);

/* Feeds `length` bytes, which are rewritten in place. 0; -1, with nothing changed, when length is
 * above PEMB_MAX_PIECE, an argument is null, pemb_load was not called, or the document would pass
 * 2147483647 bytes. */
PEMB_API int pemb_nexts(PembHandle* handle, unsigned char* bytes, unsigned int length);

/* Scores so far. Null, with nothing written, before the third character; null with *best = -1 when
 * no model wins; otherwise the scores, *best the winner's index and *score the ratio. */
PEMB_API float* pemb_get_scores(PembHandle* handle, int* best, float* score);

/* Name of model `index`: two letters of language, then the charset. Null when there is none. */
PEMB_API char* pemb_model_name(PembHandle* handle, int index);

/* Number of models in the group; 0 for a null handle. */
PEMB_API int pemb_nb_models(PembHandle* handle);

/* Releases the group, the evaluator and the extractor; the handle record stays allocated. */
PEMB_API void pemb_dispose(PembHandle* handle);

/* Compiles the trigram models `names` (`count` of them, 1 to 199) into the group file `outfile`.
 * A name that begins with "/" or "." is a path of its own, any other lies in `dir` (null: none is
 * prefixed). `factfile` (may be null) lists the sets of models that share values. 0; -1 count out
 * of range; -2 fact-set file cannot be opened; -3 building failed; -4 writing failed; -5 a copy of
 * a name failed. Part of the offline library, not of the runtime one. */
PEMB_API int pemb_group(const char* dir, char** names, int count, const char* factfile,
                        const char* outfile);

#ifdef __cplusplus
}
#endif

#endif /* ORVA_LIB_API_PEMB_H_ */
