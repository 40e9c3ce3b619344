#include "bench/corpus.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace orva::bench {
namespace {

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

}  // namespace

std::string joined_documents(const std::string& charset, size_t size) {
  const char* dir = std::getenv("ORVA_EVAL");
  std::string text;
  if (dir == nullptr) return text;
  std::ifstream manifest(std::string(dir) + "/manifest.tsv");
  for (std::string line; std::getline(manifest, line) && text.size() < size;) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
    if (fields.size() > 7 && fields[1] == charset) text += document(dir, fields[0], fields[7]);
  }
  if (text.empty()) return text;
  while (text.size() < size) text += text;
  text.resize(size);
  return text;
}

std::vector<std::string> short_documents(size_t count, size_t size) {
  std::vector<std::string> texts;
  for (const char* charset : {"ISO-8859-1", "KOI8-R", "windows-1251", "Shift_JIS", "UTF-8"}) {
    texts.push_back(joined_documents(charset, 1 << 20));
    if (texts.back().empty()) return {};
  }
  std::vector<std::string> documents;
  for (size_t i = 0; i < count; ++i) {
    const std::string& text = texts[i % texts.size()];
    documents.push_back(text.substr(i * 7919 % (text.size() - size), size));
  }
  return documents;
}

}  // namespace orva::bench
