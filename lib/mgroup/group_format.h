// The model group file: two text lines, then a binary body. All words are 32-bit little-endian.
//
//   "Package Lid -- Modele Tricar Version 2.25a (20 oct 1998)\n"
//   "Plateforme  LINUX\n"
//
//    #  content               size
//    1  nb_models             int
//    2  nb_istates            int
//    3  min_for_direct        int
//    4  istates_tsize         int
//    5  istates_chrs_tsize    int
//    6  istates_dnxts_tsize   int
//    7  lstates_tsize         int
//    8  lstates_vals_tsize    int
//    9  def_so_tsize          int
//   10  nb_facts              int
//   11  rm_tridups            int
//   12  rm_caps               int
//   13  rm_digits             int
//   14  rm_blks               int
//   15  model records         nb_models x StoredModel
//   16  model names           per model: int L, then L bytes, the last of them NUL
//   17  istates               istates_tsize x StoredState
//   18  istates_chrs          istates_chrs_tsize bytes
//   19  istates_dnxts         istates_dnxts_tsize x int
//   20  lstates               lstates_tsize x word
//   21  lstates_vals          lstates_vals_tsize x 16 bits
//   22  def_so                def_so_tsize x 16 bits
//   23  unigram nb_models     int
//   24  unigram nb_facts      int
//   25  uch_lps_buff_tsize    int
//   26  models_normlp         unigram nb_models x float
//   27  models_lpmin          unigram nb_models x float
//   28  models_grad           unigram nb_models x float
//   29  uch_lps_buff          uch_lps_buff_tsize x 2 bytes
//   30  uch_lps               256 x word
//
// A word that is -1 cannot be read back: the reader cannot tell it from the end of the file.
#ifndef ORVA_LIB_MGROUP_GROUP_FORMAT_H_
#define ORVA_LIB_MGROUP_GROUP_FORMAT_H_

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace orva {

inline constexpr char kGroupVersion[] = "Package Lid -- Modele Tricar Version 2.25a (20 oct 1998)";
inline constexpr char kGroupPlatform[] = "Plateforme  LINUX";
// Characters of the version line that name the package; what follows is the version.
inline constexpr size_t kGroupPackageLength = 28;
// Room for a header line, its newline and its terminator.
inline constexpr int kGroupLineSize = 100;

// Model indices and fact-set indices share one byte.
inline constexpr int kMaxIndices = 256;
inline constexpr int kNbBytes = 256;  // values of one byte; entries of a direct table
// Stored reference types are offsets from the start of their array.
inline constexpr int kStoredModelSize = 20;
inline constexpr int kStoredStateSize = 8;

struct StoredModel {
  uint32_t name;  // no meaning on disk: written as 0, ignored by the reader
  float normlp;
  float lpmin;
  float grad;
  int32_t fact_no;
};
static_assert(sizeof(StoredModel) == kStoredModelSize);
static_assert(offsetof(StoredModel, fact_no) == 16);
static_assert(std::is_trivially_copyable_v<StoredModel>);

struct StoredState {
  int32_t reference;
  uint32_t info;
};
static_assert(sizeof(StoredState) == kStoredStateSize);
static_assert(offsetof(StoredState, info) == 4);
static_assert(std::is_trivially_copyable_v<StoredState>);

// Internal-state info: bits 0..23 the first successor (0: a direct state), bits 24..31 the number
// of outgoing bytes.
constexpr uint32_t kLow24 = 0xFFFFFF;
constexpr int state_first(uint32_t info) { return static_cast<int>(info & kLow24); }
constexpr int state_count(uint32_t info) { return static_cast<int>(info >> 24); }
constexpr uint32_t state_info(int first, int count) {
  return (static_cast<uint32_t>(first) & kLow24) | (static_cast<uint32_t>(count) << 24);
}

// Leaf word: bits 0..23 (signed) index of its first value, bits 24..31 (signed) their number.
constexpr int leaf_first(uint32_t word) { return static_cast<int32_t>(word << 8) >> 8; }
constexpr int leaf_count(uint32_t word) { return static_cast<int32_t>(word) >> 24; }
// The same number as the builder counts it, without a sign.
constexpr int leaf_count_unsigned(uint32_t word) { return static_cast<int>(word >> 24); }

// Leaf value: low byte an accumulator index, high byte a quantised cost.
constexpr int value_index(uint16_t value) { return value & 0xFF; }
constexpr unsigned value_cost(uint16_t value) { return static_cast<unsigned>(value) >> 8; }

// Unigram word: bits 0..21 the first pair of a byte value, bits 22..31 the number of its pairs.
constexpr uint32_t kLow22 = 0x3FFFFF;
constexpr int unigram_first(uint32_t word) { return static_cast<int>(word & kLow22); }
constexpr int unigram_count(uint32_t word) { return static_cast<int>(word >> 22); }
constexpr uint32_t unigram_word(int first, int count) {
  return (static_cast<uint32_t>(first) & kLow22) | (static_cast<uint32_t>(count) << 22);
}

}  // namespace orva

#endif  // ORVA_LIB_MGROUP_GROUP_FORMAT_H_
