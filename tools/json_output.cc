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
    object["charset"] = text_or_null(reading.charset);
    object["language"] = text_or_null(reading.language);
    object["probability"] = reading.probability;
    object["cost"] = reading.cost;
    list.push_back(object);
  }
  return list;
}

Json share_or_null(uint64_t part, uint64_t whole) {
  return whole == 0 ? Json() : Json(static_cast<double>(part) / static_cast<double>(whole));
}

Json counts_json(const Counts& counts) {
  Json object;
  object["documents"] = counts.documents;
  object["same_text"] = share_or_null(counts.same_text, counts.documents);
  object["same_name"] = share_or_null(counts.same_name, counts.documents);
  object["with_language"] = counts.with_language;
  object["language"] = share_or_null(counts.right_language, counts.with_language);
  return object;
}

Json rows_json(const std::vector<std::pair<std::string, Counts>>& rows) {
  Json object = Json::object();
  for (const auto& [name, counts] : rows) object[name] = counts_json(counts);
  return object;
}

Json confusions_json(const std::vector<Confusion>& confusions) {
  Json list = Json::array();
  for (const Confusion& confusion : confusions) {
    Json object;
    object["label"] = confusion.label;
    object["answer"] = text_or_null(confusion.answer);
    object["documents"] = confusion.documents;
    list.push_back(object);
  }
  return list;
}

Json calibration_json(const Tally& tally) {
  Json bins = Json::array();
  for (size_t i = 0; i < Tally::kBins; ++i) {
    const Bin& bin = tally.bins()[i];
    Json object;
    object["from"] = static_cast<double>(i) / static_cast<double>(Tally::kBins);
    object["answers"] = bin.answers;
    const auto answers = static_cast<double>(bin.answers);
    object["probability"] = bin.answers == 0 ? Json() : Json(bin.probabilities / answers);
    object["right"] = share_or_null(bin.right, bin.answers);
    bins.push_back(object);
  }
  Json object;
  object["error"] = tally.calibration_error();
  object["bins"] = bins;
  return object;
}

}  // namespace

std::string tally_json(const Tally& tally) {
  Json object;
  object["all"] = counts_json(tally.all());
  object["unanswered"] = tally.unanswered();
  object["charsets"] = rows_json(tally.by_charset());
  object["languages"] = rows_json(tally.by_language());
  object["charset_confusions"] = confusions_json(tally.charset_confusions());
  object["language_confusions"] = confusions_json(tally.language_confusions());
  object["calibration"] = calibration_json(tally);
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string detection_json(const std::string& path, const Detection& detection) {
  Json object;
  object["path"] = path;
  if (!is_utf8(path)) object["path_bytes"] = hex_of(path);
  const bool won = detection.answered;
  object["charset"] = text_or_null(detection.charset);
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
