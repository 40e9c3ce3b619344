// CLidMGLang and CLidMGChrset: the models of a group by language and by charset, from their names.
//
//   CLidMGLang languages(names, nb_models, 2);
//   languages.members(languages.model_group[m]);  // the models of model m's language
//
// Life cycle: complete after construction; not ready, with no groups, when it was given no models
// or
//             its labels could not be allocated.
#ifndef ORVA_LIB_EVAL_LID_MG_LANG_H_
#define ORVA_LIB_EVAL_LID_MG_LANG_H_

#include <cstddef>

// What both groupings share: groups in order of creation, members in ascending model order.
class CLidMGGrouping {
 public:
  static constexpr int kMaxModels = 256;

  CLidMGGrouping(const CLidMGGrouping&) = delete;
  CLidMGGrouping& operator=(const CLidMGGrouping&) = delete;

  int nb_models = 0;
  int nb_groups = 0;
  int key_length = 0;        // characters of the language code, or where the charset begins
  char* labels[kMaxModels];  // label of each group, in label_buffer
  char* label_buffer = nullptr;
  int model_group[kMaxModels];    // group of each model
  int members[kMaxModels];        // model numbers, group by group
  int* member_lists[kMaxModels];  // start of each group's run in members
  int member_counts[kMaxModels];
  int ready = 0;

 protected:
  CLidMGGrouping();
  ~CLidMGGrouping();

  // Groups `n` models by a key of at most slot_size - 1 characters; `key` points into the name and
  // `length` says how much of it counts.
  template <typename KeyOf>
  void group_by(int n, int slot_size, KeyOf key_of);

 private:
  void lay_out_members();
  int slot_size_ = 0;
};

// Models with the same first `len` characters of their names are of one language.
class CLidMGLang : public CLidMGGrouping {
 public:
  CLidMGLang(const char* const* names, int n, int len);
};

// Models whose names agree from character `start` on, of which 19 characters count, are of one
// charset. A start beyond the end of a name is an empty key.
class CLidMGChrset : public CLidMGGrouping {
 public:
  static constexpr int kSlotSize = 20;
  CLidMGChrset(const char* const* names, int n, int start);
};

#endif  // ORVA_LIB_EVAL_LID_MG_LANG_H_
