// Reading and writing the words and arrays of a group file.
#ifndef ORVA_LIB_MGROUP_GROUP_STREAM_H_
#define ORVA_LIB_MGROUP_GROUP_STREAM_H_

#include <cstdint>
#include <cstdio>
#include <string>

namespace orva {

// Bytes between the position of `stream` and its end; -1 when it cannot tell.
int64_t bytes_left(FILE* stream);

// Reads one word. False at the end of the file, and for a stored -1, which looks the same.
bool read_word(FILE* stream, int32_t* word);
bool write_word(FILE* stream, int32_t word);

// Reads or writes `count` items whole; nothing at all is written for none.
bool read_items(FILE* stream, void* items, size_t item_size, size_t count);
bool write_items(FILE* stream, const void* items, size_t item_size, size_t count);

// Notes in `why`, when there is one, what is wrong at the position of `stream`. Returns -1.
int read_failure(FILE* stream, const std::string& what, std::string* why);

}  // namespace orva

#endif  // ORVA_LIB_MGROUP_GROUP_STREAM_H_
