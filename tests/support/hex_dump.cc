#include "tests/support/hex_dump.h"

#include <cstdio>

namespace orva {
namespace {

constexpr size_t kLine = 16;

std::string formatted(const char* format, unsigned value) {
  char text[16];
  snprintf(text, sizeof text, format, value);
  return text;
}

std::string dump_line(size_t at, const std::string& line) {
  std::string result = formatted("%08x ", static_cast<unsigned>(at));
  for (size_t i = 0; i < kLine; ++i) {
    if (i == kLine / 2) result += ' ';
    result += i < line.size() ? formatted(" %02x", static_cast<unsigned char>(line[i])) : "   ";
  }
  result += "  |";
  for (const char c : line) result += c >= ' ' && c <= '~' ? c : '.';
  return result + "|\n";
}

}  // namespace

std::string hex_dump(const std::string& bytes) {
  std::string result;
  std::string above;
  bool repeating = false;
  for (size_t at = 0; at < bytes.size(); at += kLine) {
    const std::string line = bytes.substr(at, kLine);
    if (line == above) {
      if (!repeating) result += "*\n";
      repeating = true;
      continue;
    }
    repeating = false;
    above = line;
    result += dump_line(at, line);
  }
  return result + formatted("%08x\n", static_cast<unsigned>(bytes.size()));
}

}  // namespace orva
