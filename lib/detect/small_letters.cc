#include "lib/detect/small_letters.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "lib/detect/byte_blocks.h"
#include "lib/detect/characters.h"
#include "lib/detect/utf_codec.h"

namespace orva {

namespace {

constexpr uint32_t kTwoBytes = 0x800;  // characters below take two bytes at most

// The small letters and the scripts of the characters of two bytes, where most alphabets lie.
struct LetterTable {
  char small[kTwoBytes][2];
  uint8_t script[kTwoBytes];  // kAnyScript for what is no letter

  LetterTable() {
    for (uint32_t value = 0; value < kTwoBytes; ++value) {
      const uint32_t letter = small_letter(value);
      small[value][0] = static_cast<char>(0xC0 | letter >> 6);
      small[value][1] = static_cast<char>(0x80 | (letter & 0x3F));
      const uint32_t scripts = scripts_of_letter(value);
      script[value] = static_cast<uint8_t>(scripts == 0 ? kAnyScript : std::countr_zero(scripts));
    }
  }
};

// How many letters a run of ASCII holds, which become small.
size_t make_small(char* from, size_t count) {
  size_t letters = 0;
  size_t i = 0;
  for (; i + kByteBlock <= count; i += kByteBlock) {
    const ByteBlock block = block_at(from + i);
    const ByteBlock lower = block | 0x20;
    const ByteBlock is_letter = ByteBlock(lower - 'a' < 26);
    const ByteBlock small = block | (is_letter & 0x20);
    memcpy(from + i, &small, sizeof small);
    letters += sum_of(is_letter & 1);
  }
  for (; i < count; ++i) {
    const auto b = static_cast<unsigned char>(from[i]);
    const auto lower = static_cast<unsigned char>(b | 0x20);
    const bool letter = lower >= 'a' && lower <= 'z';
    from[i] = static_cast<char>(letter ? lower : b);
    letters += letter ? 1 : 0;
  }
  return letters;
}

}  // namespace

std::string with_small_letters(std::string_view text, ScriptCounts* scripts) {
  TextBuffer buffer;
  return std::string(with_small_letters(text, scripts, &buffer));
}

std::string_view with_small_letters(std::string_view text, ScriptCounts* scripts,
                                    TextBuffer* buffer) {
  static const LetterTable table;
  char* const out = buffer->room(text.size());
  if (!text.empty()) memcpy(out, text.data(), text.size());
  // Letters that follow each other are counted apart, so that none waits for the last one's count.
  constexpr size_t kApart = 4;
  uint64_t counts[kApart][kAnyScript + 1] = {};
  const auto byte_at = [text](size_t i) { return static_cast<unsigned char>(text[i]); };
  for (size_t at = 0; at < text.size();) {
    if (byte_at(at) < 0x80) {
      const size_t end = skip_ascii(text, at);
      counts[0][kLatin] += make_small(out + at, end - at);
      at = end;
      continue;
    }
    // Letters of two bytes follow each other.
    for (; at + 1 < text.size(); at += 2) {
      const unsigned char b = byte_at(at);
      const unsigned char next = byte_at(at + 1);
      if (b < 0xC2 || b >= 0xE0 || (next & 0xC0) != 0x80) break;
      const uint32_t value = (b & 0x1FU) << 6 | (next & 0x3FU);
      memcpy(out + at, table.small[value], 2);
      ++counts[at / 2 % kApart][table.script[value]];
    }
    if (at == text.size() || byte_at(at) < 0x80) continue;
    if (byte_at(at) < 0xE0) {
      ++at;
      continue;
    }
    const Character character = read_utf8(text.substr(at, 4));
    if (character.state != Character::kGood) {
      ++at;
      continue;
    }
    scripts->add(character.value);
    const uint32_t letter = small_letter(character.value);
    if (letter != character.value) {
      std::string written;
      append_utf8(letter, &written);
      memcpy(out + at, written.data(), written.size());
    }
    at += character.length;
  }
  for (int s = 0; s < kAnyScript; ++s) {
    uint64_t sum = 0;
    for (const auto& some : counts) sum += some[s];
    scripts->add_letters(static_cast<Script>(s), sum);
  }
  return {out, text.size()};
}

}  // namespace orva
