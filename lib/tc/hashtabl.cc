#include "lib/tc/hashtabl.h"

#include <cassert>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

constexpr char kMsgTestOk[] = "CHashTable.Test OK.\n";
constexpr char kSource[] = "src_copy/v2.2/hashtabl";
constexpr int kTestAddLine = 426;
constexpr int kTestGetLine = 427;
constexpr unsigned kFirstElems = 1024;

const char* chars(const unsigned char* key) { return reinterpret_cast<const char*>(key); }

}  // namespace

CHashTable::CHashTable(int size, float load_factor) : load_fact(load_factor) {
  static_assert(sizeof(void*) != 4 || sizeof(CHashTable) == kObjectSize);
  elems.expand(kFirstElems);
  init0(size);
}

void CHashTable::init0(int size) {
  nb_elems = 0;
  max_elems = 0;
  hsz = 0;
  msk = 0;
  strings_size = 0;
  expand(size);
}

void CHashTable::clean() { strings.free_all(); }

unsigned CHashTable::hash(const unsigned char* key) {
  unsigned h = 0;
  for (unsigned i = 0; key[i] != 0; ++i) h = h ^ (((h << 3) ^ key[i]) << 1) ^ i;
  return h;
}

void CHashTable::btable_rehash(int index) {
  HashElem& elem = elems[static_cast<unsigned>(index)];
  int& head = btable[hash(elem.str) & static_cast<unsigned>(msk)];
  elem.next = head;
  head = index;
}

int CHashTable::operator[](const unsigned char* key) const {
  int index = btable[hash(key) & static_cast<unsigned>(msk)];
  while (index >= 0) {
    const HashElem& elem = elems[static_cast<unsigned>(index)];
    if (strcmp(chars(elem.str), chars(key)) == 0) break;
    index = elem.next;
  }
  return index;
}

int CHashTable::find_or_add(const unsigned char* key, int* added) {
  const int index = (*this)[key];
  *added = index < 0 ? 1 : 0;
  if (index >= 0) return index;
  if (nb_elems == max_elems) expand(2 * hsz);
  return append_string_copy(key);
}

int CHashTable::append_string_copy(const unsigned char* key) {
  const int size = static_cast<int>(strlen(chars(key))) + 1;
  elems.expand(static_cast<unsigned>(nb_elems) + 1);
  elems[static_cast<unsigned>(nb_elems)].str = strings.push(key, size);
  strings_size += size;
  btable_rehash(nb_elems);
  return nb_elems++;
}

void CHashTable::expand(int new_size) {
  assert(new_size > 0 && (new_size & (new_size - 1)) == 0);
  btable.expand(static_cast<unsigned>(new_size));
  // The float factor is exact in the wider type; only the whole part counts.
  const auto new_max = static_cast<int>(static_cast<long double>(load_fact) * new_size);
  elems.expand(static_cast<unsigned>(new_max) + 1);
  hsz = new_size;
  msk = new_size - 1;
  for (int b = 0; b < hsz; ++b) btable[static_cast<unsigned>(b)] = -1;
  for (int i = 0; i < nb_elems; ++i) btable_rehash(i);
  max_elems = new_max;
}

void CHashTable::copy(const CHashTable* src) {
  if (src == this) return;
  load_fact = src->load_fact;
  clean();
  init0(src->hsz);
  for (int i = 0; i < src->nb_elems; ++i) append_string_copy(src->key(i));
}

CHashTable* CHashTable::clone() const {
  auto table = std::make_unique<CHashTable>(8, 0.8f);
  table->copy(this);
  return table.release();
}

int CHashTable::size_of() const {
  return strings.size_of() + elems.size_of() + btable.size_of() + kObjectSize;
}

void hashtabl_test() {
  const auto* key = reinterpret_cast<const unsigned char*>("tst");
  CHashTable table(8, 0.8f);
  int added = 0;
  if (table.find_or_add(key, &added) != 0) {
    orva::requirement_failed(kSource, kTestAddLine, "find or add");
  }
  if (table[key] != 0) orva::requirement_failed(kSource, kTestGetLine, "get");
  fprintf(stderr, kMsgTestOk);
}
