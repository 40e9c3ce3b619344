// What a piece of code prints, and how a process that it ends is left.
//
//   EXPECT_EQ(stdout_of([] { printff("%d\n", 3); }), "3\n");
//   const Ended ended = run_to_end([] { osd_pwrite(); });
//   EXPECT_EQ(ended.status, 0);
#ifndef ORVA_TESTS_SUPPORT_STREAMS_H_
#define ORVA_TESTS_SUPPORT_STREAMS_H_

#include <functional>
#include <string>

namespace orva {

// The bytes that `body` writes to standard output, and those to standard error.
std::string stdout_of(const std::function<void()>& body);
std::string stderr_of(const std::function<void()>& body);

struct Ended {
  int status = -1;  // exit status; kReturned when `body` came back; minus the signal when killed
  std::string out;
  std::string err;
};

inline constexpr int kReturned = 99;

// Runs `body` in a child process of its own.
Ended run_to_end(const std::function<void()>& body);

}  // namespace orva

#endif  // ORVA_TESTS_SUPPORT_STREAMS_H_
