#include "tools/orva_host/host_text.h"

#include <prmem.h>

#include <cstdio>
#include <cstring>

namespace orva {
namespace {

struct NamedResult {
  nsresult code;
  const char* name;
};

constexpr NamedResult kResults[] = {
    {NS_OK, "NS_OK"},
    {NS_ERROR_NOT_IMPLEMENTED, "NS_ERROR_NOT_IMPLEMENTED"},
    {NS_NOINTERFACE, "NS_NOINTERFACE"},
    {NS_ERROR_NULL_POINTER, "NS_ERROR_NULL_POINTER"},
    {NS_ERROR_FAILURE, "NS_ERROR_FAILURE"},
    {NS_ERROR_UNEXPECTED, "NS_ERROR_UNEXPECTED"},
    {NS_ERROR_OUT_OF_MEMORY, "NS_ERROR_OUT_OF_MEMORY"},
    {NS_ERROR_INVALID_ARG, "NS_ERROR_INVALID_ARG"},
    {NS_ERROR_NO_AGGREGATION, "NS_ERROR_NO_AGGREGATION"},
    {NS_ERROR_NOT_AVAILABLE, "NS_ERROR_NOT_AVAILABLE"},
    {NS_ERROR_FACTORY_NOT_REGISTERED, "NS_ERROR_FACTORY_NOT_REGISTERED"},
    {NS_ERROR_FACTORY_NOT_LOADED, "NS_ERROR_FACTORY_NOT_LOADED"},
    {NS_ERROR_REG_NOT_FOUND, "NS_ERROR_REG_NOT_FOUND"},
};

constexpr int kIdFields = 11;

}  // namespace

std::string id_text(const nsID& id) {
  char text[64];
  const PRUint8* b = id.m3;
  snprintf(text, sizeof text, "{%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x}", id.m0, id.m1,
           id.m2, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
  return text;
}

bool parse_id(const std::string& text, nsID* id) {
  unsigned m0 = 0;
  unsigned m1 = 0;
  unsigned m2 = 0;
  unsigned b[8] = {};
  const int fields = sscanf(text.c_str(), "{%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x}", &m0, &m1, &m2,
                            &b[0], &b[1], &b[2], &b[3], &b[4], &b[5], &b[6], &b[7]);
  if (fields != kIdFields) return false;
  id->m0 = m0;
  id->m1 = static_cast<PRUint16>(m1);
  id->m2 = static_cast<PRUint16>(m2);
  for (int i = 0; i < 8; ++i) id->m3[i] = static_cast<PRUint8>(b[i]);
  return id_text(*id) == text;
}

std::string result_text(nsresult rv) {
  for (const NamedResult& result : kResults) {
    if (rv == result.code) return result.name;
  }
  char text[16];
  snprintf(text, sizeof text, "0x%08x", rv);
  return text;
}

std::string path_text(nsIFile* file) {
  char* path = nullptr;
  if (file == nullptr || NS_FAILED(file->GetPath(&path)) || path == nullptr) return "";
  std::string text = path;
  PR_Free(path);
  return text;
}

char* host_copy(const std::string& text) {
  auto* copy = static_cast<char*>(PR_Malloc(static_cast<PRUint32>(text.size() + 1)));
  if (copy != nullptr) memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

}  // namespace orva
