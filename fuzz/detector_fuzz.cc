// The detector: whatever the bytes and wherever they are cut, the same answer, which keeps to its
// promises. The first byte says where to cut, and whether to restrict the answer.
#include <cstring>

#include "fuzz/fuzz_target.h"
#include "lib/detect/orva.h"

namespace {

OrvaDetector* detector() {
  static OrvaModels* const models =
      orva_open_models(ORVA_FUZZ_MODELS "/Model.grp", ORVA_FUZZ_MODELS "/Model.stc", nullptr);
  static OrvaDetector* const made = models == nullptr ? nullptr : orva_new(models);
  return made;
}

void expect(bool holds) {
  if (!holds) __builtin_trap();
}

void expect_sound(OrvaDetector* d, const OrvaResult& result, size_t size) {
  constexpr uint64_t kLimit = ORVA_DEFAULT_LIMIT;
  expect(result.bytes_read == (size < kLimit ? size : kLimit));
  expect(result.probability >= 0 && result.probability <= 1);
  expect((result.charset == nullptr) == (result.nb_candidates == 0));
  expect(result.kind == ORVA_KIND_TEXT || result.charset == nullptr);
  for (int i = 0; i < result.nb_candidates; ++i) {
    OrvaCandidate candidate;
    expect(orva_candidate(d, i, &candidate) == ORVA_OK);
    expect(candidate.charset != nullptr);
    expect(candidate.probability >= 0 && candidate.probability <= result.probability);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  OrvaDetector* const d = detector();
  if (d == nullptr) __builtin_trap();
  if (size == 0) return 0;
  const uint8_t how = data[0];
  const char* const charsets[] = {"GB2312", "GBK", "utf-16", "hz", "latin1"};
  expect(orva_allow_charsets(d, charsets, how % 4 == 0 ? 5 : 0) == ORVA_OK);
  ++data;
  --size;
  OrvaResult whole;
  expect(orva_detect(d, data, size, &whole) == ORVA_OK);
  expect_sound(d, whole, size);
  char charset[64] = "";
  if (whole.charset != nullptr) strncpy(charset, whole.charset, sizeof charset - 1);
  OrvaResult pieces;
  expect(orva_reset(d) == ORVA_OK);
  const size_t cut = size == 0 ? 0 : how % size;
  expect(orva_feed(d, data, cut) >= 0 && orva_feed(d, data + cut, size - cut) >= 0);
  expect(orva_finish(d, &pieces) == ORVA_OK);
  expect(pieces.probability == whole.probability && pieces.kind == whole.kind);
  expect(strcmp(pieces.charset == nullptr ? "" : pieces.charset, charset) == 0);
  return 0;
}
