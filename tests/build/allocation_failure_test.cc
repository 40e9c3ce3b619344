// Every allocation of a build fails once, then from some point on for ever: pemb_group returns, or
// the process ends with the report of a missing row of strings.

#include <gtest/gtest.h>

#include <functional>

#include "lib/api/pemb.h"
#include "lib/util/accounting.h"
#include "tests/build/build_fixture.h"
#include "tests/support/streams.h"

namespace {

int g_until_failure = -1;
bool g_for_ever = false;

bool fails_now() {
  if (g_until_failure < 0) return false;
  if (g_until_failure > 0) {
    --g_until_failure;
    return false;
  }
  if (!g_for_ever) g_until_failure = -1;
  return true;
}

}  // namespace

extern "C" {
void* __real_malloc(size_t size);
void* __real_realloc(void* block, size_t size);
void* __wrap_malloc(size_t size);
void* __wrap_realloc(void* block, size_t size);

void* __wrap_malloc(size_t size) { return fails_now() ? nullptr : __real_malloc(size); }
void* __wrap_realloc(void* block, size_t size) {
  return fails_now() ? nullptr : __real_realloc(block, size);
}
}

namespace {

constexpr int kNotFailed = 50;

// Builds in a child process with allocation `n` failing. Its status tells the result.
orva::Ended build_with_failure(const std::string& dir, const std::string& facts,
                               const std::string& out, int n, bool for_ever) {
  return orva::run_to_end([&] {
    std::string first = "enASCII.tri";
    std::string second = "frASCII.tri";
    char* names[] = {first.data(), second.data()};
    g_until_failure = n;
    g_for_ever = for_ever;
    const int result = pemb_group(dir.c_str(), names, 2, facts.c_str(), out.c_str());
    const bool used = g_until_failure < 0 || for_ever;
    g_until_failure = -1;
    _exit(used && result != 0 ? -result : kNotFailed + (result == 0 ? 0 : 1));
  });
}

void fail_everywhere(bool for_ever) {
  orva::ModelFiles files;
  orva::Costs costs;
  for (int i = 0; i < 700; ++i) {
    costs.emplace_back(std::string{static_cast<char>('a' + i % 13), static_cast<char>('a' + i % 11),
                                   static_cast<char>('a' + i % 17)},
                       static_cast<float>(i % 9));
  }
  files.add("enASCII", costs);
  files.add("frASCII", costs);
  const std::string facts = files.dir().file("facts", "en\tfr\n");
  int nb_failed = 0;
  // Steps of growing width: every one of the first allocations, then a sample of the rest.
  for (int n = 0;; n += 1 + n / 40) {
    const orva::Ended ended =
        build_with_failure(files.dir().path(), facts, files.dir() / "out.grp", n, for_ever);
    if (ended.status == kNotFailed) break;
    const bool missing_row = ended.status == 1 && ended.err.find("Ptr NULL") != std::string::npos;
    ASSERT_TRUE(missing_row || (ended.status >= 3 && ended.status <= 5))
        << "allocation " << n << ": " << ended.status << "\n"
        << ended.err;
    ++nb_failed;
    ASSERT_LT(n, 1000000);
  }
  EXPECT_GT(nb_failed, 40);
}

}  // namespace

TEST(AllocationFailure, OnceAnywhereIsReturned) { fail_everywhere(false); }

TEST(AllocationFailure, ForEverFromAnywhereIsReturned) { fail_everywhere(true); }
