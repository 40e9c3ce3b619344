#include "tools/orva_host/registry_file.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <sstream>

#include "tools/orva_host/host_text.h"

namespace orva {
namespace {

constexpr char kHeading[] = "# Components and registry values known to orva-host.\n";
constexpr char kComponent[] = "component";
constexpr char kValue[] = "value";
constexpr size_t kComponentFields = 5;
constexpr size_t kValueFields = 6;

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '\t':
        out += "\\t";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\\':
        out += "\\\\";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string unescaped(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    ++i;
    out += text[i] == 't' ? '\t' : text[i] == 'n' ? '\n' : text[i];
  }
  return out;
}

std::string line_of(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (!line.empty()) line += '\t';
    line += escaped(field);
  }
  return line + '\n';
}

std::vector<std::string> fields_of(const std::string& line) {
  std::vector<std::string> fields;
  size_t from = 0;
  for (;;) {
    const size_t tab = line.find('\t', from);
    fields.push_back(unescaped(line.substr(from, tab - from)));
    if (tab == std::string::npos) return fields;
    from = tab + 1;
  }
}

template <class Integer>
bool parse_number(const std::string& text, Integer* number) {
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, *number);
  return parsed.ec == std::errc() && parsed.ptr == end;
}

bool take_line(const std::vector<std::string>& fields, RegistryData* data) {
  if (fields[0] == kComponent && fields.size() == kComponentFields) {
    ComponentRecord record{{}, fields[2], fields[3], fields[4]};
    if (!parse_id(fields[1], &record.class_id)) return false;
    data->components.push_back(record);
    return true;
  }
  if (fields[0] == kValue && fields.size() == kValueFields) {
    ValueRecord record{0, 0, fields[3], fields[4], fields[5]};
    if (!parse_number(fields[1], &record.registry)) return false;
    if (!parse_number(fields[2], &record.root)) return false;
    data->values.push_back(record);
    return true;
  }
  return false;
}

}  // namespace

std::string registry_text(const RegistryData& data) {
  std::string text = kHeading;
  for (const ComponentRecord& c : data.components) {
    text += line_of({kComponent, id_text(c.class_id), c.description, c.contract_id, c.library});
  }
  for (const ValueRecord& v : data.values) {
    text += line_of(
        {kValue, std::to_string(v.registry), std::to_string(v.root), v.subtree, v.name, v.text});
  }
  return text;
}

bool parse_registry(const std::string& text, RegistryData* data, std::string* error) {
  *data = {};
  std::istringstream lines(text);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    if (!take_line(fields_of(line), data)) {
      *error = "line " + std::to_string(number) + " is neither a component nor a value";
      return false;
    }
  }
  return true;
}

bool load_registry(const std::string& path, RegistryData* data, std::string* error) {
  *data = {};
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    if (errno == ENOENT) return true;
    *error = strerror(errno);
    return false;
  }
  std::ostringstream text;
  text << file.rdbuf();
  return parse_registry(text.str(), data, error);
}

bool save_registry(const std::string& path, const RegistryData& data, std::string* error) {
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << registry_text(data);
  file.close();
  if (file) return true;
  *error = strerror(errno);
  return false;
}

}  // namespace orva
