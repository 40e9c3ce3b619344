#include "lib/facs/lid_facs.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "lib/facs/preprocess.h"

namespace {

constexpr int kFront = 2;  // bytes kept in front of the piece

}  // namespace

CLidFacs::~CLidFacs() { drop_name(); }

void CLidFacs::drop_name() {
  if (name_ != nullptr) {
    if (stream_ != nullptr) fclose(stream_);
    free(name_);
  }
  name_ = nullptr;
  stream_ = nullptr;
}

int CLidFacs::init(int rm_tridups, int rm_caps, int rm_digits, int rm_blks) {
  drop_name();
  rm_tridups_ = rm_tridups;
  rm_caps_ = rm_caps;
  rm_digits_ = rm_digits;
  rm_blks_ = rm_blks;
  return 1;
}

int CLidFacs::init(const char* path, int mode, int start, int end, int rm_tridups, int rm_caps,
                   int rm_digits, int rm_blks) {
  if (path == nullptr) return 0;
  drop_name();
  name_ = strdup(path);
  if (name_ == nullptr) return 0;
  stream_ = fopen(path, "rb");
  if (stream_ == nullptr) {
    drop_name();
    return 0;
  }
  return init1(mode, start, end, rm_tridups, rm_caps, rm_digits, rm_blks);
}

int CLidFacs::init(FILE* stream, int mode, int start, int end, int rm_tridups, int rm_caps,
                   int rm_digits, int rm_blks) {
  if (stream == nullptr) return 0;
  drop_name();
  stream_ = stream;
  return init1(mode, start, end, rm_tridups, rm_caps, rm_digits, rm_blks);
}

int CLidFacs::init1(int mode, int start, int end, int rm_tridups, int rm_caps, int rm_digits,
                    int rm_blks) {
  rm_tridups_ = rm_tridups;
  rm_caps_ = rm_caps;
  rm_digits_ = rm_digits;
  rm_blks_ = rm_blks;
  memset(storage_, 0, sizeof storage_);
  index_ = 0;
  position_ = 0;
  filled_ = 0;
  mode_ = mode;
  if (mode == 3) {
    for (int left = start; left > 0 && stream_ != nullptr;) {
      const auto wanted = static_cast<size_t>(std::min(left, kPieceSize));
      const size_t got = fread(storage_ + kFront, 1, wanted, stream_);
      if (got == 0) break;
      left -= static_cast<int>(got);
    }
    // Kept: the rewritten selection makes a later reinit act as mode 1, without skipping again.
    mode_ = 1;
    start = end;
    end = -1;
  }
  start_ = start;
  end_ = end;
  if (end != -1 && (end <= start || start < 0 || end < 0)) mode_ = 0;
  if (mode_ == 2) {
    stop_ = end == -1 ? kNoLimit : end;
    // A hopelessly negative start, possible only without an end, is kept within an int.
    start = std::max(start, -kNoLimit);
    position_ = -start;
    limit_ = stop_ - start + 2;
  } else if (mode_ == 1) {
    limit_ = static_cast<int>(std::min<int64_t>(int64_t{start} + 2, kNoLimit));
    stop_ = end;
  } else {
    limit_ = kNoLimit;
    stop_ = -1;
  }
  return 1;
}

int CLidFacs::reinit() {
  if (name_ == nullptr) return 0;
  if (stream_ != nullptr) fclose(stream_);
  stream_ = fopen(name_, "rb");
  if (stream_ == nullptr) {
    drop_name();
    return 0;
  }
  return init1(mode_, start_, end_, rm_tridups_, rm_caps_, rm_digits_, rm_blks_);
}

int CLidFacs::preprocess(unsigned char* buf, int len) {
  const orva::PreprocessSwitches switches = {rm_tridups_ != 0, rm_caps_ != 0, rm_digits_ != 0,
                                             rm_blks_ != 0};
  return orva::preprocess_text(switches, buf, len);
}

int CLidFacs::remove_tricar_dups(unsigned char* buf, int len) {
  // Kept: the byte before the buffer counts as NUL, so three leading NULs are a run of four.
  int run = 1;
  unsigned char last = 0;
  int at = 0;
  for (; at < len; ++at) {
    run = buf[at] == last ? run + 1 : 1;
    last = buf[at];
    if (run == 4) break;
  }
  if (at == len) return len;
  int out = at;
  for (; at < len; ++at) {
    run = buf[at] == last ? run + 1 : 1;
    last = buf[at];
    if (run <= 3) buf[out++] = buf[at];
    if (run > 4) run = 4;
  }
  buf[out] = 0;
  return out;
}

int CLidFacs::remove_caps(unsigned char* buf, int len) {
  for (int i = 0; i < len; ++i) {
    if (buf[i] >= 'A' && buf[i] <= 'Z') buf[i] = static_cast<unsigned char>(buf[i] + 32);
  }
  return len;
}

int CLidFacs::remove_digits(unsigned char* buf, int len) {
  unsigned char* end =
      std::remove_if(buf, buf + len, [](unsigned char c) { return c >= '0' && c <= '9'; });
  return static_cast<int>(end - buf);
}

int CLidFacs::remove_blks(unsigned char* buf, int len) {
  unsigned char* end = std::remove_if(buf, buf + len, [](unsigned char c) {
    return c == ' ' || c == '\r' || c == '\n' || c == '\t';
  });
  return static_cast<int>(end - buf);
}

// Reads and preprocesses the next piece; false at the end of the input.
bool CLidFacs::fill() {
  unsigned char* piece = storage_ + kFront;
  if (stream_ == nullptr) return false;
  // What was delivered last stays in front of the new piece.
  const unsigned char before[kFront] = {piece[filled_ - 2], piece[filled_ - 1]};
  const size_t got = fread(piece, 1, kPieceSize, stream_);
  if (got == 0) return false;
  memcpy(storage_, before, kFront);
  filled_ = preprocess(piece, static_cast<int>(got));
  index_ = 0;
  return true;
}

void CLidFacs::advance(int n) {
  index_ += n;
  position_ += n;
}

// Moves towards the position at which a new segment begins. That may lie up to two bytes back,
// which the front of the buffer still holds; it never lies further back than that.
void CLidFacs::skip_to_stop(int available) {
  const int distance = stop_ - position_;
  if (distance < 0) {
    index_ += std::max(distance, -kFront);
    position_ = 0;
    return;
  }
  advance(std::min(available, distance));
  if (position_ == stop_) position_ = 0;
}

unsigned char* CLidFacs::get_nexts(int* len, unsigned char** head) {
  *head = nullptr;
  unsigned char* piece = storage_ + kFront;
  for (;;) {
    if (index_ == filled_ && !fill()) return nullptr;
    const int available = filled_ - index_;
    if (available == 0) continue;
    if (position_ < 0) {
      advance(static_cast<int>(std::min<int64_t>(available, -int64_t{position_})));
    } else if (position_ < 2) {
      if (position_ == 0) *head = head_;
      head_[position_] = piece[index_];
      advance(1);
    } else if (position_ < limit_) {
      unsigned char* run = piece + index_;
      *len = std::min(limit_ - position_, available);
      advance(*len);
      return run;
    } else {
      if (stop_ == -1) return nullptr;
      skip_to_stop(available);
    }
  }
}
