// CLidMGEvUlpAcs: the unigram part of a group spread out for the final scoring, one entry per byte
// value and model.
//
// Life cycle: complete after construction; empty when its array could not be allocated.
#ifndef ORVA_LIB_EVAL_LID_MG_EV_ULP_ACS_H_
#define ORVA_LIB_EVAL_LID_MG_EV_ULP_ACS_H_

#include <cstdint>

class CLidMGroup;

struct UlpEntry {
  uint8_t model;
  uint8_t q;
  uint16_t group;  // the model's own index, or that of the fact set that also covers it
};
static_assert(sizeof(UlpEntry) == 4);

class CLidMGEvUlpAcs {
 public:
  explicit CLidMGEvUlpAcs(const CLidMGroup* group);
  ~CLidMGEvUlpAcs();
  CLidMGEvUlpAcs(const CLidMGEvUlpAcs&) = delete;
  CLidMGEvUlpAcs& operator=(const CLidMGEvUlpAcs&) = delete;

 protected:
  const UlpEntry* byte_first(int byte) const { return byte_first_[byte]; }
  int byte_count(int byte) const { return byte_count_[byte]; }
  bool unigrams_ready() const { return nb_entries_ > 0 || nb_wanted_ == 0; }

 private:
  int count_entries(const CLidMGroup& group, int byte) const;
  UlpEntry* add_entries(const CLidMGroup& group, int byte, UlpEntry* next) const;

  UlpEntry* byte_first_[256];
  int byte_count_[256];
  UlpEntry* entries_ = nullptr;
  int nb_entries_ = 0;
  int nb_wanted_ = 0;
};

#endif  // ORVA_LIB_EVAL_LID_MG_EV_ULP_ACS_H_
