// For models/calibrate: what each answer rests on and whether it was right, a line a document.
//
//   orva_grounds MANIFEST [COLUMN]
//
// The manifest is as for `orva eval`, the column as its --piece. Fields, between tabs: the ground's
// number, margin, language margin, length, high bytes, misfit, whether the charset was right (1 or
// 0), whether the language was (- when it is not known), the probability of each as it stands, the
// label, the answer, the label's language, the answer's. Documents without an answer are left out.
#include <cstdio>
#include <string>
#include <vector>

#include "lib/accuracy/judge.h"
#include "lib/accuracy/manifest.h"
#include "lib/detect/builtin_models.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/detector.h"
#include "tools/documents.h"
#include "tools/report.h"

namespace {

bool read_whole(const std::string& name, std::string* bytes) {
  std::string error;
  if (orva::read_whole_document(name, bytes, &error)) return true;
  orva::report_error(name, error);
  return false;
}

void print_grounds(const orva::LabelledDocument& document, const std::string& bytes,
                   orva::Detector* detector) {
  detector->reset();
  detector->feed(bytes);
  const orva::Decision& decision = detector->finish();
  if (decision.candidates.empty()) return;
  const orva::Candidate& best = decision.candidates.front();
  const std::string answer = orva::kCharsets[best.charset].iana;
  const std::string known = orva::plain_language(document.language);
  const std::string language =
      best.language < 0 ? ""
                        : orva::plain_language(
                              detector->tables().languages()[static_cast<size_t>(best.language)]);
  const orva::Grounds& grounds = decision.grounds;
  printf("%d\t%.6g\t%.6g\t%.0f\t%.0f\t%.4g\t%d\t%s\t%.4f\t%.4f\t%s\t%s\t%s\t%s\n",
         static_cast<int>(grounds.ground), grounds.margin, grounds.language_margin, grounds.length,
         grounds.high, grounds.misfit,
         orva::judge(document.charsets, bytes, answer).same_text ? 1 : 0,
         known.empty() ? "-" : (known == language ? "1" : "0"), best.probability,
         best.language_probability, document.charsets.front().c_str(), answer.c_str(),
         known.c_str(), language.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    fputs("usage: orva_grounds MANIFEST [COLUMN]\n", stderr);
    return 2;
  }
  const std::string manifest = argv[1];
  std::string text;
  std::vector<orva::LabelledDocument> documents;
  std::string error;
  if (!read_whole(manifest, &text)) return 2;
  if (!orva::read_manifest(text, argc == 3 ? argv[2] : "", &documents, &error)) {
    orva::report_error(manifest, error);
    return 2;
  }
  const auto tables = orva::builtin_models();
  if (tables == nullptr) return 2;
  orva::Detector detector(tables);
  const std::string folder = manifest.substr(0, manifest.rfind('/') + 1);
  for (const orva::LabelledDocument& document : documents) {
    std::string bytes;
    if (!read_whole(folder + document.path, &bytes)) return 2;
    if (!cut_piece(document, &bytes)) return 2;
    print_grounds(document, bytes, &detector);
  }
  return 0;
}
