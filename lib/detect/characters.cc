#include "lib/detect/characters.h"

namespace orva {

namespace {

struct Range {
  uint32_t first;
  uint32_t last;
};

constexpr Range kLetters[] = {
    {'A', 'Z'},       {'a', 'z'},       {0x00C0, 0x00D6}, {0x00D8, 0x00F6}, {0x00F8, 0x02AF},
    {0x0300, 0x036F}, {0x0370, 0x0373}, {0x0376, 0x037D}, {0x0386, 0x0386}, {0x0388, 0x0481},
    {0x048A, 0x0556}, {0x0561, 0x0587}, {0x0591, 0x05C7}, {0x05D0, 0x05F4}, {0x0610, 0x061A},
    {0x0620, 0x065F}, {0x066E, 0x06D3}, {0x06D5, 0x06DC}, {0x0E01, 0x0E3A}, {0x0E40, 0x0E4E},
    {0x10A0, 0x10FF}, {0x1E00, 0x1FFF}, {0xFB1D, 0xFDFF}, {0xFE70, 0xFEFC}};

struct KnownSign {
  uint32_t value;
  Sign sign;
};

// In the order of how often documents hold them.
constexpr KnownSign kSigns[] = {{0x00A0, {' ', 3, true}},
                                {0x2019, {'\'', 3.5, true}},
                                {0x2018, {'\'', 4.5, true, kBefore}},
                                {0x201C, {' ', 4, true}},
                                {0x201D, {' ', 4, true, kBehind}},
                                {0x2013, {' ', 4.5, true}},
                                {0x2014, {' ', 4.5, true}},
                                {0x2026, {' ', 5, true, kBehind}},
                                {0x00AB, {' ', 4.5, true}},
                                {0x00BB, {' ', 4.5, true}},
                                {0x201E, {' ', 5, true, kBefore}},
                                {0x201A, {'\'', 7, true}},
                                {0x2022, {' ', 6, true, kBothSides}},
                                {0x00B7, {' ', 6.5, true}},
                                {0x00A9, {' ', 6, true, kBefore}},
                                {0x00AE, {' ', 6.5, true, kBehind}},
                                {0x2122, {' ', 6.5, true, kBehind}},
                                {0x00B0, {' ', 6.5, true}},
                                {0x00A7, {' ', 7, true, kBehind}},
                                {0x20AC, {' ', 6.5, true, kBefore}},
                                {0x00A3, {' ', 7, true, kBothSides}},
                                {0x00BF, {' ', 6.5, true, kBefore}},
                                {0x00A1, {' ', 7, true, kBefore}},
                                {0x00BA, {' ', 6.5, true}},
                                {0x00AA, {' ', 7, true}},
                                {0x2039, {' ', 8, true}},
                                {0x203A, {' ', 8, true}},
                                {0x00AD, {0, 7, true}},
                                {0x2116, {' ', 7, true}},
                                {0x00B2, {' ', 8, true, kBehind}},
                                {0x00B3, {' ', 9, true, kBehind}},
                                {0x00BD, {' ', 8, true, kBothSides}},
                                {0x00BC, {' ', 9, true, kBothSides}},
                                {0x00BE, {' ', 9.5, true, kBothSides}},
                                {0x00D7, {' ', 8, true}},
                                {0x00B5, {' ', 8.5, true}},
                                {0x00B1, {' ', 8.5, true, kBothSides}},
                                {0x00B4, {'\'', 8, true}},
                                {0x2015, {' ', 7, true}},
                                {0x060C, {',', 4, true}},
                                {0x061F, {'?', 5, true}},
                                {0x061B, {';', 6, true}},
                                {0x0640, {0, 6, true}},
                                {0x200C, {0, 4, true}},
                                {0x200D, {0, 7, true}},
                                {0x200E, {0, 7, true}},
                                {0x200F, {0, 7, true}},
                                {0x0387, {';', 7, true}},
                                {0x0E3F, {' ', 9, true}},
                                {0x0E46, {' ', 5, true}},
                                {0x0E4F, {' ', 9, true}},
                                {0x00F7, {' ', 9, false, kBothSides}},
                                {0x00A5, {' ', 9, false, kBothSides}},
                                {0x00B6, {' ', 9.5, false, kBothSides}},
                                {0x00A2, {' ', 10, false, kBothSides}},
                                {0x00A8, {' ', 10, false, kBothSides}},
                                {0x00B8, {' ', 11, false, kBothSides}},
                                {0x00AF, {' ', 11, false, kBothSides}},
                                {0x00AC, {' ', 11, false, kBothSides}},
                                {0x00A6, {' ', 11, false, kBothSides}},
                                {0x00B9, {' ', 9.5, false, kBehind}},
                                {0x00A4, {' ', 12, false, kBothSides}},
                                {0x2020, {' ', 9, false, kBothSides}},
                                {0x2021, {' ', 11, false, kBothSides}},
                                {0x2030, {' ', 10, false, kBothSides}},
                                {0x0192, {' ', 12, false}},
                                {0x02C6, {' ', 12, false, kBothSides}},
                                {0x02DC, {' ', 12, false, kBothSides}},
                                {0x2500, {'-', 7, false, kBothSides}},
                                {0x2502, {' ', 8, false, kBothSides}},
                                {0x2550, {'-', 8, false, kBothSides}},
                                {0x2551, {' ', 9, false, kBothSides}},
                                {0x25A0, {' ', 9, false, kBothSides}},
                                {0x2588, {' ', 9, false, kBothSides}}};

constexpr double kRareCost = 12;
constexpr double kControlCost = 16;

}  // namespace

bool is_letter(uint32_t value) {
  for (const Range& range : kLetters) {
    if (value >= range.first && value <= range.last) return true;
  }
  return false;
}

uint32_t small_letter(uint32_t value) {
  if (value < 0x80) return value >= 'A' && value <= 'Z' ? value + 32 : value;
  if (value >= 0xC0 && value <= 0xDE && value != 0xD7) return value + 32;
  // Latin blocks in which capitals alternate with their small letters.
  if ((value >= 0x100 && value <= 0x12F) || (value >= 0x132 && value <= 0x137) ||
      (value >= 0x14A && value <= 0x177) || (value >= 0x1DE && value <= 0x1EF) ||
      (value >= 0x218 && value <= 0x21F) || (value >= 0x1E00 && value <= 0x1EF9) ||
      (value >= 0x460 && value <= 0x481) || (value >= 0x48A && value <= 0x4BF) ||
      (value >= 0x4D0 && value <= 0x52F)) {
    return value | 1;
  }
  if ((value >= 0x139 && value <= 0x148) || (value >= 0x179 && value <= 0x17E) ||
      (value >= 0x4C1 && value <= 0x4CE)) {
    return value + (value & 1);
  }
  if (value == 0x178) return 0xFF;
  if (value == 0x1A0 || value == 0x1AF) return value + 1;
  if (value >= 0x391 && value <= 0x3AB && value != 0x3A2) return value + 32;
  if (value == 0x386) return 0x3AC;
  if (value >= 0x388 && value <= 0x38A) return value + 37;
  if (value == 0x38C) return 0x3CC;
  if (value == 0x38E || value == 0x38F) return value + 63;
  if (value >= 0x410 && value <= 0x42F) return value + 32;
  if (value >= 0x400 && value <= 0x40F) return value + 80;
  return value;
}

uint32_t cedilla_letter(uint32_t value) {
  if (value == 0x0219) return 0x015F;
  return value == 0x021B ? 0x0163 : value;
}

bool is_capital(uint32_t value) { return small_letter(value) != value; }

Sign sign_of(uint32_t value) {
  for (const KnownSign& known : kSigns) {
    if (known.value == value) return known.sign;
  }
  return {' ', value < 0xA0 ? kControlCost : kRareCost, false, kBothSides};
}

}  // namespace orva
