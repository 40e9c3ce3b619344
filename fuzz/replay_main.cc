// Calls a fuzz target with each file of the folders that are named, and with damaged forms of it:
// cut short, and with single bytes changed. Takes the place of the fuzzing engine in the tests.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>

#include "fuzz/fuzz_target.h"

namespace {

constexpr int kVariants = 200;  // damaged forms of each file

void call(const std::string& bytes) {
  // A copy of exactly this size, so that reading beyond it is seen.
  const auto copy = std::make_unique<uint8_t[]>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), copy.get());
  LLVMFuzzerTestOneInput(copy.get(), bytes.size());
}

void replay(const std::string& bytes) {
  call(bytes);
  if (bytes.empty()) return;
  std::mt19937 random(static_cast<unsigned>(bytes.size()));
  for (int i = 0; i < kVariants; ++i) {
    std::string damaged = bytes;
    if (i % 4 == 0) damaged.resize(random() % bytes.size());
    for (int n = i % 3; n >= 0 && !damaged.empty(); --n) {
      damaged[random() % damaged.size()] = static_cast<char>(random());
    }
    call(damaged);
  }
}

}  // namespace

int main(int argc, char** argv) {
  int nb_files = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream in(entry.path(), std::ios::binary);
      replay({std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
      ++nb_files;
    }
  }
  printf("%d files\n", nb_files);
  return nb_files > 0 ? 0 : 1;
}
