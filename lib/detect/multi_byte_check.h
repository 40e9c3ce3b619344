// Whether bytes can be text of a multi-byte charset, byte by byte and across pieces.
//
//   orva::MultiByteCheck check(orva::MultiByteKind::kShiftJis);
//   check.feed(piece);
//   if (!check.valid()) printf("no Shift_JIS from byte %llu on\n", check.first_bad());
//
// Own tables decide, so that an answer does not depend on the converters that a machine has. A
// character cut at the end of what was fed is no error.
#ifndef ORVA_LIB_DETECT_MULTI_BYTE_CHECK_H_
#define ORVA_LIB_DETECT_MULTI_BYTE_CHECK_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orva {

enum class MultiByteKind { kUtf8, kShiftJis, kEucJp, kGb18030, kBig5, kEucTw, kEucKr, kJohab };
inline constexpr int kMultiByteKinds = 8;

// The charset-table name of a kind.
const char* multi_byte_name(MultiByteKind kind);

// Length of the character at the start of `bytes` (not empty): 0 when it is none, -1 when the input
// ends within it.
int character_length(MultiByteKind kind, std::string_view bytes);

class MultiByteCheck {
 public:
  explicit MultiByteCheck(MultiByteKind kind) : kind_(kind) {}

  void reset() { *this = MultiByteCheck(kind_); }
  void feed(std::string_view bytes) { feed(bytes, 0); }
  // The same of bytes whose first `nb_ascii` are known to be ASCII.
  void feed(std::string_view bytes, size_t nb_ascii);

  MultiByteKind kind() const { return kind_; }
  bool valid() const { return valid_; }
  uint64_t first_bad() const { return offset_; }
  // Characters of two bytes or more.
  uint64_t wide() const { return wide_; }

 private:
  static constexpr size_t kLongest = 4;
  size_t take(std::string_view bytes);
  size_t skip(std::string_view bytes, size_t i);
  template <typename Length>
  size_t take_by(Length length_of, std::string_view bytes);

  MultiByteKind kind_;
  bool valid_ = true;
  uint64_t offset_ = 0;
  uint64_t wide_ = 0;
  char carried_[kLongest] = {};  // the start of a character that the last piece cut
  size_t nb_carried_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_MULTI_BYTE_CHECK_H_
