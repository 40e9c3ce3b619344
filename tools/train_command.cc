#include <cmath>
#include <cstdio>

#include "lib/facs/lid_facs.h"
#include "lib/trichr/trichr_model.h"
#include "lib/util/accounting.h"
#include "tools/commands.h"
#include "tools/documents.h"
#include "tools/output_file.h"
#include "tools/progress_bar.h"
#include "tools/report.h"
#include "tools/training_text.h"

namespace orva {
namespace {

struct Switches {
  int tridups = 0;
  int caps = 0;
  int digits = 0;
  int blks = 0;
};

// The switches that `letters` names; false when one of them is none.
bool parse_switches(const std::string& letters, Switches* switches) {
  for (const char letter : letters) {
    switch (letter) {
      case 'D':
        switches->tridups = 1;
        break;
      case 'C':
        switches->caps = 1;
        break;
      case 'X':
        switches->digits = 1;
        break;
      case 'B':
        switches->blks = 1;
        break;
      default:
        return false;
    }
  }
  return true;
}

// Whether every text can be read; reports those that cannot.
bool texts_are_readable(const std::vector<std::string>& texts) {
  bool ok = true;
  for (const std::string& text : texts) {
    std::string error;
    if (is_readable_file(text, &error)) continue;
    report_error(text, error);
    ok = false;
  }
  return ok;
}

// Writes the model, reads it back, and gives it its name.
bool write_model(CTrichrModel& model, const TrainOptions& options) {
  OutputFile out(options.output);
  std::string error;
  if (!out.open(&error)) {
    report_error(options.output, error);
    return false;
  }
  CTrichrModel copy;
  if (model.save(out.temporary().c_str(), options.weight) != 0 ||
      copy.load(out.temporary().c_str()) != 0 || copy.nb_tri != model.nb_tri) {
    report_error(options.output, "could not be written and read back");
    return false;
  }
  if (out.commit(&error)) return true;
  report_error(options.output, error);
  return false;
}

}  // namespace

int run_train(const TrainOptions& options) {
  Switches on;
  if (!parse_switches(options.preprocess, &on)) {
    report_error("--preprocess", "takes the letters D, C, X and B");
    return kExitError;
  }
  const Charset* charset = nullptr;
  if (!options.charset.empty()) {
    charset = find_charset(options.charset);
    if (charset == nullptr) {
      report_error(options.charset, "unknown charset");
      return kExitError;
    }
  }
  if (!texts_are_readable(options.texts)) return kExitError;

  ProgressBar bar("training");
  TrainingText text(options.texts, charset,
                    [&](uint64_t done, uint64_t all) { bar.at(done, all); });
  FILE* stream = text.open();
  CLidFacs facs;
  if (stream == nullptr ||
      facs.init(stream, 0, 0, -1, on.tridups, on.caps, on.digits, on.blks) == 0) {
    report_error("train", "out of memory");
    return kExitError;
  }
  CTrichrModel model;
  model.build(facs, options.max_tri, options.min_freq, options.weight, options.coverage, on.tridups,
              on.caps, on.digits, on.blks);
  bar.wipe();
  if (!text.error().empty()) {
    fprintf(stderr, "orva: %s\n", text.error().c_str());
    return kExitError;
  }
  if (!write_model(model, options)) return kExitError;
  const TrainingCounts& counts = model.training;
  printf("%s: %d bytes counted, %d distinct trigrams, %d bigrams, %d trigrams kept\n",
         options.output.c_str(), counts.nb_bytes, counts.nb_trigrams, counts.nb_bigrams,
         model.nb_tri);
  if (charset != nullptr) {
    printf("%s: %llu characters left out that %s cannot hold\n", options.output.c_str(),
           static_cast<unsigned long long>(text.dropped()), charset->iana);
  }
  return kExitOk;
}

}  // namespace orva
