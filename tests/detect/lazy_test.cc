#include "lib/detect/lazy.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <new>
#include <thread>
#include <vector>

namespace {

using orva::Lazy;

TEST(Lazy, IsMadeOnceForAllThreads) {
  for (int round = 0; round < 50; ++round) {
    const Lazy<int> lazy;
    std::atomic<int> made{0};
    std::vector<const int*> got(4);
    std::vector<std::thread> threads;
    for (const int*& here : got) {
      threads.emplace_back(
          [&] { here = &lazy.get([&] { return std::make_unique<const int>(++made); }); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(made, 1);
    for (const int* here : got) EXPECT_EQ(here, got.front());
    EXPECT_EQ(*got.front(), 1);
  }
}

TEST(Lazy, CanBeAskedAgainWhenMakingItFailed) {
  const Lazy<int> lazy;
  const auto fail = []() -> std::unique_ptr<const int> { throw std::bad_alloc(); };
  EXPECT_THROW(lazy.get(fail), std::bad_alloc);
  EXPECT_THROW(lazy.get(fail), std::bad_alloc);
  EXPECT_EQ(lazy.get([] { return std::make_unique<const int>(7); }), 7);
  EXPECT_EQ(lazy.get(fail), 7);
}

}  // namespace
