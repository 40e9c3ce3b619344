#include "bench/corpus.h"

#include <iconv.h>
#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace orva::bench {
namespace {

constexpr size_t kMegabyte = 1 << 20;

std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The document's own span of a shared file: "offset:length" of its "full" column, length 0 for all.
std::string document(const std::string& dir, const std::string& id, const std::string& span) {
  const std::string bytes = bytes_of(dir + "/files/" + id);
  const size_t colon = span.find(':');
  const size_t offset = std::strtoul(span.c_str(), nullptr, 10);
  const size_t length = std::strtoul(span.c_str() + colon + 1, nullptr, 10);
  if (offset >= bytes.size()) return {};
  return bytes.substr(offset, length == 0 ? std::string::npos : length);
}

// All documents with these labels.
std::string labelled(const std::string& charset, const std::string& language, size_t size) {
  const char* dir = std::getenv("ORVA_EVAL");
  std::string text;
  if (dir == nullptr) return text;
  std::ifstream manifest(std::string(dir) + "/manifest.tsv");
  for (std::string line; std::getline(manifest, line) && text.size() < size;) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
    if (fields.size() > 7 && fields[1] == charset && fields[2] == language) {
      text += document(dir, fields[0], fields[7]);
    }
  }
  return text;
}

// Converts one line; empty when the charset cannot write it.
std::string converted(iconv_t converter, std::string line) {
  std::string written(line.size() * 2, '\0');
  char* from = line.data();
  char* to = written.data();
  size_t from_left = line.size();
  size_t to_left = written.size();
  if (iconv(converter, &from, &from_left, &to, &to_left) != 0) return {};
  written.resize(written.size() - to_left);
  return written;
}

std::string converted_lines(const Kind& kind, size_t size) {
  std::string text;
  iconv_t converter = iconv_open(kind.charset, "UTF-8");
  if (converter == iconv_t(-1)) abort();
  std::istringstream in(labelled("UTF-8", kind.language, 4 * size));
  for (std::string line; std::getline(in, line) && text.size() < size;) {
    text += converted(converter, line + '\n');
  }
  iconv_close(converter);
  return text;
}

}  // namespace

std::string joined_documents(const Kind& kind, size_t size) {
  std::string text = labelled(kind.charset, kind.language, size);
  if (text.size() < size) text += converted_lines(kind, size - text.size());
  if (text.empty()) return text;
  while (text.size() < size) text += text;
  text.resize(size);
  return text;
}

std::vector<std::string> short_documents(size_t count, size_t size) {
  std::vector<std::string> texts;
  for (const Kind& kind : kKinds) {
    texts.push_back(joined_documents(kind, kMegabyte));
    if (texts.back().empty()) return {};
  }
  std::vector<std::string> documents;
  for (size_t i = 0; i < count; ++i) {
    const std::string& text = texts[i % texts.size()];
    const size_t from = text.find('\n', i * 7919 % (text.size() - 4 * size)) + 1;
    size_t end = text.find('\n', from + size);
    // Lines may be long; what is cut then is cut anywhere.
    if (end == std::string::npos || end > from + 2 * size) end = from + size;
    documents.push_back(text.substr(from, end - from));
  }
  return documents;
}

bool is_right(const Kind& kind, const std::string& answer) {
  if (kind.right[0] == nullptr) return !answer.empty();
  return std::any_of(std::begin(kind.right), std::end(kind.right), [&](const char* name) {
    return name != nullptr && strcasecmp(name, answer.c_str()) == 0;
  });
}

}  // namespace orva::bench
