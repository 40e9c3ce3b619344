#include "lib/detect/converter.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "lib/detect/hz_codec.h"
#include "lib/detect/iconv_codec.h"
#include "lib/detect/single_byte_tables.h"
#include "lib/detect/utf_codec.h"
#include "lib/detect/vietnamese.h"

namespace orva {

namespace {

bool is(const Charset& charset, const char* name) { return strcmp(charset.iana, name) == 0; }

bool is_big_endian(const Charset& charset) { return charset.iana[strlen(charset.iana) - 2] == 'B'; }

Character read_unicode(const Charset& charset, std::string_view bytes) {
  if ((charset.flags & kUtf16) != 0) return read_utf16(bytes, is_big_endian(charset));
  if ((charset.flags & kUtf32) != 0) return read_utf32(bytes, is_big_endian(charset));
  return read_utf8(bytes);
}

void append_unicode(const Charset& charset, uint32_t value, std::string* out) {
  if ((charset.flags & kUtf16) != 0) return append_utf16(value, is_big_endian(charset), out);
  if ((charset.flags & kUtf32) != 0) return append_utf32(value, is_big_endian(charset), out);
  append_utf8(value, out);
}

ConvertResult decode_unicode(const Charset& charset, std::string_view bytes, Conversion* out) {
  while (out->offset < bytes.size()) {
    const Character c = read_unicode(charset, bytes.substr(out->offset));
    out->cut = c.state == Character::kCut;
    if (c.state == Character::kBad) return kBadInput;
    if (out->cut) break;
    append_utf8(c.value, &out->bytes);
    out->offset += c.length;
  }
  return kConverted;
}

ConvertResult decode_table(const uint16_t* table, std::string_view bytes, Conversion* out) {
  for (; out->offset < bytes.size(); ++out->offset) {
    const uint16_t value = table[static_cast<unsigned char>(bytes[out->offset])];
    if (value == kNoCharacter) return kBadInput;
    append_utf8(value, &out->bytes);
  }
  return kConverted;
}

// The way back through a decode table.
class Encoder {
 public:
  explicit Encoder(const uint16_t* table) {
    for (unsigned b = 0; b < 256; ++b) {
      if (table[b] != kNoCharacter) entries_.emplace_back(table[b], static_cast<char>(b));
    }
    // The lowest byte wins where two stand for one character.
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const Entry& a, const Entry& b) { return a.first < b.first; });
  }

  bool append(uint32_t value, std::string* out) const {
    const auto at = std::lower_bound(entries_.begin(), entries_.end(), value,
                                     [](const Entry& e, uint32_t v) { return e.first < v; });
    if (at == entries_.end() || at->first != value) return false;
    out->push_back(at->second);
    return true;
  }

 private:
  using Entry = std::pair<uint16_t, char>;
  std::vector<Entry> entries_;
};

// Reads all of `utf8` and hands each character to `take`, which says whether the target holds it.
template <typename Take>
ConvertResult each_character(std::string_view utf8, Conversion* out, Take take) {
  while (out->offset < utf8.size()) {
    const Character c = read_utf8(utf8.substr(out->offset));
    if (c.state != Character::kGood) return kBadInput;
    if (!take(c.value)) ++out->dropped;
    out->offset += c.length;
  }
  return kConverted;
}

// A letter that windows-1258 writes as a base letter and a tone mark.
bool append_with_tone(const Encoder& encoder, uint32_t value, std::string* out) {
  const VietnameseLetter* parts = find_vietnamese_letter(value);
  if (parts == nullptr) return false;
  const size_t before = out->size();
  if (encoder.append(parts->base, out) && encoder.append(parts->tone, out)) return true;
  out->resize(before);
  return false;
}

ConvertResult encode_table(const Charset& charset, const uint16_t* table, std::string_view utf8,
                           Conversion* out) {
  const Encoder encoder(table);
  const bool tones = is(charset, "windows-1258");
  return each_character(utf8, out, [&](uint32_t value) {
    return encoder.append(value, &out->bytes) ||
           (tones && append_with_tone(encoder, value, &out->bytes));
  });
}

}  // namespace

ConvertResult decode_bytes(const Charset& charset, std::string_view bytes, Conversion* out) {
  *out = Conversion{};
  if ((charset.flags & kUnicode) != 0) return decode_unicode(charset, bytes, out);
  const uint16_t* table = single_byte_table(charset_index(&charset));
  if (table != nullptr) return decode_table(table, bytes, out);
  if (is(charset, "HZ-GB-2312")) return hz_decode(bytes, out);
  return iconv_decode(charset.iconv, bytes, out);
}

ConvertResult encode_text(const Charset& charset, std::string_view utf8, Conversion* out) {
  *out = Conversion{};
  if ((charset.flags & kUnicode) != 0) {
    return each_character(utf8, out, [&](uint32_t value) {
      append_unicode(charset, value, &out->bytes);
      return true;
    });
  }
  const uint16_t* table = single_byte_table(charset_index(&charset));
  if (table != nullptr) return encode_table(charset, table, utf8, out);
  const ConvertResult valid = each_character(utf8, out, [](uint32_t) { return true; });
  if (valid != kConverted) return valid;
  *out = Conversion{};
  if (is(charset, "HZ-GB-2312")) return hz_encode(utf8, out);
  return iconv_encode(charset.iconv, utf8, out);
}

}  // namespace orva
