#include "tools/v25a_file.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <locale>
#include <set>
#include <sstream>

namespace orva {
namespace {

constexpr char kFormat[] = "V25a";
constexpr char kSwitches[] = "DCXB";
constexpr char kWeightField[] = "\tTriW=";
constexpr int kNbByteCosts = 256;
constexpr size_t kKeyLength = 6;

std::string at_line(int line, const std::string& what) {
  return "line " + std::to_string(line) + ": " + what;
}

void read_header(const std::string& line, V25aFile* file) {
  for (size_t i = 0; i < 4; ++i) {
    const size_t at = sizeof kFormat - 1 + i;
    if (at < line.size() && line[at] == kSwitches[i]) file->switches += kSwitches[i];
  }
  const size_t field = line.find(kWeightField);
  if (field != std::string::npos) file->weight = line.substr(field + sizeof kWeightField - 1);
}

bool read_number(const std::string& text, double* value) {
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  return static_cast<bool>(in >> *value) && std::isfinite(*value);
}

bool is_plain_key(const std::string& key) {
  return key.size() == kKeyLength && key.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// Keeps one warning of each kind, with the first line it is about.
class Warnings {
 public:
  explicit Warnings(std::vector<std::string>* out) : out_(out) {}
  void add(const std::string& what, int line) {
    if (kinds_.insert(what).second) out_->push_back(at_line(line, what));
  }

 private:
  std::vector<std::string>* out_;
  std::set<std::string> kinds_;
};

// A line of cost and key. False after noting a defect.
bool read_trigram(const std::string& line, int number, V25aFile* file, std::set<std::string>* keys,
                  Warnings* warnings) {
  double cost = 0;
  const size_t tab = line.find('\t');
  if (!read_number(line, &cost)) {
    file->defect = at_line(number, "no finite cost at its start");
    return false;
  }
  if (tab == std::string::npos) {
    file->defect = at_line(number, "no tab between cost and key");
    return false;
  }
  const std::string key = line.substr(tab + 1);
  if (!is_plain_key(key)) warnings->add("key is not six lower-case hexadecimal digits", number);
  if (!keys->insert(key).second) {
    warnings->add("key occurs twice, which shifts the costs after it", number);
  }
  file->lowest_cost = file->nb_trigrams == 0 ? cost : std::min(file->lowest_cost, cost);
  file->highest_cost = file->nb_trigrams == 0 ? cost : std::max(file->highest_cost, cost);
  ++file->nb_trigrams;
  return true;
}

}  // namespace

V25aFile read_v25a(const std::string& path) {
  V25aFile file;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    file.defect = strerror(errno);
    return file;
  }
  Warnings warnings(&file.warnings);
  std::string line;
  if (!std::getline(in, line) || line.compare(0, sizeof kFormat - 1, kFormat) != 0) {
    file.defect = at_line(1, "does not begin with V25a");
    return file;
  }
  read_header(line, &file);
  // The constant, the costs of the single bytes and two scalars may be laid out in any way.
  int number = 1;
  int nb_values = 0;
  while (nb_values < 1 + kNbByteCosts + 2 && std::getline(in, line)) {
    ++number;
    std::istringstream values(line);
    std::string value;
    double parsed = 0;
    while (values >> value) {
      if (!read_number(value, &parsed)) {
        file.defect = at_line(number, "\"" + value + "\" is not a finite number");
        return file;
      }
      ++nb_values;
    }
  }
  if (nb_values < 1 + kNbByteCosts + 2) {
    file.defect = at_line(number, "the file ends before its 259 parameters are complete");
    return file;
  }
  std::set<std::string> keys;
  while (std::getline(in, line)) {
    ++number;
    if (in.eof()) {
      warnings.add("no newline at the end of the file, so its last character is lost", number);
      if (!line.empty()) line.pop_back();
    }
    if (!read_trigram(line, number, &file, &keys, &warnings)) return file;
  }
  return file;
}

}  // namespace orva
