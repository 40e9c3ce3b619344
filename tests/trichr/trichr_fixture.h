// Training and saving in a line.
#ifndef ORVA_TESTS_TRICHR_TRICHR_FIXTURE_H_
#define ORVA_TESTS_TRICHR_TRICHR_FIXTURE_H_

#include <cstdlib>
#include <string>

#include "lib/trichr/trichr_model.h"
#include "tests/support/temp_dir.h"

namespace orva {

struct Options {
  int max_tri = 1000000;
  int min_freq = 0;
  float weight = 0.9f;
  float coverage = 0.0f;
  std::string flags;  // of DCXB
  int mode = 0;
  int start = 0;
  int end = -1;

  int on(char letter) const { return flags.find(letter) != std::string::npos ? 1 : 0; }
};

inline void train_file(CTrichrModel& model, const std::string& path, const Options& o) {
  CLidFacs facs;
  if (facs.init(path.c_str(), o.mode, o.start, o.end, o.on('D'), o.on('C'), o.on('X'), o.on('B')) ==
      0) {
    abort();
  }
  model.build(facs, o.max_tri, o.min_freq, o.weight, o.coverage, o.on('D'), o.on('C'), o.on('X'),
              o.on('B'));
}

inline void train(CTrichrModel& model, const std::string& text, const Options& o = {}) {
  const TempDir dir;
  train_file(model, dir.file("text", text), o);
}

inline std::string saved(const CTrichrModel& model, float weight = 0.9f) {
  const TempDir dir;
  const std::string path = dir / "model.tri";
  if (model.save(path.c_str(), weight) != 0) abort();
  return bytes_of(path);
}

inline int load_text(CTrichrModel& model, const std::string& text) {
  const TempDir dir;
  return model.load(dir.file("model.tri", text).c_str());
}

}  // namespace orva

#endif  // ORVA_TESTS_TRICHR_TRICHR_FIXTURE_H_
