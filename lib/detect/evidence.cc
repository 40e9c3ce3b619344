#include "lib/detect/evidence.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>

#include "lib/detect/byte_blocks.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/single_byte_tables.h"

namespace orva {

namespace {

constexpr size_t kHeadSize = 16;
constexpr size_t kAtOnce = 16384;

struct Signature {
  std::string_view bytes;
  const char* charset;  // null: a file that is no text
};

// Longer marks first: UTF-32LE begins as UTF-16LE does.
constexpr Signature kMarks[] = {{std::string_view("\xFF\xFE\0\0", 4), "UTF-32LE"},
                                {std::string_view("\0\0\xFE\xFF", 4), "UTF-32BE"},
                                {std::string_view("\xEF\xBB\xBF", 3), "UTF-8"},
                                {std::string_view("\xFF\xFE", 2), "UTF-16LE"},
                                {std::string_view("\xFE\xFF", 2), "UTF-16BE"}};

constexpr Signature kBinary[] = {{std::string_view("\x89PNG\r\n\x1A\n", 8), nullptr},
                                 {std::string_view("\x7F"
                                                   "ELF",
                                                   4),
                                  nullptr},
                                 {std::string_view("PK\x03\x04", 4), nullptr},
                                 {std::string_view("\xFF\xD8\xFF", 3), nullptr},
                                 {std::string_view("GIF87a", 6), nullptr},
                                 {std::string_view("GIF89a", 6), nullptr},
                                 {std::string_view("\x1F\x8B\x08", 3), nullptr},
                                 {std::string_view("BZh9", 4), nullptr},
                                 {std::string_view("\xFD"
                                                   "7zXZ\0",
                                                   6),
                                  nullptr},
                                 {std::string_view("7z\xBC\xAF\x27\x1C", 6), nullptr},
                                 {std::string_view("Rar!\x1A\x07", 6), nullptr},
                                 {std::string_view("OggS\0", 5), nullptr},
                                 {std::string_view("\x28\xB5\x2F\xFD", 4), nullptr},
                                 {std::string_view("\xCA\xFE\xBA\xBE", 4), nullptr},
                                 {std::string_view("\0asm", 4), nullptr}};

const Signature* mark_of(std::string_view head) {
  for (const Signature& s : kMarks) {
    if (head.substr(0, s.bytes.size()) == s.bytes) return &s;
  }
  return nullptr;
}

bool is_private(uint16_t value) { return value >= 0xE000 && value < 0xF8FF; }

// A bit for each byte that text in a single-byte charset does not hold, and for each that is a
// control.
struct ForeignBytes {
  uint64_t always[4] = {};
  uint64_t controls[4] = {};

