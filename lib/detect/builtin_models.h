// The models that are part of the library itself.
#ifndef ORVA_LIB_DETECT_BUILTIN_MODELS_H_
#define ORVA_LIB_DETECT_BUILTIN_MODELS_H_

#include <memory>
#include <string_view>

#include "lib/detect/model_tables.h"

namespace orva {

// The files as they are; empty in a library that was built without models.
std::string_view builtin_group();
std::string_view builtin_names();

// The tables, made at the first call and shared from then on while anybody holds them; null when
// there are none.
std::shared_ptr<const ModelTables> builtin_models();

}  // namespace orva

#endif  // ORVA_LIB_DETECT_BUILTIN_MODELS_H_
