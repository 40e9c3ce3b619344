#include "tools/json_output.h"

#include <nlohmann/json.hpp>

namespace orva {
namespace {

using Json = nlohmann::ordered_json;

bool is_utf8(const std::string& text) {
  try {
    Json(text).dump();
    return true;
  } catch (const Json::type_error&) {
    return false;
  }
}

std::string hex_of(const std::string& bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char c : bytes) {
    hex += kDigits[static_cast<unsigned char>(c) >> 4];
    hex += kDigits[static_cast<unsigned char>(c) & 15];
  }
  return hex;
}

}  // namespace

std::string detection_json(const std::string& path, const Detection& detection) {
  Json object;
  object["path"] = path;
  if (!is_utf8(path)) object["path_bytes"] = hex_of(path);
  const bool won = detection.model >= 0;
  object["charset"] = won ? Json(detection.charset) : Json();
  object["language"] = won ? Json(detection.language) : Json();
  object["model"] = won ? Json(detection.model_name) : Json();
  object["confidence"] = won ? Json(detection.confidence) : Json();
  object["cost"] = won ? Json(detection.cost) : Json();
  object["bytes"] = detection.bytes;
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace orva
