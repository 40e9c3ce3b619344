// A trained model in the text format "V25a", looked at line by line: what the loader only refuses
// is explained here, and what it takes although it may not be meant is warned of.
#ifndef ORVA_TOOLS_V25A_FILE_H_
#define ORVA_TOOLS_V25A_FILE_H_

#include <string>
#include <vector>

namespace orva {

struct V25aFile {
  std::string switches;  // the letters that are set, of D, C, X and B
  std::string weight;    // as written in the header, empty when it is not
  int nb_trigrams = 0;
  double lowest_cost = 0;  // of the trigrams
  double highest_cost = 0;
  std::string defect;                 // why it cannot be loaded, with the line; empty when it can
  std::vector<std::string> warnings;  // odd keys, repeated keys, a missing final newline
};

// Reads the file `path`.
V25aFile read_v25a(const std::string& path);

}  // namespace orva

#endif  // ORVA_TOOLS_V25A_FILE_H_
