// TextBuffer: memory for a text that is written anew for each document, kept from one to the next.
//
//   orva::TextBuffer buffer;
//   char* to = buffer.room(size);          // as an earlier user left it
//
// Life cycle: room any number of times; each takes the place of the last one.
// Ownership:  owns the memory.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_TEXT_BUFFER_H_
#define ORVA_LIB_DETECT_TEXT_BUFFER_H_

#include <cstddef>
#include <vector>

namespace orva {

class TextBuffer {
 public:
  char* room(size_t size) {
    if (bytes_.size() < size) bytes_.resize(size);
    return bytes_.data();
  }

 private:
  std::vector<char> bytes_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TEXT_BUFFER_H_
