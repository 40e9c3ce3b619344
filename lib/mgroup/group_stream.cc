#include "lib/mgroup/group_stream.h"

namespace orva {

int64_t bytes_left(FILE* stream) {
  const off_t here = ftello(stream);
  if (here < 0 || fseeko(stream, 0, SEEK_END) != 0) return -1;
  const off_t end = ftello(stream);
  if (fseeko(stream, here, SEEK_SET) != 0) return -1;
  return int64_t{end} - here;
}

bool read_word(FILE* stream, int32_t* word) {
  // Kept: a stored -1 is taken for the end of the file, whatever field holds it.
  return fread(word, sizeof *word, 1, stream) == 1 && *word != -1;
}

bool write_word(FILE* stream, int32_t word) { return fwrite(&word, sizeof word, 1, stream) == 1; }

bool read_items(FILE* stream, void* items, size_t item_size, size_t count) {
  return fread(items, item_size, count, stream) == count;
}

bool write_items(FILE* stream, const void* items, size_t item_size, size_t count) {
  return count == 0 || fwrite(items, item_size, count, stream) == count;
}

int read_failure(FILE* stream, const std::string& what, std::string* why) {
  if (why != nullptr) *why = what + " (at byte " + std::to_string(ftello(stream)) + ")";
  return -1;
}

}  // namespace orva
