#include "lib/detect/iconv_codec.h"

#include <iconv.h>

#include <cerrno>
#include <string>

#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

constexpr size_t kChunk = 4096;

// Owns a conversion descriptor.
class Descriptor {
 public:
  Descriptor(const char* to, const char* from) : cd_(iconv_open(to, from)) {}
  ~Descriptor() {
    if (valid()) iconv_close(cd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool valid() const { return cd_ != reinterpret_cast<iconv_t>(-1); }

  // Converts from `*in` (null: ends the shift state) and appends; returns iconv's errno, 0 at the
  // end.
  int run(std::string_view* in, std::string* out) {
    // iconv never writes to its input, though its type says so.
    char* from = in == nullptr ? nullptr : const_cast<char*>(in->data());
    size_t left = in == nullptr ? 0 : in->size();
    int failure = 0;
    do {
      char chunk[kChunk];
      char* to = chunk;
      size_t room = kChunk;
      errno = 0;
      const size_t done = iconv(cd_, in == nullptr ? nullptr : &from, &left, &to, &room);
      failure = done == static_cast<size_t>(-1) ? errno : 0;
      out->append(chunk, kChunk - room);
    } while (failure == E2BIG);
    if (in != nullptr) in->remove_prefix(in->size() - left);
    return failure;
  }

 private:
  iconv_t cd_;
};

}  // namespace

ConvertResult iconv_decode(const char* name, std::string_view bytes, Conversion* out) {
  Descriptor converter("UTF-8", name);
  if (!converter.valid()) return kNoConverter;
  std::string_view rest = bytes;
  const int failure = converter.run(&rest, &out->bytes);
  out->offset = bytes.size() - rest.size();
  if (failure != 0 && failure != EINVAL) return kBadInput;
  out->cut = failure == EINVAL;
  if (!out->cut) converter.run(nullptr, &out->bytes);
  return kConverted;
}

ConvertResult iconv_encode(const char* name, std::string_view utf8, Conversion* out) {
  Descriptor converter(name, "UTF-8");
  if (!converter.valid()) return kNoConverter;
  std::string_view rest = utf8;
  while (converter.run(&rest, &out->bytes) != 0) {
    const Character c = rest.empty() ? Character{} : read_utf8(rest);
    if (c.state != Character::kGood) break;
    rest.remove_prefix(c.length);
    ++out->dropped;
  }
  converter.run(nullptr, &out->bytes);
  out->offset = utf8.size() - rest.size();
  return rest.empty() ? kConverted : kBadInput;
}

}  // namespace orva
