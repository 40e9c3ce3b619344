#include "lib/eval/lid_mg_ev_ulp_acs.h"

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"

namespace {

constexpr int kEntrySize = sizeof(UlpEntry);
constexpr uint16_t kNoFact = 0xFFFF;

}  // namespace

CLidMGEvUlpAcs::CLidMGEvUlpAcs(const CLidMGroup* group) {
  for (int b = 0; b < orva::kNbBytes; ++b) {
    byte_first_[b] = nullptr;
    byte_count_[b] = count_entries(*group, b);
    nb_wanted_ += byte_count_[b];
  }
  entries_ = static_cast<UlpEntry*>(malloc_chk(nb_wanted_ * kEntrySize));
  if (entries_ == nullptr) {
    for (int& count : byte_count_) count = 0;
    return;
  }
  nb_entries_ = nb_wanted_;
  UlpEntry* next = entries_;
  for (int b = 0; b < orva::kNbBytes; ++b) {
    byte_first_[b] = next;
    next = add_entries(*group, b, next);
  }
}

CLidMGEvUlpAcs::~CLidMGEvUlpAcs() {
  if (entries_ != nullptr) free_chk(entries_, nb_entries_ * kEntrySize);
}

int CLidMGEvUlpAcs::count_entries(const CLidMGroup& group, int byte) const {
  const CUniChrMG& part = group.unigram_part;
  const int first = orva::unigram_first(part.uch_lps[byte]);
  int count = 0;
  for (int p = first; p < first + orva::unigram_count(part.uch_lps[byte]); ++p) {
    const int index = part.uch_lps_buff[p].index;
    count += index < group.nb_models ? 1 : group.fact_table->set_size[index - group.nb_models];
  }
  return count;
}

UlpEntry* CLidMGEvUlpAcs::add_entries(const CLidMGroup& group, int byte, UlpEntry* next) const {
  const CUniChrMG& part = group.unigram_part;
  const int first = orva::unigram_first(part.uch_lps[byte]);
  for (int p = first; p < first + orva::unigram_count(part.uch_lps[byte]); ++p) {
    const UchPair pair = part.uch_lps_buff[p];
    if (pair.index < group.nb_models) {
      const auto fact = static_cast<uint16_t>(group.models_part.models[pair.index].fact_no);
      *next++ = {pair.index, pair.q, fact == kNoFact ? uint16_t{pair.index} : fact};
      continue;
    }
    const int set = pair.index - group.nb_models;
    for (int k = 0; k < group.fact_table->set_size[set]; ++k) {
      const int model = group.fact_table->set_first[set][k];
      *next++ = {static_cast<uint8_t>(model), pair.q, pair.index};
    }
  }
  return next;
}
