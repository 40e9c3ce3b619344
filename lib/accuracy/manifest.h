// A manifest: which documents a folder holds, and what is known of them. A text file of lines, each
// of fields between tabs; the first line names the columns, in any order:
//
//   path     charset  language  alt
//   a.txt    KOI8-R   ru
//   b/c.txt  cp1252   fr        ISO-8859-15,latin1
//
// A `path` that does not begin with "/" is relative to the manifest's folder; instead of it `id`
// may name a file of the folder `files` beside the manifest. `language` and `alt`, further charsets
// that are as right, may be empty or absent. A column that is asked for by name gives a piece of
// each document, OFFSET:LENGTH in bytes, length 0 up to the end; a document whose field is empty
// has no such piece and is left out. Other columns are not looked at, nor are empty lines and lines
// that begin with "#".
//
// Ownership:  plain values.
// Threads:    any number.
#ifndef ORVA_LIB_ACCURACY_MANIFEST_H_
#define ORVA_LIB_ACCURACY_MANIFEST_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orva {

struct LabelledDocument {
  std::string path;                   // as written, or in the folder "files"
  std::vector<std::string> charsets;  // the label, then what else is right; never empty
  std::string language;               // as written; empty when it is not known
  uint64_t offset = 0;
  uint64_t length = 0;  // 0: up to the end
};

// Reads a manifest. False, with the line and what is wrong with it in `error`, for a missing
// column, a line with too few fields, an empty path, a charset that no converter knows, or a piece
// that is none. `piece_column` is empty for whole documents.
bool read_manifest(std::string_view text, const std::string& piece_column,
                   std::vector<LabelledDocument>* documents, std::string* error);

// Leaves the document's piece of its bytes, as much of it as there is. False when they end before.
bool cut_piece(const LabelledDocument& document, std::string* bytes);

}  // namespace orva

#endif  // ORVA_LIB_ACCURACY_MANIFEST_H_
