#include "lib/accuracy/manifest.h"

#include <charconv>

#include "lib/accuracy/judge.h"

namespace orva {

namespace {

constexpr int kNone = -1;

std::vector<std::string_view> split(std::string_view text, char at) {
  std::vector<std::string_view> parts;
  for (;;) {
    const size_t end = text.find(at);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

// Columns by what they hold; kNone for one that is not there.
struct Columns {
  int path = kNone;
  int id = kNone;
  int charset = kNone;
  int language = kNone;
  int alt = kNone;
  int piece = kNone;
};

int find_column(const std::vector<std::string_view>& names, std::string_view name) {
  for (size_t i = 0; i < names.size(); ++i) {
    if (names[i] == name) return static_cast<int>(i);
  }
  return kNone;
}

bool find_columns(std::string_view header, const std::string& piece_column, Columns* columns,
                  std::string* error) {
  const std::vector<std::string_view> names = split(header, '\t');
  *columns = {find_column(names, "path"),
              find_column(names, "id"),
              find_column(names, "charset"),
              find_column(names, "language"),
              find_column(names, "alt"),
              piece_column.empty() ? kNone : find_column(names, piece_column)};
  if (columns->path == kNone && columns->id == kNone) *error = "no column \"path\"";
  if (columns->charset == kNone) *error = "no column \"charset\"";
  if (!piece_column.empty() && columns->piece == kNone) {
    *error = "no column \"" + piece_column + "\"";
  }
  return error->empty();
}

bool read_number(std::string_view text, uint64_t* number) {
  const char* end = text.data() + text.size();
  const auto [at, failed] = std::from_chars(text.data(), end, *number);
  return failed == std::errc() && at == end;
}

bool read_piece(std::string_view text, LabelledDocument* document) {
  const std::vector<std::string_view> parts = split(text, ':');
  return parts.size() == 2 && read_number(parts[0], &document->offset) &&
         read_number(parts[1], &document->length);
}

// Returns whether the line is right; `*wanted` tells whether it has a document at all.
bool read_document_line(std::string_view line, const Columns& columns, LabelledDocument* document,
                        bool* wanted, std::string* error) {
  const std::vector<std::string_view> fields = split(line, '\t');
  // Fields at the end of a line may be left out with their tabs, but not the label.
  const auto field = [&fields](int column) {
    const bool there = column != kNone && static_cast<size_t>(column) < fields.size();
    return there ? fields[static_cast<size_t>(column)] : std::string_view();
  };
  const std::string_view path = field(columns.path != kNone ? columns.path : columns.id);
  if (path.empty()) *error = "no document named";
  document->path = columns.path != kNone ? std::string(path) : "files/" + std::string(path);
  document->language = field(columns.language);
  document->charsets.emplace_back(field(columns.charset));
  for (const std::string_view other : split(field(columns.alt), ',')) {
    if (!other.empty()) document->charsets.emplace_back(other);
  }
  for (const std::string& charset : document->charsets) {
    if (!is_known_label(charset)) *error = "unknown charset \"" + charset + "\"";
  }
  *wanted = columns.piece == kNone || !field(columns.piece).empty();
  if (columns.piece != kNone && *wanted && !read_piece(field(columns.piece), document)) {
    *error = "\"" + std::string(field(columns.piece)) + "\" is no piece OFFSET:LENGTH";
  }
  return error->empty();
}

}  // namespace

bool read_manifest(std::string_view text, const std::string& piece_column,
                   std::vector<LabelledDocument>* documents, std::string* error) {
  error->clear();
  Columns columns;
  bool has_header = false;
  int number = 0;
  for (std::string_view line : split(text, '\n')) {
    ++number;
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with('#')) continue;
    LabelledDocument document;
    bool wanted = has_header;
    const bool right = has_header ? read_document_line(line, columns, &document, &wanted, error)
                                  : find_columns(line, piece_column, &columns, error);
    if (!right) {
      *error = "line " + std::to_string(number) + ": " + *error;
      return false;
    }
    has_header = true;
    if (wanted) documents->push_back(document);
  }
  if (has_header) return true;
  *error = "is empty";
  return false;
}

bool cut_piece(const LabelledDocument& document, std::string* bytes) {
  if (document.offset > bytes->size()) return false;
  bytes->erase(0, static_cast<size_t>(document.offset));
  if (document.length != 0 && document.length < bytes->size()) {
    bytes->resize(static_cast<size_t>(document.length));
  }
  return true;
}

}  // namespace orva
