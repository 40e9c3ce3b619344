// One document through a library handle, as the component feeds it: strip, feed, read the winner,
// stop early once the answer is certain.
#ifndef ORVA_LIB_API_DETECTION_RUN_H_
#define ORVA_LIB_API_DETECTION_RUN_H_

#include "lib/api/pemb.h"

namespace orva {

// A confidence ratio strictly above this one ends a document early.
inline constexpr float kEarlyRatio = 0.8F;

// Feeds text of any length in pieces of at most PEMB_MAX_PIECE bytes; the bytes are rewritten. Even an
// empty text makes one call.
void feed_text(PembHandle* handle, char* text, unsigned int length);

// The same for text that must not be written to, through a bounded local piece.
void feed_const_text(PembHandle* handle, const char* text, unsigned int length);

struct RunScores {
  float* scores = nullptr;  // one mean cost per byte and model, null when there was no score
  float ratio = 0;          // confidence ratio, meaningful with scores
};

// Reads the winner into `*best` (left alone before the third character, -1 for none).
RunScores read_scores(PembHandle* handle, int* best);

// Whether these scores end the document early.
bool is_certain(const RunScores& run);

}  // namespace orva

#endif  // ORVA_LIB_API_DETECTION_RUN_H_
