// What every fuzz target has: one call per input, which must neither crash nor leave an array,
// whatever the bytes. The fuzzing engine calls it, or replay_main.cc with the files of a corpus.
#ifndef ORVA_FUZZ_FUZZ_TARGET_H_
#define ORVA_FUZZ_FUZZ_TARGET_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace orva {

// A file that holds an input as long as the object lives, for readers that take a path.
class InputFile {
 public:
  InputFile(const uint8_t* data, size_t size) : stream_(tmpfile()) {
    if (stream_ == nullptr) return;
    if (size > 0) fwrite(data, 1, size, stream_);
    rewind(stream_);
    path_ = "/proc/self/fd/" + std::to_string(fileno(stream_));
  }
  ~InputFile() {
    if (stream_ != nullptr) fclose(stream_);
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool ok() const { return stream_ != nullptr; }
  FILE* stream() const { return stream_; }
  const char* path() const { return path_.c_str(); }

 private:
  FILE* stream_;
  std::string path_;
};

}  // namespace orva

#endif  // ORVA_FUZZ_FUZZ_TARGET_H_
