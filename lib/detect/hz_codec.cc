#include "lib/detect/hz_codec.h"

#include <string>
#include <vector>

#include "lib/detect/iconv_codec.h"
#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

constexpr char kGb2312[] = "EUC-CN";
constexpr unsigned char kHighBit = 0x80;

unsigned char byte_of(char c) { return static_cast<unsigned char>(c); }

bool is_gb_byte(char c) { return byte_of(c) >= 0x21 && byte_of(c) <= 0x7E; }

char with_high_bit(char c) { return static_cast<char>(byte_of(c) | kHighBit); }
char without_high_bit(char c) { return static_cast<char>(byte_of(c) & ~kHighBit); }

// HZ rewritten as EUC, with each byte's offset in the HZ text, so that the C library's reader can
// judge the pairs.
struct AsEuc {
  std::string bytes;
  std::vector<size_t> from;
  size_t offset = 0;  // where reading stopped
  bool bad = false;
  bool cut = false;
};

void put(AsEuc* euc, char c, size_t at) {
  euc->bytes.push_back(c);
  euc->from.push_back(at);
}

AsEuc hz_to_euc(std::string_view hz) {
  AsEuc euc;
  bool pairs = false;
  size_t i = 0;
  while (i < hz.size()) {
    const bool last = i + 1 == hz.size();
    const char c = hz[i];
    if (byte_of(c) >= 0x80) {
      euc.bad = true;
      break;
    }
    if (c == '\n') pairs = false;
    if (c == '~' || (pairs && is_gb_byte(c))) {
      if (last) {
        euc.cut = true;
        break;
      }
      const char d = hz[i + 1];
      if (c == '~' && (d == '{' || d == '}')) {
        pairs = d == '{';
      } else if (c == '~' && d == '\n' && !pairs) {
        // The lines are joined.
      } else if (c == '~' && d == '~' && !pairs) {
        put(&euc, '~', i);
      } else if (pairs && is_gb_byte(d)) {
        put(&euc, with_high_bit(c), i);
        put(&euc, with_high_bit(d), i);
      } else {
        euc.bad = true;
        break;
      }
      i += 2;
    } else {
      put(&euc, c, i);
      ++i;
    }
  }
  euc.offset = i;
  return euc;
}

}  // namespace

ConvertResult hz_decode(std::string_view bytes, Conversion* out) {
  const AsEuc euc = hz_to_euc(bytes);
  const ConvertResult result = iconv_decode(kGb2312, euc.bytes, out);
  if (result == kNoConverter) return result;
  if (result == kBadInput) {
    out->offset = euc.from[out->offset];
    return result;
  }
  out->offset = euc.offset;
  out->cut = euc.cut;
  return euc.bad ? kBadInput : kConverted;
}

ConvertResult hz_encode(std::string_view utf8, Conversion* out) {
  Conversion euc;
  const ConvertResult result = iconv_encode(kGb2312, utf8, &euc);
  if (result != kConverted) return result;
  bool pairs = false;
  for (size_t i = 0; i < euc.bytes.size(); ++i) {
    const char c = euc.bytes[i];
    const bool wide = byte_of(c) >= 0x80;
    if (wide != pairs) out->bytes += wide ? "~{" : "~}";
    pairs = wide;
    if (wide) {
      out->bytes.push_back(without_high_bit(c));
      out->bytes.push_back(without_high_bit(euc.bytes[++i]));
    } else {
      if (c == '~') out->bytes.push_back('~');
      out->bytes.push_back(c);
    }
  }
  if (pairs) out->bytes += "~}";
  out->dropped = euc.dropped;
  out->offset = utf8.size();
  return kConverted;
}

}  // namespace orva
