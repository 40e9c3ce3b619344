#include "lib/eval/pending_covers.h"

#include <algorithm>

namespace orva {

PendingCovers::PendingCovers()
    : sets_(std::make_unique_for_overwrite<uint32_t[]>(kMost + kMostAdded)),
      times_(std::make_unique_for_overwrite<uint32_t[]>(kMost + kMostAdded)),
      bytes_(std::make_unique_for_overwrite<uint8_t[]>(kMost + kMostAdded)),
      sorted_(std::make_unique_for_overwrite<CoverTimes[]>(kMost + kSetsAhead)) {
  // So that nothing fails half-way.
  one_by_one_.reserve(kMost);
}

std::span<const ByteCover> PendingCovers::sort() {
  for (size_t i = 0; i < count_; ++i) counts_[bytes_[i]] += uint64_t{1} << kSetsShift | times_[i];
  CoverTimes* ends[256];
  CoverTimes* end = sorted_.get();
  size_t nb_bytes = 0;
  for (size_t b = 0; b < counts_.size(); ++b) {
    const auto nb_sets = static_cast<size_t>(counts_[b] >> kSetsShift);
    by_byte_[nb_bytes] = {
        static_cast<unsigned char>(b), static_cast<uint32_t>(counts_[b]), {end, nb_sets}};
    nb_bytes += counts_[b] != 0 ? 1 : 0;
    ends[b] = end;
    end += nb_sets;
  }
  counts_.fill(0);
  std::fill_n(end, kSetsAhead, CoverTimes());
  for (size_t i = 0; i < count_; ++i) *ends[bytes_[i]]++ = {sets_[i], times_[i]};
  count_ = 0;
  return {by_byte_.data(), nb_bytes};
}

}  // namespace orva
