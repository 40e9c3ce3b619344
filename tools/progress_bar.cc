#include "tools/progress_bar.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace orva {
namespace {

constexpr int kWidth = 40;

}  // namespace

ProgressBar::ProgressBar(std::string what)
    : what_(std::move(what)), on_terminal_(isatty(STDERR_FILENO) != 0) {}

void ProgressBar::at(uint64_t done, uint64_t all) {
  if (!on_terminal_ || all == 0) return;
  const int percent = static_cast<int>(done >= all ? 100 : done * 100 / all);
  if (percent == shown_percent_) return;
  shown_percent_ = percent;
  const std::string bar(static_cast<size_t>(percent * kWidth / 100), '#');
  fprintf(stderr, "\r%s [%-*s] %3d%%", what_.c_str(), kWidth, bar.c_str(), percent);
}

void ProgressBar::wipe() {
  if (shown_percent_ >= 0) fprintf(stderr, "\r\033[K");
  shown_percent_ = -1;
}

}  // namespace orva
