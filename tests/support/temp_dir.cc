#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orva {

TempDir::TempDir() {
  std::string name = (std::filesystem::temp_directory_path() / "orva-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) abort();
  path_ = name;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::operator/(std::string_view name) const {
  return path_ + "/" + std::string(name);
}

std::string TempDir::file(std::string_view name, std::string_view bytes) const {
  std::string path = *this / name;
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) abort();
  return path;
}

std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace orva
