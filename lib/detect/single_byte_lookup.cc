#include <cstring>
#include <vector>

#include "lib/detect/charset_table.h"
#include "lib/detect/single_byte_tables.h"

namespace orva {

namespace {

const uint16_t* find_table(int charset) {
  for (int i = 0; i < kSingleByteTableCount; ++i) {
    if (strcmp(kSingleByteTables[i].name, kCharsets[charset].iana) == 0) {
      return kSingleByteTables[i].decode;
    }
  }
  return nullptr;
}

// The tables of all charsets; null for those that have none.
std::vector<const uint16_t*> tables_of_all() {
  std::vector<const uint16_t*> tables;
  for (int c = 0; c < kCharsetCount; ++c) tables.push_back(find_table(c));
  return tables;
}

}  // namespace

const uint16_t* single_byte_table(int charset) {
  static const std::vector<const uint16_t*> tables = tables_of_all();
  if (charset < 0 || charset >= kCharsetCount) return nullptr;
  return tables[static_cast<size_t>(charset)];
}

}  // namespace orva
