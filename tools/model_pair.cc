#include "tools/model_pair.h"

#include <cstdint>
#include <cstdio>

#include "lib/detect/charset_table.h"

namespace orva {
namespace {

// The 64-bit form of the hash FNV-1a. Source: its authors' Internet draft.
constexpr uint64_t kOffsetBasis = 0xCBF29CE484222325;
constexpr uint64_t kPrime = 0x100000001B3;
constexpr size_t kLanguageLength = 2;

uint64_t hashed(std::string_view bytes, uint64_t hash) {
  for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * kPrime;
  return hash;
}

}  // namespace

std::string pair_fingerprint(std::string_view group, std::string_view names) {
  uint64_t hash = hashed(group, kOffsetBasis);
  for (unsigned shift = 0; shift < 64; shift += 8) {
    const char byte = static_cast<char>(static_cast<uint64_t>(group.size()) >> shift);
    hash = hashed({&byte, 1}, hash);
  }
  hash = hashed(names, hash);
  std::string text;
  for (int shift = 60; shift >= 0; shift -= 4) text += "0123456789abcdef"[hash >> shift & 15];
  return text;
}

std::string pair_defect(const CLidMGroup& group, const std::vector<std::string>& names) {
  if (names.size() != static_cast<size_t>(group.nb_models)) {
    return "not a pair: " + std::to_string(names.size()) + " charset names for " +
           std::to_string(group.nb_models) + " models";
  }
  for (size_t m = 0; m < names.size(); ++m) {
    const std::string model = group.models_part.models[m].name;
    if (model.size() <= kLanguageLength) continue;
    const int own = find_charset_index(model.substr(kLanguageLength));
    const int named = find_charset_index(names[m]);
    // Names that no table has may mean anything.
    if (own < 0 || named < 0 || own == named) continue;
    return "not a pair: model " + std::to_string(m) + " is " + model +
           ", but its charset name is " + names[m];
  }
  return {};
}

}  // namespace orva
