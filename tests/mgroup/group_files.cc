#include "tests/mgroup/group_files.h"

#include <cstdio>
#include <cstdlib>

namespace orva {

int load_bytes(CLidMGroup* group, const std::string& bytes, std::string* why) {
  FILE* const stream = tmpfile();
  if (stream == nullptr) abort();
  fwrite(bytes.data(), 1, bytes.size(), stream);
  rewind(stream);
  const int result = group->load(stream, why);
  fclose(stream);
  return result;
}

int load_result(const std::string& bytes) {
  CLidMGroup group;
  return load_bytes(&group, bytes);
}

std::string saved_bytes(const CLidMGroup& group) {
  FILE* const stream = tmpfile();
  if (stream == nullptr) abort();
  if (group.save(stream) != 0) abort();
  std::string bytes(static_cast<size_t>(ftell(stream)), '\0');
  rewind(stream);
  if (fread(bytes.data(), 1, bytes.size(), stream) != bytes.size()) abort();
  fclose(stream);
  return bytes;
}

}  // namespace orva
