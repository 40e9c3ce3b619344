#include "lib/mgroup/hc_writer.h"

namespace orva {
namespace {

constexpr size_t kBytesPerLine = 16;

}  // namespace

void HcWriter::integer(const char* symbol, int value) const {
  fprintf(h_file_, "extern int %s;\n", symbol);
  fprintf(c_file_, "int %s = %d; \n", symbol, value);
}

void HcWriter::bytes(const char* symbol, const void* data, size_t nb_bytes) const {
  HcWriter array(c_file_, h_file_);
  array.begin_bytes(symbol);
  array.more_bytes(data, nb_bytes);
  array.end_bytes();
}

void HcWriter::begin_bytes(const char* symbol) {
  fprintf(h_file_, "extern unsigned char %s[];\n", symbol);
  fprintf(c_file_, "unsigned char %s[] = {", symbol);
  nb_written_ = 0;
}

void HcWriter::more_bytes(const void* data, size_t nb_bytes) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  for (size_t i = 0; i < nb_bytes; ++i, ++nb_written_) {
    if (nb_written_ % kBytesPerLine == 0) fprintf(c_file_, "\n    ");
    fprintf(c_file_, "%3d,", bytes[i]);
  }
}

void HcWriter::end_bytes() const { fprintf(c_file_, "\n};\n"); }

void HcWriter::begin_names(const char* symbol) const {
  fprintf(h_file_, "extern char *%s[];\n", symbol);
  fprintf(c_file_, "char *%s[] = {\n", symbol);
}

void HcWriter::name(const char* text) const { fprintf(c_file_, "    \"%s\",\n", text); }

void HcWriter::end_names() const { fprintf(c_file_, "};\n"); }

}  // namespace orva
