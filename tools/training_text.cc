#include "tools/training_text.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "lib/detect/converter.h"

namespace orva {
namespace {

constexpr size_t kReadSize = 1 << 16;
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
constexpr size_t kByteOrderMarkSize = 3;

}  // namespace

TrainingText::TrainingText(std::vector<std::string> paths, const Charset* charset,
                           std::function<void(uint64_t, uint64_t)> on_progress)
    : paths_(std::move(paths)), charset_(charset), on_progress_(std::move(on_progress)) {
  for (const std::string& path : paths_) {
    struct stat info;
    if (stat(path.c_str(), &info) == 0) all_bytes_ += static_cast<uint64_t>(info.st_size);
  }
}

TrainingText::~TrainingText() {
  if (stream_ != nullptr) fclose(stream_);
  if (file_ != nullptr) fclose(file_);
}

FILE* TrainingText::open() {
  cookie_io_functions_t functions = {};
  functions.read = read_cookie;
  stream_ = fopencookie(this, "rb", functions);
  return stream_;
}

ssize_t TrainingText::read_cookie(void* cookie, char* buffer, size_t size) {
  return static_cast<ssize_t>(static_cast<TrainingText*>(cookie)->read(buffer, size));
}

size_t TrainingText::read(char* buffer, size_t size) {
  while (ready_at_ == ready_.size()) {
    if (!error_.empty() || !refill()) return 0;
  }
  const size_t count = std::min(size, ready_.size() - ready_at_);
  memcpy(buffer, ready_.data() + ready_at_, count);
  ready_at_ += count;
  delivered_ += count;
  if (delivered_ > kMaxBytes) {
    fail(paths_[next_path_ - 1], "text is longer than one training takes (1000000000 bytes)");
  }
  return count;
}

// Puts further bytes into ready_, if only none. False at the end of the last file or after a
// failure.
bool TrainingText::refill() {
  ready_.clear();
  ready_at_ = 0;
  if (file_ == nullptr && !open_next()) {
    if (!error_.empty() || line_.empty()) return false;
    return convert_line(line_.size());  // the last line of all has no newline
  }
  char block[kReadSize];
  const size_t got = fread(block, 1, sizeof block, file_);
  if (got == 0) {
    const bool failed = ferror(file_) != 0;
    fclose(file_);
    file_ = nullptr;
    if (failed) return fail(paths_[next_path_ - 1], strerror(EIO));
    // What is left of its last line goes on in the next file.
    carried_offset_ = file_offset_;
    carried_ = line_.size();
    return true;
  }
  read_bytes_ += got;
  if (on_progress_) on_progress_(read_bytes_, all_bytes_);
  if (charset_ == nullptr) {
    ready_.assign(block, got);
    return true;
  }
  line_.append(block, got);
  if (file_offset_ == 0 && line_.compare(carried_, kByteOrderMarkSize, kByteOrderMark) == 0) {
    line_.erase(carried_, kByteOrderMarkSize);
    file_offset_ = kByteOrderMarkSize;
  }
  // Lines are converted whole, so that no character and no shifted run is cut.
  const size_t newline = line_.rfind('\n');
  return newline == std::string::npos || convert_line(newline + 1);
}

bool TrainingText::open_next() {
  if (next_path_ == paths_.size()) return false;
  const std::string& path = paths_[next_path_++];
  file_ = fopen(path.c_str(), "rb");
  if (file_ == nullptr) return fail(path, strerror(errno));
  file_offset_ = 0;
  return true;
}

bool TrainingText::convert_line(size_t length) {
  Conversion converted;
  const ConvertResult result =
      encode_text(*charset_, std::string_view(line_).substr(0, length), &converted);
  if (result == kNoConverter) {
    return fail(charset_->iana, "no converter for this charset on this system");
  }
  if (result == kBadInput) {
    const bool in_carried = converted.offset < carried_;
    const uint64_t offset = in_carried ? carried_offset_ + converted.offset
                                       : file_offset_ + converted.offset - carried_;
    const size_t path = in_carried ? next_path_ - 2 : next_path_ - 1;
    return fail(paths_[path], "invalid UTF-8 at byte " + std::to_string(offset));
  }
  dropped_ += converted.dropped;
  ready_ = std::move(converted.bytes);
  line_.erase(0, length);
  file_offset_ += length - std::min(length, carried_);
  carried_ -= std::min(length, carried_);
  return true;
}

bool TrainingText::fail(const std::string& path, const std::string& reason) {
  error_ = path + ": " + reason;
  return false;
}

}  // namespace orva