  explicit ForeignBytes(const uint16_t* table) {
    for (unsigned b = 0; table != nullptr && b < 256; ++b) {
      const uint16_t value = table[b];
      const bool control = value >= 0x80 && value < 0xA0;
      // Lines of a mainframe's text are often set apart by the system that stores it.
      if (b == '\n' && control) continue;
      const uint64_t bit = uint64_t{1} << b % 64;
      if (value == kNoCharacter || is_private(value)) always[b / 64] |= bit;
      // Newlines of EBCDIC decode to one of these controls.
      if (control && value != 0x85) controls[b / 64] |= bit;
    }
  }
};

const ForeignBytes& foreign_to(int charset) {
  static const std::vector<ForeignBytes> all = [] {
    std::vector<ForeignBytes> made;
    for (int c = 0; c < kCharsetCount; ++c) made.emplace_back(single_byte_table(c));
    return made;
  }();
  return all[static_cast<size_t>(charset)];
}

// The charsets that a byte is foreign to, as a character and as a control.
struct ForeignCharsets {
  CharsetSet always;
  CharsetSet with_controls;  // both
};

const ForeignCharsets& foreign_for(unsigned byte) {
  static const std::vector<ForeignCharsets> all = [] {
    assert(kCharsetCount <= CharsetSet::kMost);
    std::vector<ForeignCharsets> made(256);
    for (unsigned b = 0; b < 256; ++b) {
      const auto has = [b](const uint64_t* words) { return (words[b / 64] >> b % 64 & 1) != 0; };
      for (int c = 0; c < kCharsetCount; ++c) {
        const ForeignBytes& foreign = foreign_to(c);
        if (has(foreign.always)) made[b].always.add(c);
        if (has(foreign.always) || has(foreign.controls)) made[b].with_controls.add(c);
      }
    }
    return made;
  }();
  return all[byte];
}

std::vector<UnicodeCheck> unicode_checks() {
  std::vector<UnicodeCheck> checks;
  for (const int width : {2, 4}) {
    for (const bool big : {false, true}) checks.emplace_back(width, big);
  }
  return checks;
}

// Which of the checks tells whether a charset decodes a document.
struct Check {
  enum Kind { kTable, kPart, kMultiByte, kUnicode, kEscapes } kind = kEscapes;
  size_t at = 0;  // among those of the kind
};

Check find_check(int charset) {
  if (single_byte_table(charset) != nullptr) return {Check::kTable, 0};
  if ((kCharsets[charset].flags & kPart) != 0) return {Check::kPart, 0};
  const std::string_view name = kCharsets[charset].iana;
  for (size_t k = 0; k < kMultiByteKinds; ++k) {
    if (name == multi_byte_name(static_cast<MultiByteKind>(k))) return {Check::kMultiByte, k};
  }
  const std::vector<UnicodeCheck> unicode = unicode_checks();
  for (size_t k = 0; k < unicode.size(); ++k) {
    if (name == unicode[k].charset()) return {Check::kUnicode, k};
  }
  return {};
}

const Check& check_of(int charset) {
  static const std::vector<Check> all = [] {
    std::vector<Check> made;
    for (int c = 0; c < kCharsetCount; ++c) made.push_back(find_check(c));
    return made;
  }();
  return all[static_cast<size_t>(charset)];
}

}  // namespace

Evidence::Evidence() : unicode_(unicode_checks()) {
  for (int k = 0; k < kMultiByteKinds; ++k) multi_byte_.emplace_back(static_cast<MultiByteKind>(k));
}

void Evidence::reset() {
  length_ = 0;
  tally_.reset();
  head_.clear();
  for (MultiByteCheck& check : multi_byte_) check.reset();
  for (UnicodeCheck& check : unicode_) check.reset();
  escapes_.reset();
  parts_.reset();
}

void Evidence::feed(std::string_view bytes) {
  if (head_.size() < kHeadSize) head_.append(bytes.substr(0, kHeadSize - head_.size()));
  length_ += bytes.size();
  // A part at a time, so that it is still at hand for the last check.
  for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kAtOnce))) {
    const std::string_view part = bytes.substr(0, kAtOnce);
    tally_.feed(part);
    const size_t ascii = skip_ascii(part, 0);
    for (MultiByteCheck& check : multi_byte_) check.feed(part, ascii);
    for (UnicodeCheck& check : unicode_) check.feed(part);
    escapes_.feed(part);
    if (watch_parts_) parts_.feed(part);
  }
}

const char* Evidence::mark() const {
  const Signature* mark = mark_of(head_);
  return mark == nullptr ? nullptr : mark->charset;
}

size_t Evidence::mark_length() const {
  const Signature* mark = mark_of(head_);
  return mark == nullptr ? 0 : mark->bytes.size();
}

bool Evidence::has_binary_signature() const {
  return std::any_of(std::begin(kBinary), std::end(kBinary), [this](const Signature& s) {
    return std::string_view(head_).substr(0, s.bytes.size()) == s.bytes;
  });
}

bool Evidence::table_decodes(int charset, bool with_controls) const {
  const ForeignBytes& foreign = foreign_to(charset);
  uint64_t found = 0;
  for (size_t w = 0; w < 4; ++w) {
    found |= tally_.present(w) & foreign.always[w];
    if (!with_controls) found |= tally_.present(w) & foreign.controls[w];
  }
  return found == 0;
}

CharsetSet Evidence::undecodable(bool with_controls) const {
  CharsetSet found;
  for (unsigned w = 0; w < 4; ++w) {
    for (uint64_t bits = present(w); bits != 0; bits &= bits - 1) {
      const unsigned byte = 64 * w + static_cast<unsigned>(std::countr_zero(bits));
      const ForeignCharsets& foreign = foreign_for(byte);
      found.add(with_controls ? foreign.always : foreign.with_controls);
    }
  }
  return found;
}

const UnicodeCheck* Evidence::unicode(int charset) const {
  const Check& check = check_of(charset);
  return check.kind == Check::kUnicode ? &unicode_[check.at] : nullptr;
}

bool Evidence::part_decodes(int charset) const {
  if (parts_.length() != length_ || !multi_byte(MultiByteKind::kGb18030).valid()) return false;
  return charset == find_charset_index("GBK") ? parts_.is_gbk() : parts_.is_gb2312();
}

bool Evidence::decodes(int charset, bool with_controls) const {
  const Check& check = check_of(charset);
  if (check.kind == Check::kTable) return table_decodes(charset, with_controls);
  if (check.kind == Check::kPart) return part_decodes(charset);
  if (check.kind == Check::kMultiByte) return multi_byte_[check.at].valid();
  if (check.kind == Check::kUnicode) return unicode_[check.at].valid();
  const char* name = kCharsets[charset].iana;
  const char* escaped = escapes_.charset();
  return escaped != nullptr && strcmp(escaped, name) == 0;
}

}  // namespace orva
