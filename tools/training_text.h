// The texts of one training as one stream: file after file, converted where asked.
//
//   orva::TrainingText text({"a.txt", "b.txt"}, orva::find_charset("KOI8-R"));
//   FILE* stream = text.open();     // closed with the object
//   ... read to the end ...
//   if (!text.error().empty()) ...
#ifndef ORVA_TOOLS_TRAINING_TEXT_H_
#define ORVA_TOOLS_TRAINING_TEXT_H_

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "lib/detect/charset_table.h"

namespace orva {

class TrainingText {
 public:
  // Largest text that one training takes, in bytes as the trainer sees them.
  static constexpr uint64_t kMaxBytes = 1000000000;

  // `charset` null: bytes as they are; else UTF-8 is converted to it, a leading byte order mark of
  // each file dropped. `on_progress` is told the bytes read and the bytes there are.
  TrainingText(std::vector<std::string> paths, const Charset* charset,
               std::function<void(uint64_t done, uint64_t all)> on_progress);
  ~TrainingText();
  TrainingText(const TrainingText&) = delete;
  TrainingText& operator=(const TrainingText&) = delete;

  // The stream; null when there is no memory for it.
  FILE* open();

  // Why the stream ended early: "PATH: reason". Empty when it did not.
  const std::string& error() const { return error_; }
  uint64_t delivered() const { return delivered_; }
  // Characters that the charset cannot hold and that were left out.
  uint64_t dropped() const { return dropped_; }

 private:
  static ssize_t read_cookie(void* cookie, char* buffer, size_t size);
  size_t read(char* buffer, size_t size);
  bool refill();
  bool open_next();
  bool convert_line(size_t length);
  bool fail(const std::string& path, const std::string& reason);

  std::vector<std::string> paths_;
  const Charset* charset_;
  std::function<void(uint64_t, uint64_t)> on_progress_;
  FILE* stream_ = nullptr;
  FILE* file_ = nullptr;
  size_t next_path_ = 0;
  uint64_t all_bytes_ = 0;  // sizes of the files, as far as they are known
  uint64_t read_bytes_ = 0;
  uint64_t file_offset_ = 0;  // of the first byte of line_ that came from this file
  size_t carried_ = 0;        // bytes of line_ that came from the file before
  uint64_t carried_offset_ = 0;
  std::string line_;   // UTF-8 not yet converted
  std::string ready_;  // bytes to hand out
  size_t ready_at_ = 0;
  uint64_t delivered_ = 0;
  uint64_t dropped_ = 0;
  std::string error_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_TRAINING_TEXT_H_
