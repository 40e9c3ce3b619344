// UTF-8 in blocks: whether many bytes together are whole characters, without reading those one by
// one.
//
//   i = orva::skip_utf8(bytes, i, &wide);   // up to where characters must be read one by one
//
// Each byte is compared with the three before it: it continues a character if and only if one of
// these begins one that is long enough, and behind a few first bytes it has a range of its own. No
// byte waits for what another one turned out to be, so vectors take many at once.
//
// Ownership: none; plain functions.
// Threads:   any number.
#ifndef ORVA_LIB_DETECT_UTF8_BLOCKS_H_
#define ORVA_LIB_DETECT_UTF8_BLOCKS_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orva {

// Blocks that are checked at once, and the bytes before each that are looked at, too.
inline constexpr size_t kUtf8Block = 64;
inline constexpr size_t kUtf8Before = 3;

// How many of `nb_blocks` hold nothing but UTF-8, a character cut at the end included; adds the
// characters of more than one byte that begin in them to `wide`.
// REQUIRES: the kUtf8Before bytes before the blocks can be read and end a character.
using Utf8Counter = size_t (*)(const char* blocks, size_t nb_blocks, uint64_t* wide);
Utf8Counter plain_utf8_counter();
// The fastest for this machine.
Utf8Counter best_utf8_counter();

// From `i` on, where a character begins, skips whole characters in UTF-8 and adds those of more
// than one byte to `wide`. Stops where a bad one is near, or the end; returns where a character
// begins.
size_t skip_utf8(std::string_view bytes, size_t i, uint64_t* wide);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_UTF8_BLOCKS_H_
