// Sample: the part of a document that the models are asked about. A bounded one says as much as the
// whole, if it holds the bytes that tell charsets apart: the beginning, and from the rest the lines
// with bytes above 0x7F.
//
// Life cycle: reset starts a new document.
// Threads:    one at a time.
#ifndef ORVA_LIB_DETECT_SAMPLE_H_
#define ORVA_LIB_DETECT_SAMPLE_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "lib/detect/text_buffer.h"
#include "lib/detect/wide_blocks.h"

namespace orva {

class Sample {
 public:
  // Bytes taken from the beginning as they are, and at most in all.
  static constexpr size_t kHead = 16384;
  static constexpr size_t kLimit = 32768;
  // A longer line is cut here.
  static constexpr size_t kLongestLine = 512;

  void reset();
  void feed(std::string_view bytes);
  // What was taken so far, the line under way included.
  std::string_view text();

 private:
  size_t take_line(std::string_view bytes);
  void end_line();

  std::string text_;
  std::string line_;
  bool high_ = false;  // the line under way has a byte above 0x7F
};

// A copy without tags: "<" up to the next ">", when what follows "<" can begin a tag and the tag
// ends within reach. Of a run of blanks one is kept.
std::string without_markup(std::string_view text);
// The same in a buffer, which `text` is not part of.
std::string_view without_markup(std::string_view text, TextBuffer* to,
                                bool wide = has_wide_blocks());

// The same, unless most of what tells charsets apart stands within tags: then all of it.
// It is in the buffer, or `text` itself.
std::string_view main_text(std::string_view text, TextBuffer* to);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_SAMPLE_H_
