#include "lib/api/detection_run.h"

#include <cstring>

namespace orva {

void feed_text(PembHandle* handle, char* text, unsigned int length) {
  auto* bytes = reinterpret_cast<unsigned char*>(text);
  for (; length > PEMB_MAX_PIECE; bytes += PEMB_MAX_PIECE, length -= PEMB_MAX_PIECE) {
    pemb_nexts(handle, bytes, PEMB_MAX_PIECE);
  }
  pemb_nexts(handle, bytes, length);
}

void feed_const_text(PembHandle* handle, const char* text, unsigned int length) {
  char piece[PEMB_MAX_PIECE];
  for (; length > PEMB_MAX_PIECE; text += PEMB_MAX_PIECE, length -= PEMB_MAX_PIECE) {
    memcpy(piece, text, PEMB_MAX_PIECE);
    feed_text(handle, piece, PEMB_MAX_PIECE);
  }
  if (length > 0) memcpy(piece, text, length);
  feed_text(handle, piece, length);
}

RunScores read_scores(PembHandle* handle, int* best) {
  RunScores run;
  run.scores = pemb_get_scores(handle, best, &run.ratio);
  return run;
}

bool is_certain(const RunScores& run) { return run.scores != nullptr && run.ratio > kEarlyRatio; }

}  // namespace orva
