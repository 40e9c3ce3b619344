// Accounted memory: allocation with byte counters and optional tracing.
//
// Every array of the library is taken with malloc_chk and given back with free_chk, whose caller
// passes the size that it allocated; the counters then tell what is in use. Growing tables take
// their first storage from malloc_chk and account for a realloc with account_growth.
//
// Results: null when an allocation fails and _MallocChkExitOnErr is 0; otherwise a failed
//          allocation prints a message to standard error and ends the process with status 1.
// Threads: the counters are plain process-wide variables without locking.
#ifndef ORVA_LIB_UTIL_ACCOUNTING_H_
#define ORVA_LIB_UTIL_ACCOUNTING_H_

#include <cstddef>

// The counters carry the library's prefix as symbols, so that the shared libraries can share them
// without exporting anything outside that prefix: they are defined once, in the runtime library
// (counters.cc).

// Bytes now allocated through malloc_chk and the growing tables. Initially 0.
extern int _MallocChkNbBytes __asm__("pemb_malloc_chk_nb_bytes")
    __attribute__((visibility("default")));
// Bytes of strings copied by strdup_chk and not yet released by strfree_chk. Initially 0.
extern int _MallocChkStrBytes __asm__("pemb_malloc_chk_str_bytes")
    __attribute__((visibility("default")));
// When nonzero, every checked allocation, release and growth prints a trace line. Initially 0.
extern int _MallocChkTrace __asm__("pemb_malloc_chk_trace") __attribute__((visibility("default")));
// When nonzero, a failed malloc_chk ends the process. Initially 1.
extern int _MallocChkExitOnErr __asm__("pemb_malloc_chk_exit_on_err")
    __attribute__((visibility("default")));

extern "C" {

// A block of `size` bytes; null for a size of 0, which allocates and counts nothing.
void* malloc_chk(int size);

// A block of `nb_bytes` that counts as `size`: for records that hold pointers, which take the room
// of the 32-bit platform in every account and the room of this one in memory. Otherwise as
// malloc_chk.
void* malloc_chk_as(int size, size_t nb_bytes);

// Releases a block of `size` bytes, the size that its caller allocated; nothing checks it.
void free_chk(void* block, int size);

// A copy of `s`, whose length without terminator is added to _MallocChkStrBytes.
char* strdup_chk(const char* s);

// Releases a string copy and takes `nb_bytes` off _MallocChkStrBytes. Returns 0.
int strfree_chk(char* s, int nb_bytes);

// Groups repeated trace events of one size: the first prints its line, the others are counted and
// printed as one grouped line when their slot is needed or the kind of event changes.
void mfchk_trace(const void* block, int size, int is_alloc);

// Prints the grouped line of every slot that holds a repetition, then clears the slots.
void mfchk_trace_flush(void);

// Clears the slots of mfchk_trace without printing.
void mfchk_trace_reset(void);

// Counts a realloc that has added `nb_added` elements of `elem_size` bytes to `block`, and prints
// its trace line when tracing is on.
void account_growth(const void* block, int nb_added, int elem_size);

}  // extern "C"

#endif  // ORVA_LIB_UTIL_ACCOUNTING_H_
