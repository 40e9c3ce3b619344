#include "tests/support/streams.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace orva {
namespace {

std::string content_of(FILE* file) {
  std::string text;
  rewind(file);
  for (int c = getc(file); c != EOF; c = getc(file)) text += static_cast<char>(c);
  fclose(file);
  return text;
}

FILE* temporary_file() {
  FILE* file = tmpfile();
  if (file == nullptr) abort();
  return file;
}

void redirect(FILE* stream, FILE* to) {
  fflush(stream);
  if (dup2(fileno(to), fileno(stream)) < 0) abort();
}

std::string printed_to(FILE* stream, const std::function<void()>& body) {
  FILE* file = temporary_file();
  fflush(stream);
  const int saved = dup(fileno(stream));
  redirect(stream, file);
  body();
  fflush(stream);
  dup2(saved, fileno(stream));
  close(saved);
  return content_of(file);
}

}  // namespace

std::string stdout_of(const std::function<void()>& body) { return printed_to(stdout, body); }
std::string stderr_of(const std::function<void()>& body) { return printed_to(stderr, body); }

Ended run_to_end(const std::function<void()>& body) {
  FILE* out = temporary_file();
  FILE* err = temporary_file();
  fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) abort();
  if (child == 0) {
    redirect(stdout, out);
    redirect(stderr, err);
    body();
    fflush(nullptr);
    _exit(kReturned);
  }
  int status = 0;
  waitpid(child, &status, 0);
  Ended ended;
  ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  ended.out = content_of(out);
  ended.err = content_of(err);
  return ended;
}

}  // namespace orva
