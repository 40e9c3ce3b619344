#include "tools/names_file.h"

#include <cstdint>
#include <cstring>
#include <fstream>

#include "lib/api/model_names.h"
#include "tools/output_file.h"
#include "tools/report.h"

namespace orva {
namespace {

constexpr size_t kSkipped = 2;  // bytes in front of each name that readers skip; written as 0

void append_int(int32_t value, std::string* bytes) {
  char raw[sizeof value];
  memcpy(raw, &value, sizeof value);
  bytes->append(raw, sizeof raw);
}

std::string table_bytes(const std::vector<std::string>& names) {
  std::string bytes;
  append_int(static_cast<int32_t>(names.size()), &bytes);
  for (const std::string& name : names) {
    append_int(static_cast<int32_t>(name.size() + kSkipped), &bytes);
    bytes.append(kSkipped, '\0');
    bytes += name;
  }
  return bytes;
}

}  // namespace

bool write_model_names(const std::string& path, const std::vector<std::string>& names) {
  OutputFile out(path);
  std::string error;
  if (!out.open(&error)) {
    report_error(path, error);
    return false;
  }
  std::ofstream(out.temporary(), std::ios::binary) << table_bytes(names);
  std::vector<std::string> copy;
  if (load_model_names(out.temporary(), &copy, &error) && copy != names) {
    error = "could not be written and read back";
  }
  if (error.empty() && out.commit(&error)) return true;
  report_error(path, error);
  return false;
}

}  // namespace orva
