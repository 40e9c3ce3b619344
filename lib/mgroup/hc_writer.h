// HcWriter: the items of an exported group, C definitions in a table file and declarations in a
// header.
//
//   orva::HcWriter out(c_file, h_file);
//   out.integer("HC_CLidMGroup_nb_models", 26);
//   out.bytes("HC_CLidMGroup_istates_chrs", chrs, nb_bytes);
//
// Ownership: the streams stay the caller's. Write errors are not detected.
#ifndef ORVA_LIB_MGROUP_HC_WRITER_H_
#define ORVA_LIB_MGROUP_HC_WRITER_H_

#include <cstddef>
#include <cstdio>

class CLidMGroup;

namespace orva {

class HcWriter {
 public:
  HcWriter(FILE* c_file, FILE* h_file) : c_file_(c_file), h_file_(h_file) {}

  void integer(const char* symbol, int value) const;
  // A byte array, sixteen decimal values to a line.
  void bytes(const char* symbol, const void* data, size_t nb_bytes) const;
  // The same in pieces: begin, any number of more, end.
  void begin_bytes(const char* symbol);
  void more_bytes(const void* data, size_t nb_bytes);
  void end_bytes() const;

  void begin_names(const char* symbol) const;
  void name(const char* text) const;
  void end_names() const;

 private:
  FILE* c_file_;
  FILE* h_file_;
  size_t nb_written_ = 0;  // bytes of the array that is open
};

// The whole of both files. 0 or -1.
int write_export(const CLidMGroup& group, FILE* c_file, FILE* h_file);

}  // namespace orva

#endif  // ORVA_LIB_MGROUP_HC_WRITER_H_
