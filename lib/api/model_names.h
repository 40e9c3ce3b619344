// "Model.stc": the table that names the charset of each model of a group.
//
// All integers are signed 32-bit, little-endian.
//
//   offset  size   field
//   0       4      N, number of records
//   4       ...    N records back to back, record i for model i of the group:
//                    0  4      L, length of what follows, at most 255
//                    4  2      skipped by the reader
//                    6  L - 2  charset name without terminator
#ifndef ORVA_LIB_API_MODEL_NAMES_H_
#define ORVA_LIB_API_MODEL_NAMES_H_

#include <functional>
#include <string>
#include <vector>

namespace orva {

// Largest number of records that is taken for real. Groups hold at most 256 models; the bound keeps a
// damaged count from claiming gigabytes.
inline constexpr int kMaxModelNames = 65536;
inline constexpr int kMaxNameRecord = 255;

enum ModelNamesResult {
  kNamesOk = 0,
  kNamesShort = -1,     // a record is cut short, or its length is not 0 to 255
  kNamesNoTable = -2,   // N is negative or beyond kMaxModelNames, or the table cannot be allocated
};

struct ModelNamesReader {
  // Reads up to `size` bytes and returns how many came.
  std::function<int(void* buffer, int size)> read;
  // Makes a table of `count` empty names; false when that cannot be done.
  std::function<bool(int count)> allocate;
  // Takes the name of model `index`.
  std::function<void(int index, const char* name)> store;
};

// Reads a table. `*count` receives N (0 with kNamesNoTable, since then no table exists); when the
// file is too short for N it keeps its former value, with which the table is made. Names read before
// a failure stay.
ModelNamesResult read_model_names(const ModelNamesReader& reader, int* count);

// Reads the file `path` into `names`. False, with the reason in `error`, when it cannot be opened or
// is not a complete table.
bool load_model_names(const std::string& path, std::vector<std::string>* names, std::string* error);

}  // namespace orva

#endif  // ORVA_LIB_API_MODEL_NAMES_H_
