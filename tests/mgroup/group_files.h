// Words for tests about group files.
#ifndef ORVA_TESTS_MGROUP_GROUP_FILES_H_
#define ORVA_TESTS_MGROUP_GROUP_FILES_H_

#include <string>

#include "lib/mgroup/lid_mgroup.h"

namespace orva {

// The result of loading these bytes into `group`, and the reason of a refusal.
int load_bytes(CLidMGroup* group, const std::string& bytes, std::string* why = nullptr);
// The same into a group of its own.
int load_result(const std::string& bytes);
// What the group is written as.
std::string saved_bytes(const CLidMGroup& group);

}  // namespace orva

#endif  // ORVA_TESTS_MGROUP_GROUP_FILES_H_
