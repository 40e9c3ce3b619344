// The fact-set file, seen from the program: what its author may not have meant.
#ifndef ORVA_TOOLS_FACT_FILE_H_
#define ORVA_TOOLS_FACT_FILE_H_

#include <string>
#include <vector>

namespace orva {

// A sentence for each member that no model's file name begins with, and for empty members, which
// match the first model.
std::vector<std::string> unmatched_fact_members(const std::string& path,
                                                const std::vector<std::string>& model_files);

}  // namespace orva

#endif  // ORVA_TOOLS_FACT_FILE_H_
