#include "tests/tools/run_orva.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

namespace orva {

Ended run_orva(const std::vector<std::string>& arguments, const std::string& input) {
  const std::string program = std::string(ORVA_BINARY_DIR) + "/bin/orva";
  return run_to_end([&] {
    const int fd = open(input.c_str(), O_RDONLY);
    dup2(fd, STDIN_FILENO);
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
  });
}

std::string models_dir() { return std::string(ORVA_SOURCE_DIR) + "/models"; }

std::string vectors_dir() {
  const char* dir = getenv("ORVA_VECTORS");
  return dir == nullptr ? "" : dir;
}

}  // namespace orva
