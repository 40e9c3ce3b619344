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

Json text_or_null(const std::string& text) { return text.empty() ? Json() : Json(text); }

Json candidates_json(const Detection& detection) {
  Json list = Json::array();
  for (const RankedReading& reading : detection.candidates) {
    Json object;
    object["charset"] = reading.charset;
    object["language"] = text_or_null(reading.language);
    object["probability"] = reading.probability;
    object["cost"] = reading.cost;
    list.push_back(object);
  }
  return list;
}

}  // namespace

std::string detection_json(const std::string& path, const Detection& detection) {
  Json object;
  object["path"] = path;
  if (!is_utf8(path)) object["path_bytes"] = hex_of(path);
  const bool won = detection.answered;
  object["charset"] = won ? Json(detection.charset) : Json();
  object["language"] = text_or_null(detection.language);
  object["model"] = text_or_null(detection.model);
  object["confidence"] = won ? Json(detection.confidence) : Json();
  object["cost"] = won ? Json(detection.cost) : Json();
  object["bytes"] = detection.bytes;
  if (!detection.kind.empty()) {
    object["kind"] = detection.kind;
    object["bom"] = detection.has_bom;
    object["candidates"] = candidates_json(detection);
  }
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace orva
