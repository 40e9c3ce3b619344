#include "lib/detect/detector.h"

#include <algorithm>
#include <utility>

#include "lib/detect/charset_table.h"

namespace orva {

Detector::Detector(std::shared_ptr<const ModelTables> tables) : tables_(std::move(tables)) {}

void Detector::restrict(Restrictions restrictions) {
  bool parts = false;
  for (int c = 0; c < kCharsetCount; ++c) {
    parts = parts || ((kCharsets[c].flags & kPart) != 0 && restrictions.allows_charset(c));
  }
  restrictions_ = std::move(restrictions);
  evidence_.watch_parts(parts);
}

void Detector::reset() {
  evidence_.reset();
  sample_.reset();
  decision_ = Decision{};
}

bool Detector::feed(std::string_view bytes) {
  if (limit_ != kNoLimit) {
    const uint64_t room = limit_ - std::min(limit_, evidence_.length());
    bytes = bytes.substr(0, static_cast<size_t>(std::min<uint64_t>(room, bytes.size())));
  }
  evidence_.feed(bytes);
  sample_.feed(bytes);
  return limit_ == kNoLimit || evidence_.length() < limit_;
}

const Decision& Detector::finish() {
  if (decider_ == nullptr) decider_ = std::make_unique<Decider>(*tables_);
  decision_ = decider_->decide(evidence_, sample_.text(), restrictions_);
  return decision_;
}

}  // namespace orva
