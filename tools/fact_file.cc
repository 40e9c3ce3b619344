#include "tools/fact_file.h"

#include <algorithm>
#include <fstream>

namespace orva {

std::vector<std::string> unmatched_fact_members(const std::string& path,
                                                const std::vector<std::string>& model_files) {
  std::vector<std::string> found;
  std::ifstream in(path, std::ios::binary);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    const std::string place = "line " + std::to_string(number) + ": ";
    if (in.eof()) found.push_back(place + "no newline at its end, so its last character is lost");
    if (line.empty()) continue;
    for (size_t at = 0; at <= line.size();) {
      const size_t end = std::min(line.find('\t', at), line.size());
      const std::string member = line.substr(at, end - at);
      at = end + 1;
      const bool matches = std::any_of(model_files.begin(), model_files.end(),
                                       [&](const std::string& f) { return f.starts_with(member); });
      if (member.empty()) {
        found.push_back(place + "an empty member, which stands for the first model");
      } else if (!matches) {
        found.push_back(place + "\"" + member + "\" matches no model");
      }
    }
  }
  return found;
}

}  // namespace orva
