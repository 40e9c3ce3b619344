#include "lib/tc/byte2bits.h"

#include "lib/tc/tc_alloc.h"
#include "lib/util/accounting.h"

namespace {
const CByte2BitsCnvt g_byte2bits;
}  // namespace

const CByte2BitsCnvt& CByte2BitsCnvt::instance() { return g_byte2bits; }

CByte2BitsCnvt::CByte2BitsCnvt()
    : buffer_(static_cast<unsigned char*>(orva::new_block(kNbPositions, 1, 1))) {
  unsigned char* next = buffer_;
  for (int value = 0; value < 256; ++value) {
    lists_[value] = next;
    for (unsigned bit = 0; bit < 8; ++bit) {
      if (((static_cast<unsigned>(value) >> bit) & 1u) != 0) {
        *next++ = static_cast<unsigned char>(bit);
      }
    }
    counts_[value] = static_cast<unsigned char>(next - lists_[value]);
  }
}

CByte2BitsCnvt::~CByte2BitsCnvt() { free_chk(buffer_, kNbPositions); }
