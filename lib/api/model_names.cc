#include "lib/api/model_names.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace orva {
namespace {

constexpr int kSkipped = 2;  // bytes in front of each name

struct FileCloser {
  void operator()(FILE* stream) const { fclose(stream); }
};

}  // namespace

ModelNamesResult read_model_names(const ModelNamesReader& reader, int* count) {
  int32_t n = 0;
  if (reader.read(&n, sizeof n) == sizeof n) *count = n;
  if (*count < 0 || *count > kMaxModelNames || !reader.allocate(*count)) {
    *count = 0;
    return kNamesNoTable;
  }
  for (int i = 0; i < *count; ++i) {
    int32_t length = 0;
    if (reader.read(&length, sizeof length) != sizeof length) return kNamesShort;
    if (length < 0 || length > kMaxNameRecord) return kNamesShort;
    char record[kMaxNameRecord + 1];
    if (reader.read(record, length) != length) return kNamesShort;
    record[length] = '\0';
    reader.store(i, length < kSkipped ? "" : record + kSkipped);
  }
  return kNamesOk;
}

bool load_model_names(const std::string& path, std::vector<std::string>* names,
                      std::string* error) {
  const std::unique_ptr<FILE, FileCloser> stream(fopen(path.c_str(), "rb"));
  if (stream == nullptr) {
    *error = strerror(errno);
    return false;
  }
  ModelNamesReader reader;
  reader.read = [&](void* buffer, int size) {
    return static_cast<int>(fread(buffer, 1, static_cast<size_t>(size), stream.get()));
  };
  reader.allocate = [&](int count) {
    names->assign(static_cast<size_t>(count), "");
    return true;
  };
  reader.store = [&](int index, const char* name) { (*names)[static_cast<size_t>(index)] = name; };
  int count = -1;
  switch (read_model_names(reader, &count)) {
    case kNamesOk:
      return true;
    case kNamesNoTable:
      *error = "number of names is not 0 to " + std::to_string(kMaxModelNames);
      return false;
    case kNamesShort:
      break;
  }
  *error = "name record cut short or longer than 255 bytes (before byte " +
           std::to_string(ftell(stream.get())) + ")";
  return false;
}

}  // namespace orva
