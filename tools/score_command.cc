#include <cstdio>

#include "lib/api/detection_run.h"
#include "lib/api/markup.h"
#include "tools/classic.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/report.h"

namespace orva {
namespace {

// Prints every score in group order, then the winner. Status 1 when there is none.
int print_scores(PembHandle* handle) {
  int best = -1;
  const RunScores run = read_scores(handle, &best);
  if (run.scores == nullptr) {
    printf("no score\n");
    return kExitNoAnswer;
  }
  for (int m = 0; m < pemb_nb_models(handle); ++m) {
    printf("%s\t%.9g\n", pemb_model_name(handle, m), static_cast<double>(run.scores[m]));
  }
  printf("best\t%s\t%.9g\n", pemb_model_name(handle, best), static_cast<double>(run.ratio));
  return kExitOk;
}

}  // namespace

int run_score(const ScoreOptions& options) {
  PembHandle* handle = open_group(options.group);
  if (handle == nullptr) return kExitError;
  pemb_load(handle);
  int in_markup = 0;
  // Stripping cuts white space across the whole text, so the text is then read whole.
  const size_t block = options.strip_markup ? 0 : PEMB_MAX_PIECE;
  const auto take = [&](char* bytes, size_t length) {
    const size_t kept =
        options.strip_markup ? strip_markup(bytes, length, bytes, &in_markup) : length;
    feed_text(handle, bytes, static_cast<unsigned>(kept));
    return true;
  };
  std::string error;
  int status = kExitError;
  if (read_document(options.file, block, take, &error)) {
    status = print_scores(handle);
  } else {
    report_error(options.file, error);
  }
  close_group(handle);
  return status;
}

}  // namespace orva
