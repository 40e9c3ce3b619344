// Text forms of the host platform's values.
#ifndef ORVA_TOOLS_ORVA_HOST_HOST_TEXT_H_
#define ORVA_TOOLS_ORVA_HOST_HOST_TEXT_H_

#include <string>

#include "platform/file.h"

namespace orva {

// {m0-m1-m2-m3[0..1]-m3[2..7]}
std::string id_text(const nsID& id);
// False when `text` is not of that form.
bool parse_id(const std::string& text, nsID* id);

// The name of a result code, or its number when it has none.
std::string result_text(nsresult rv);

// The path of `file`; empty when there is none.
std::string path_text(nsIFile* file);

// A copy from the platform's allocator; null when it cannot be allocated.
char* host_copy(const std::string& text);

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_HOST_TEXT_H_
