// Every allocation of a handle's life fails once, and once for ever: the result is a refusal or the
// right answer, and nothing stays behind.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "lib/api/pemb.h"
#include "lib/util/accounting.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/temp_dir.h"

using orva::FailingAllocations;

namespace {

constexpr int kMaxModels = 256;

struct Answer {
  bool given = false;
  int best = -1;
  float ratio = 0;
  float scores[kMaxModels] = {};
};

// Loads, feeds in pieces and asks once. Itself it allocates nothing.
Answer answer(const char* path, const unsigned char* text, unsigned length) {
  static unsigned char piece[PEMB_MAX_PIECE];
  Answer result;
  PembHandle* const handle = pemb_init(path);
  if (handle == nullptr) return result;
  bool ok = pemb_load(handle) == 0;
  for (unsigned at = 0; ok && at < length; at += PEMB_MAX_PIECE) {
    const unsigned n = std::min<unsigned>(length - at, PEMB_MAX_PIECE);
    for (unsigned i = 0; i < n; ++i) piece[i] = text[at + i];
    ok = pemb_nexts(handle, piece, n) == 0;
  }
  const float* const scores = ok ? pemb_get_scores(handle, &result.best, &result.ratio) : nullptr;
  if (scores != nullptr) {
    result.given = true;
    for (int m = 0; m < pemb_nb_models(handle); ++m) result.scores[m] = scores[m];
  }
  pemb_dispose(handle);
  free(handle);
  return result;
}

void expect_same(const Answer& got, const Answer& right, long n) {
  EXPECT_EQ(got.best, right.best) << n;
  EXPECT_EQ(got.ratio, right.ratio) << n;
  for (int m = 0; m < kMaxModels; ++m) EXPECT_EQ(got.scores[m], right.scores[m]) << n;
}

void fail_each(const std::string& path, const std::string& text, FailingAllocations::Mode mode) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
  const auto length = static_cast<unsigned>(text.size());
  const Answer right = answer(path.c_str(), bytes, length);
  ASSERT_TRUE(right.given);
  const int before = _MallocChkNbBytes;
  int nb_refused = 0;
  for (long n = 0;; ++n) {
    bool failed = false;
    Answer got;
    {
      const FailingAllocations failing(n, mode);
      got = answer(path.c_str(), bytes, length);
      failed = failing.has_failed();
    }
    ASSERT_EQ(_MallocChkNbBytes, before) << n;
    if (got.given) expect_same(got, right, n);
    nb_refused += got.given ? 0 : 1;
    if (failed) continue;
    ASSERT_TRUE(got.given);
    break;
  }
  EXPECT_GT(nb_refused, 10);
}

}  // namespace

TEST(AllocationFailure, OnTheTinyGroupEachIsSurvived) {
  const orva::TempDir dir;
  const std::string path = dir.file("Model.grp", orva::TinyGroup().bytes());
  fail_each(path, "abababxab", FailingAllocations::kOnce);
  fail_each(path, "abababxab", FailingAllocations::kForEver);
}

TEST(AllocationFailure, OnAGroupOfRealModelsEachIsSurvived) {
  const std::string path = std::string(ORVA_SOURCE_DIR) + "/tests/host/models/Model.grp";
  // Enough different trigrams for every way of adding up.
  std::string text;
  for (const char* name : {"de-iso-8859-1.txt", "ja-shift_jis.txt", "fr-utf-8.txt", "ru-koi8-r.txt",
                           "zh-big5.txt", "el-utf-8.txt", "ko-euc-kr.txt"}) {
    text += orva::bytes_of(std::string(ORVA_SOURCE_DIR) + "/examples/documents/" + name);
  }
  fail_each(path, text, FailingAllocations::kOnce);
  fail_each(path, text, FailingAllocations::kForEver);
}
