#include "lib/util/accounting.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lib/util/text.h"

namespace {

// One allocation or release: address, size, total after it.
constexpr char kMsgAlloc[] = "\t[%8x] MCHK: +         %8d = %8d\n";
constexpr char kMsgFree[] = "\t[%8x] FCHK: -         %8d = %8d\n";
// Repeated events of one size: address, count, size, total.
constexpr char kMsgAllocs[] = "\t[%8x] MCHK: + %5d X %8d = %8d\n";
constexpr char kMsgFrees[] = "\t[%8x] FCHK: - %5d X %8d = %8d\n";
// A table's growth: address, elements added, element size, total.
constexpr char kMsgGrowth[] = "\t[%8x] RCHK: + %5d X %8d = %8d\n";
// "The allocation count is below 0."
constexpr char kMsgCountBelowZero[] = "MallocChkCount < 0 !!!\n";
// "Could not allocate N bytes; total allocated M."
constexpr char kMsgNoMemory[] = "** malloc_chk: pas pu allouer %d bytes!  total alloue %d\n";
// "Count or size below 0. Count: N, to release: M."
constexpr char kMsgFreeBelowZero[] = "** FreeChk: cnt<0 ou nb<0.   Cnt: %d,  a liberer: %d\n";

// Addresses print as their low 32 bits.
unsigned address32(const void* block) {
  return static_cast<unsigned>(reinterpret_cast<uintptr_t>(block));
}

// Counters wrap at 32 bits instead of overflowing.
int wrapping_add(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}
int wrapping_sub(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

struct TraceSlot {
  const void* block = nullptr;
  int size = -1;
  int count = 0;
};

constexpr int kNbTraceSlots = 5;
TraceSlot g_slots[kNbTraceSlots];
int g_cursor = 0;
int g_last_is_alloc = 1;
bool g_slots_ready = false;

void print_group(const TraceSlot& slot, int count) {
  printf(g_last_is_alloc != 0 ? kMsgAllocs : kMsgFrees, address32(slot.block), count, slot.size,
         _MallocChkNbBytes);
}

void clear_slots() {
  for (TraceSlot& slot : g_slots) slot = TraceSlot();
}

}  // namespace

void* malloc_chk(int size) { return malloc_chk_as(size, static_cast<size_t>(size)); }

void* malloc_chk_as(int size, size_t nb_bytes) {
  if (size == 0) return nullptr;
  // A negative size is more than any machine has.
  void* block = size < 0 ? nullptr : malloc(nb_bytes);
  if (block == nullptr) {
    if (_MallocChkExitOnErr == 0) return nullptr;
    fprintf(stderr, kMsgNoMemory, size, _MallocChkNbBytes);
    exit(1);
  }
  const int total = wrapping_add(_MallocChkNbBytes, size);
  if (_MallocChkTrace != 0) printf(kMsgAlloc, address32(block), size, total);
  _MallocChkNbBytes = total;
  if (total < 0) printff(kMsgCountBelowZero);
  return block;
}

void free_chk(void* block, int size) {
  const int total = wrapping_sub(_MallocChkNbBytes, size);
  if (_MallocChkTrace != 0) printf(kMsgFree, address32(block), size, total);
  _MallocChkNbBytes = total;
  if (total < 0 || size < 0) printff(kMsgFreeBelowZero, total, size);
  free(block);
}

char* strdup_chk(const char* s) {
  _MallocChkStrBytes = wrapping_add(_MallocChkStrBytes, static_cast<int>(strlen(s)));
  return strdup(s);
}

int strfree_chk(char* s, int nb_bytes) {
  _MallocChkStrBytes = wrapping_sub(_MallocChkStrBytes, nb_bytes);
  free(s);
  return 0;
}

void mfchk_trace(const void* block, int size, int is_alloc) {
  if (!g_slots_ready) {
    mfchk_trace_reset();
    g_slots_ready = true;
  }
  const int alloc = is_alloc != 0 ? 1 : 0;
  if (alloc != g_last_is_alloc) {
    mfchk_trace_flush();
    g_last_is_alloc = alloc;
  }
  for (TraceSlot& slot : g_slots) {
    if (slot.count > 0 && slot.size == size) {
      ++slot.count;
      return;
    }
  }
  TraceSlot& slot = g_slots[g_cursor];
  if (slot.count > 1) print_group(slot, slot.count - 1);
  if (alloc != 0) {
    printf(kMsgAlloc, address32(block), size, wrapping_add(_MallocChkNbBytes, size));
  } else {
    printf(kMsgFree, address32(block), size, wrapping_sub(_MallocChkNbBytes, size));
  }
  slot = {block, size, 1};
  g_cursor = (g_cursor + 1) % kNbTraceSlots;
}

void mfchk_trace_flush(void) {
  for (const TraceSlot& slot : g_slots) {
    if (slot.count <= 1) continue;
    // Kept: releases print the count of the slot at the cursor, not of the slot itself, as readers
    // of these traces have always seen them.
    print_group(slot, (g_last_is_alloc != 0 ? slot.count : g_slots[g_cursor].count) - 1);
  }
  clear_slots();
}

void mfchk_trace_reset(void) { clear_slots(); }

void account_growth(const void* block, int nb_added, int elem_size) {
  const auto bytes = static_cast<unsigned>(nb_added) * static_cast<unsigned>(elem_size);
  _MallocChkNbBytes = wrapping_add(_MallocChkNbBytes, static_cast<int>(bytes));
  if (_MallocChkTrace != 0) {
    printf(kMsgGrowth, address32(block), nb_added, elem_size, _MallocChkNbBytes);
  }
}
