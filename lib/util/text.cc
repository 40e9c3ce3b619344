#include "lib/util/text.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// "Not implemented on the current system."
constexpr char kMsgPWrite[] = "** PWrite: Pas implante sous OS courant\n";

constexpr int kMaxHeaders = 100;

std::vector<std::string>& headers() {
  static auto* table = new std::vector<std::string>();
  return *table;
}

// The character of `s` at position `row`, a space beyond its end.
char char_at(const std::string& s, int row) {
  const auto at = static_cast<size_t>(row);
  return row >= 0 && at < s.size() ? s[at] : ' ';
}

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

}  // namespace

void printff(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vprintf(format, args);
  va_end(args);
  fflush(stdout);
}

void err_printf(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vfprintf(stderr, format, args);
  va_end(args);
}

char* osd_sprintf(char* destination, const char* format, ...) {
  va_list args;
  va_start(args, format);
  vsprintf(destination, format, args);
  va_end(args);
  return destination;
}

void osd_pwrite(void) {
  printf(kMsgPWrite);
  exit(0);
}

char* str_time(int milliseconds) {
  static char buffer[64];
  const int ms = milliseconds % 1000;
  const int seconds = milliseconds / 1000 % 60;
  const int minutes = milliseconds / 60000 % 60;
  const int hours = milliseconds / 3600000;
  const double value = seconds + ms / 1000.0;
  char* at = buffer;
  char* const end = buffer + sizeof buffer;
  const auto room = [&] { return static_cast<size_t>(end - at); };
  if (hours != 0) at += snprintf(at, room(), "%2d:", hours);
  if (hours != 0 || minutes != 0) {
    at += snprintf(at, room(), minutes < 10 ? "0%d:" : "%d:", minutes);
    snprintf(at, room(), seconds < 10 ? "0%5.3f" : "%6.3f", value);
  } else {
    snprintf(at, room(), "%4.3f", value);
  }
  return buffer;
}

int find_string(const char* s, char** table, int count) {
  if (count == 0) return -1;
  // Kept: a negative count answers the first entry without looking at it.
  if (count < 0) return 0;
  for (int i = 0; i < count; ++i) {
    if (strcmp(s, table[i]) == 0) return i;
  }
  return -1;
}

int quick_tokenize(char* line, char** table) {
  int count = 0;
  char* p = line;
  while (is_blank(*p)) ++p;
  while (*p != '\0') {
    table[count++] = p;
    while (*p != '\0' && !is_blank(*p)) ++p;
    if (*p == '\0') break;
    *p++ = '\0';
    while (is_blank(*p)) ++p;
  }
  return count;
}

char* scan_int(char* text, int* value) {
  // Read wide and clamped, so that digits beyond an int mean the same for every width.
  long long wide = 0;
  int used = 0;
  const int fields = sscanf(text, "%lld %n", &wide, &used);
  if (fields == 1) {
    *value = static_cast<int>(std::clamp<long long>(wide, INT_MIN, INT_MAX));
    return text + used;
  }
  if (fields == EOF) *value = -1;
  return nullptr;
}

char* scan_str(char* text, char* value) {
  int used = 0;
  const int fields = sscanf(text, "%s %n", value, &used);
  if (fields == 1) return text + used;
  if (fields == EOF) value[0] = '\0';
  return nullptr;
}

char* scan_float(char* text, float* value) {
  int used = 0;
  const int fields = sscanf(text, "%f %n", value, &used);
  if (fields == 1) return text + used;
  if (fields == EOF) *value = 0.0F;
  return nullptr;
}

void table_revert_bytes(uint32_t* table, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) table[i] = __builtin_bswap32(table[i]);
}

int vert_order_idx(int row, int column, int nb_items, int nb_rows) {
  // No division by zero, and nothing before the first item.
  if (nb_items < 0 || nb_rows < 1 || row < 0 || column < 0) return -1;
  // Kept: without items, column 0 of several rows still answers 0.
  const int shorter = nb_items / nb_rows;
  const int nb_longer = nb_items % nb_rows;
  const int last = (nb_items - 1) / nb_rows;
  if (row >= nb_rows || column > last) return -1;
  if (nb_longer != 0 && column == last && row >= nb_longer) return -1;
  if (row <= nb_longer) return row * (shorter + 1) + column;
  return row * shorter + nb_longer + column;
}

int vprint_init(char** table, int count) {
  std::vector<std::string>& rows = headers();
  rows.clear();
  size_t longest = 0;
  for (int i = 0; i < count && i < kMaxHeaders; ++i) {
    rows.emplace_back(table[i]);
    if (rows.back().size() > longest) longest = rows.back().size();
  }
  return static_cast<int>(longest);
}

int vprint_fprint_row(FILE* stream, int row, char* prefix, char* separator) {
  int result = 0;
  if (prefix != nullptr) result = fprintf(stream, "%s", prefix);
  const std::vector<std::string>& rows = headers();
  for (size_t i = 0; i < rows.size(); ++i) {
    if (i + 1 < rows.size()) {
      result =
          fprintf(stream, "%s%c", separator == nullptr ? " " : separator, char_at(rows[i], row));
    } else {
      result = fprintf(stream, "%c\n", char_at(rows[i], row));
    }
  }
  return result;
}

int vprint(FILE* stream, char** table, int count, char* prefix, char* separator) {
  const int longest = vprint_init(table, count);
  int result = 0;
  for (int row = 0; row < longest; ++row) {
    result = vprint_fprint_row(stream, row, prefix, separator);
  }
  return result;
}
