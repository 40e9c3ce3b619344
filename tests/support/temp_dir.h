// A directory that exists as long as its object.
//
//   TempDir dir;
//   const std::string path = dir.file("a.txt", "some bytes");
#ifndef ORVA_TESTS_SUPPORT_TEMP_DIR_H_
#define ORVA_TESTS_SUPPORT_TEMP_DIR_H_

#include <string>
#include <string_view>

namespace orva {

// Life cycle: made empty by the constructor, removed with its contents by the destructor.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  // The path of `name` in the directory.
  std::string operator/(std::string_view name) const;
  // Writes the file `name` and returns its path.
  std::string file(std::string_view name, std::string_view bytes) const;

 private:
  std::string path_;
};

// The bytes of a file; empty when it cannot be read.
std::string bytes_of(const std::string& path);

}  // namespace orva

#endif  // ORVA_TESTS_SUPPORT_TEMP_DIR_H_
