#include "lib/tc/tc_alloc.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "lib/util/accounting.h"

namespace orva {
namespace {

// "Could not allocate N bytes; total allocated M": the words of malloc_chk.
constexpr char kMsgNoMemory[] = "** malloc_chk: pas pu allouer %d bytes!  total alloue %d\n";
// A failed requirement: source, line, what was required.
constexpr char kMsgRequirement[] = "\n***   %-10s : %d  ==>\t%s\n";

// The product as a positive int, or -1 when it does not fit.
int product(int count, std::size_t size) {
  const auto bytes = static_cast<uint64_t>(count < 0 ? 0 : count) * size;
  return count < 0 || bytes > INT_MAX ? -1 : static_cast<int>(bytes);
}

}  // namespace

void growth_failed(int bytes) {
  if (_MallocChkExitOnErr == 0) throw GrowthFailed();
  fprintf(stderr, kMsgNoMemory, bytes, _MallocChkNbBytes);
  exit(1);
}

void* new_block(int count, std::size_t elem_size, int counted) {
  const int real_bytes = product(count, elem_size);
  const int counted_bytes = product(count, static_cast<std::size_t>(counted));
  if (real_bytes < 0 || counted_bytes < 0) growth_failed(INT_MAX);
  void* block = malloc_chk_as(counted_bytes, static_cast<std::size_t>(real_bytes));
  if (block == nullptr) growth_failed(counted_bytes);
  return block;
}

void* grow_block(void* block, int old_count, int new_count, std::size_t elem_size, int counted) {
  if (old_count == 0) return new_block(new_count, elem_size, counted);
  const int real_bytes = product(new_count, elem_size);
  if (real_bytes < 0) growth_failed(INT_MAX);
  void* grown = realloc(block, static_cast<std::size_t>(real_bytes));
  if (grown == nullptr) growth_failed(real_bytes);
  account_growth(grown, new_count - old_count, counted);
  return grown;
}

void requirement_failed(const char* source, int line, const char* text) {
  fprintf(stderr, kMsgRequirement, source, line, text);
  fprintf(stderr, "\n");
  exit(1);
}

}  // namespace orva
