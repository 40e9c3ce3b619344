// The binary form of CHashTable and its diagnostics.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "lib/tc/hashtabl.h"
#include "lib/tc/mem_ptr.h"

namespace {

constexpr char kMsgStats[] = "Stats(): HSz %d, Msk 0x%x, nb_elems %d (exp %d)\n";
constexpr char kMsgLoadFact[] = "LoadFact %5.3f\n";
constexpr char kMsgTotals[] = "TotIters %d, NbElems %d, iter/elem %5.3f\n";
constexpr char kMsgMaxLen[] = "Max LLen %d\nllens:\n";
constexpr char kMsgCell[] = "%2d : %d (%5.2f %%)\n";
constexpr char kMsgElem[] = "H[%4d] : %s\n";
constexpr int kNbCells = 13;
constexpr int kReserve = 9;  // what an enlarged block keeps beyond the key that needed it

const char* chars(const unsigned char* key) { return reinterpret_cast<const char*>(key); }

int key_length(const CHashTable& table, int index) {
  return static_cast<int>(strlen(chars(table.key(index))));
}

// Bytes from here to the end of the file; -1 where that cannot be told.
int64_t bytes_left(FILE* stream) {
  const off_t here = ftello(stream);
  if (here < 0 || fseeko(stream, 0, SEEK_END) != 0) return -1;
  const off_t end = ftello(stream);
  if (fseeko(stream, here, SEEK_SET) != 0 || end < here) return -1;
  return end - here;
}

bool cannot_hold(int64_t left, int64_t wanted) { return left >= 0 && wanted > left; }

double ratio(int a, int b) { return b == 0 ? 0.0 : static_cast<double>(a) / b; }

}  // namespace

int CHashTable::f_write(FILE* stream) const {
  int load_bits = 0;
  memcpy(&load_bits, &load_fact, sizeof load_bits);
  if (putw(kFormatMark, stream) != 0 || putw(nb_elems, stream) != 0 ||
      putw(nb_elems, stream) != 0 || putw(load_bits, stream) != 0) {
    return -1;
  }
  MemPtr<char> buffer;
  if (buffer.realloc(kFirstBlock) == 0) return -1;
  int next = 0;
  while (next < nb_elems) {
    int packed = 0;
    for (; next < nb_elems; ++next) {
      const int length = key_length(*this, next);
      if (packed + length >= buffer.size) break;
      memcpy(buffer.ptr + packed, key(next), static_cast<size_t>(length) + 1);
      packed += length + 1;
    }
    if (packed == 0) {
      // Not even one key fits: the buffer grows for it and for all that follows.
      if (buffer.realloc(key_length(*this, next) + 1 + kReserve) == 0) return -1;
      continue;
    }
    if (putw(packed, stream) != 0 ||
        fwrite(buffer.ptr, static_cast<size_t>(packed), 1, stream) != 1) {
      return -1;
    }
  }
  return 0;
}

int CHashTable::f_read(FILE* stream) {
  try {
    return read_blocks(stream);
  } catch (const orva::GrowthFailed&) {
    return -1;
  }
}

int CHashTable::read_blocks(FILE* stream) {
  MemPtr<char> buffer;
  if (buffer.realloc(kFirstBlock) == 0) return -1;
  clean();
  init0(8);
  if (getw(stream) != kFormatMark) return -1;
  const int count = getw(stream);
  if (count < 0 || getw(stream) == -1 || getw(stream) == -1) return -1;
  // A key takes a byte at least.
  if (cannot_hold(bytes_left(stream), count)) return -1;
  while (count >= max_elems) expand(2 * hsz);

  while (nb_elems < count) {
    const int length = getw(stream);
    if (length <= 0 || cannot_hold(bytes_left(stream), length)) return -1;
    if (length > buffer.size && buffer.realloc(length) == 0) return -1;
    if (fread(buffer.ptr, static_cast<size_t>(length), 1, stream) != 1) return -1;
    if (buffer.ptr[length - 1] != 0) return -1;
    for (int at = 0; at < length; at += static_cast<int>(strlen(buffer.ptr + at)) + 1) {
      append_string_copy(reinterpret_cast<const unsigned char*>(buffer.ptr + at));
    }
  }
  return 0;
}

void CHashTable::stats() const {
  int cells[kNbCells] = {};
  int total_probes = 0;
  int counted = 0;
  int longest = -1;
  for (int b = 0; b < hsz; ++b) {
    int length = 0;
    for (int i = btable[static_cast<unsigned>(b)]; i >= 0;
         i = elems[static_cast<unsigned>(i)].next) {
      ++length;
      total_probes += length;
    }
    counted += length;
    longest = std::max(longest, length);
    ++cells[std::min(length, kNbCells - 1)];
  }
  printf(kMsgStats, hsz, static_cast<unsigned>(msk), nb_elems, max_elems);
  printf(kMsgLoadFact, ratio(nb_elems, hsz));
  printf(kMsgTotals, total_probes, counted, ratio(total_probes, counted));
  printf(kMsgMaxLen, longest);
  for (int c = 0; c < kNbCells; ++c) printf(kMsgCell, c, cells[c], 100.0 * ratio(cells[c], hsz));
}

void CHashTable::print() const {
  for (int i = 0; i < nb_elems; ++i) printf(kMsgElem, i, chars(key(i)));
}
