// A file that appears complete or not at all: written beside its final name, read back, renamed.
//
//   orva::OutputFile out("Model.grp");
//   if (!out.open(&error)) ...
//   ... write to out.temporary(), read it back ...
//   if (!out.commit(&error)) ...
//
// Life cycle: without commit the temporary file is removed with the object.
#ifndef ORVA_TOOLS_OUTPUT_FILE_H_
#define ORVA_TOOLS_OUTPUT_FILE_H_

#include <string>

namespace orva {

class OutputFile {
 public:
  explicit OutputFile(std::string path) : path_(std::move(path)) {}
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Makes the temporary file, empty. False, with the reason, when the folder cannot take it.
  bool open(std::string* error);
  // Gives the temporary file its final name, replacing what had it.
  bool commit(std::string* error);

  const std::string& path() const { return path_; }
  const std::string& temporary() const { return temporary_; }

 private:
  std::string path_;
  std::string temporary_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_OUTPUT_FILE_H_
