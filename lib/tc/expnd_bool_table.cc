#include "lib/tc/expnd_bool_table.h"

#include <cstdio>
#include <cstring>
#include <memory>

#include "lib/tc/byte2bits.h"

namespace {

// Size in bits; then the words.
constexpr char kMsgSize[] = "BoolTable: Size %d\n";
constexpr char kMsgWord[] = "%08x ";

unsigned char byte_of(unsigned word, unsigned index) {
  return static_cast<unsigned char>(word >> (8 * index));
}

}  // namespace

void CExpndBoolTable::init() {
  for (unsigned i = 0; i < words.tsize; ++i) words[i] = 0;
}

void CExpndBoolTable::expand(int nbits) {
  if (nbits < 0) return;
  const unsigned old_size = words.tsize;
  words.expand(static_cast<unsigned>(nbits) / kWordBits + 1);
  for (unsigned i = old_size; i < words.tsize; ++i) words[i] = 0;
}

void CExpndBoolTable::copy(const CExpndBoolTable* src) {
  if (src == this) return;
  if (words.tsize > src->words.tsize) words.release();
  words.expand(src->words.tsize);
  if (words.nb_pages == 1) {
    memcpy(words.pages[0], src->words.pages[0], words.tsize * sizeof(unsigned));
    return;
  }
  for (unsigned p = 0; p < words.nb_pages; ++p) {
    memcpy(words.pages[p], src->words.pages[p], words.kPageSize * sizeof(unsigned));
  }
}

CExpndBoolTable* CExpndBoolTable::clone() const {
  auto table = std::make_unique<CExpndBoolTable>();
  table->expand(0);
  table->copy(this);
  return table.release();
}

void CExpndBoolTable::print() const {
  printf(kMsgSize, size());
  printf("\t");
  for (unsigned i = 0; i < words.tsize; ++i) printf(kMsgWord, words[i]);
  printf("\n");
}

void CExpndBoolTable::get_contents(int* out) const {
  const CByte2BitsCnvt& bits = CByte2BitsCnvt::instance();
  for (unsigned i = 0; i < words.tsize; ++i) {
    if (words[i] == 0) continue;
    for (unsigned b = 0; b < 4; ++b) {
      const unsigned char byte = byte_of(words[i], b);
      const int first_bit = static_cast<int>(i * kWordBits + 8 * b);
      for (int k = 0; k < bits.count(byte); ++k) *out++ = first_bit + bits.positions(byte)[k];
    }
  }
}

int CExpndBoolTable::get_cnt_len() const {
  const CByte2BitsCnvt& bits = CByte2BitsCnvt::instance();
  int count = 0;
  for (unsigned i = 0; i < words.tsize; ++i) {
    for (unsigned b = 0; b < 4; ++b) count += bits.count(byte_of(words[i], b));
  }
  return count;
}
