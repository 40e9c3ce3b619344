// Texts prepared 64 bytes at once, where the machine can leave out some bytes of a block and close
// up the others.
//
//   if (orva::has_wide_blocks()) size = orva::copy_normal_wide(text, to);
//
// Ownership: none; plain functions.
// Threads:   any number.
#ifndef ORVA_LIB_DETECT_WIDE_BLOCKS_H_
#define ORVA_LIB_DETECT_WIDE_BLOCKS_H_

#include <cstddef>
#include <string_view>

namespace orva {

inline constexpr size_t kWideBlock = 64;

bool has_wide_blocks();

// REQUIRES of both: has_wide_blocks(), and room for a block more than they write.

// What normalised() writes; returns how many bytes.
size_t copy_normal_wide(std::string_view text, char* to);

// Copies `text` up to a "<", a run of blanks as its first one; nothing of it behind a blank. Moves
// `*to` on and returns how many bytes of the text were read.
size_t copy_plain_wide(std::string_view text, char** to, bool* behind_blank);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_WIDE_BLOCKS_H_
