// Text utilities: printing, scanning, splitting, and column headers that read downwards.
#ifndef ORVA_LIB_UTIL_TEXT_H_
#define ORVA_LIB_UTIL_TEXT_H_

#include <cstdint>
#include <cstdio>

extern "C" {

// Prints to standard output and flushes it.
void printff(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Prints to standard error.
void err_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Formats into `destination`, which must be large enough, and returns it.
char* osd_sprintf(char* destination, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Not available on this system: prints so on standard output and ends the process with status 0.
[[noreturn]] void osd_pwrite(void);

// A duration as [HH:][MM:]SS.mmm in a static buffer that the next call overwrites.
char* str_time(int milliseconds);

// Index of the first entry of `table` that equals `s`; -1 when there is none or `count` is 0; 0 when
// `count` is negative.
int find_string(const char* s, char** table, int count);

// Cuts `line` at white space (space, TAB, LF) into `table`, which must be large enough; returns the
// number of tokens.
int quick_tokenize(char* line, char** table);

// Read one value and return the text after it and the white space that follows. At the end of the
// text they store -1, "" or 0.0 and return null; where the text holds no value they return null.
// An integer beyond the range of int is taken as the nearest one.
char* scan_int(char* text, int* value);
char* scan_str(char* text, char* value);
char* scan_float(char* text, float* value);

// Reverses the byte order of `count` 32-bit words in place.
void table_revert_bytes(uint32_t* table, uint32_t count);

// Item `column` of run `row` when `nb_items` items are dealt into `nb_rows` consecutive runs, the
// first nb_items mod nb_rows of them one item longer; -1 when that run has no such item.
int vert_order_idx(int row, int column, int nb_items, int nb_rows);

// Copies at most 100 strings for the rows that follow and returns the length of the longest.
int vprint_init(char** table, int count);

// Prints position `row` of every string: `prefix` when not null, then for each string but the last
// `separator` (" " when null) and its character (a space beyond its end), then the last one's and a
// newline. Returns the result of the last print.
int vprint_fprint_row(FILE* stream, int row, char* prefix, char* separator);

// vprint_init and then every row, so that the strings read downwards.
int vprint(FILE* stream, char** table, int count, char* prefix, char* separator);

}  // extern "C"

#endif  // ORVA_LIB_UTIL_TEXT_H_
