#include "lib/eval/lid_mg_lang.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "lib/util/accounting.h"

CLidMGGrouping::CLidMGGrouping() {
  std::fill_n(labels, kMaxModels, nullptr);
  std::fill_n(model_group, kMaxModels, 0);
  std::fill_n(members, kMaxModels, 0);
  std::fill_n(member_lists, kMaxModels, nullptr);
  std::fill_n(member_counts, kMaxModels, 0);
}

CLidMGGrouping::~CLidMGGrouping() {
  if (ready != 0) free_chk(label_buffer, nb_models * slot_size_);
}

template <typename KeyOf>
void CLidMGGrouping::group_by(int n, int slot_size, KeyOf key_of) {
  nb_models = n;
  slot_size_ = slot_size;
  if (n <= 0 || n > kMaxModels) return;
  label_buffer = static_cast<char*>(malloc_chk(n * slot_size));
  if (label_buffer == nullptr) return;
  for (int m = 0; m < n; ++m) {
    const std::string_view key = key_of(m);
    int g = 0;
    while (g < nb_groups && key != labels[g]) ++g;
    if (g == nb_groups) {
      labels[g] = label_buffer + g * slot_size;
      memcpy(labels[g], key.data(), key.size());
      labels[g][key.size()] = '\0';
      ++nb_groups;
    }
    model_group[m] = g;
    ++member_counts[g];
  }
  lay_out_members();
  ready = 1;
}

void CLidMGGrouping::lay_out_members() {
  int* next = members;
  for (int g = 0; g < nb_groups; ++g) {
    member_lists[g] = next;
    next += member_counts[g];
    member_counts[g] = 0;
  }
  for (int m = 0; m < nb_models; ++m) {
    const int g = model_group[m];
    member_lists[g][member_counts[g]++] = m;
  }
}

CLidMGLang::CLidMGLang(const char* const* names, int n, int len) {
  key_length = len;
  const int length = std::max(len, 0);
  group_by(n, length + 1, [=](int m) {
    return std::string_view(names[m], strnlen(names[m], static_cast<size_t>(length)));
  });
}

CLidMGChrset::CLidMGChrset(const char* const* names, int n, int start) {
  key_length = start;
  group_by(n, kSlotSize, [=](int m) {
    const size_t length = strlen(names[m]);
    const size_t from = std::min(length, static_cast<size_t>(std::max(start, 0)));
    return std::string_view(names[m] + from, std::min<size_t>(length - from, kSlotSize - 1));
  });
}
