#include "lib/detect/subset_check.h"

namespace orva {

namespace {

// Runs of assigned cells, row by row. Source: GB 2312-80, the code table of the standard.
struct Run {
  unsigned char first_row;
  unsigned char last_row;
  unsigned char first;
  unsigned char last;
};
constexpr Run kGb2312Runs[] = {
    {0xA1, 0xA1, 0xA1, 0xFE}, {0xA2, 0xA2, 0xB1, 0xE2}, {0xA2, 0xA2, 0xE5, 0xEE},
    {0xA2, 0xA2, 0xF1, 0xFC}, {0xA3, 0xA3, 0xA1, 0xFE}, {0xA4, 0xA4, 0xA1, 0xF3},
    {0xA5, 0xA5, 0xA1, 0xF6}, {0xA6, 0xA6, 0xA1, 0xB8}, {0xA6, 0xA6, 0xC1, 0xD8},
    {0xA7, 0xA7, 0xA1, 0xC1}, {0xA7, 0xA7, 0xD1, 0xF1}, {0xA8, 0xA8, 0xA1, 0xBA},
    {0xA8, 0xA8, 0xC5, 0xE9}, {0xA9, 0xA9, 0xA4, 0xEF}, {0xB0, 0xD6, 0xA1, 0xFE},
    {0xD7, 0xD7, 0xA1, 0xF9}, {0xD8, 0xF7, 0xA1, 0xFE}};

// Second bytes of characters of four.
bool is_digit(unsigned char b) { return b >= '0' && b <= '9'; }

}  // namespace

bool is_gb2312_pair(unsigned char lead, unsigned char trail) {
  for (const Run& run : kGb2312Runs) {
    if (lead < run.first_row || lead > run.last_row) continue;
    if (trail >= run.first && trail <= run.last) return true;
  }
  return false;
}

void SubsetCheck::take_pair(unsigned char lead, unsigned char trail) {
  if (is_digit(trail)) gbk_ = false;
  if (gb2312_ && !is_gb2312_pair(lead, trail)) gb2312_ = false;
}

void SubsetCheck::feed(std::string_view bytes) {
  length_ += bytes.size();
  if (!gbk_) return;
  for (const char c : bytes) {
    const auto b = static_cast<unsigned char>(c);
    if (lead_ != 0) {
      take_pair(lead_, b);
      lead_ = 0;
    } else if (b >= 0x80) {
      lead_ = b;
    }
  }
}

}  // namespace orva
