#include "tools/report.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace orva {
namespace {

constexpr long long kFirstAfterMs = 1000;
constexpr long long kEveryMs = 200;

long long now_ms() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

}  // namespace

void report_error(const std::string& name, const std::string& reason) {
  fflush(stdout);
  fprintf(stderr, "orva: %s: %s\n", name.c_str(), reason.c_str());
}

Progress::Progress(size_t nb_items)
    : nb_items_(nb_items), started_ms_(now_ms()), on_terminal_(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() { wipe(); }

void Progress::at(size_t item, const std::string& name) {
  const long long now = now_ms();
  if (!on_terminal_ || now - started_ms_ < kFirstAfterMs || now - shown_ms_ < kEveryMs) return;
  shown_ms_ = now;
  shown_ = true;
  fprintf(stderr, "\r\033[K%zu/%zu %.60s", item, nb_items_, name.c_str());
}

void Progress::wipe() {
  if (shown_) fprintf(stderr, "\r\033[K");
  shown_ = false;
}

}  // namespace orva
