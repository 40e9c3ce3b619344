#include "tests/reference/tiny_group.h"

#include <cstdlib>
#include <cstring>

namespace orva {

TinyGroup::TinyGroup() {
  bytes_ = "Package Lid -- Modele Tricar Version 2.25a (20 oct 1998)\n";
  bytes_ += "Plateforme  LINUX\n";
  sizes();
  models();
  automaton();
  unigrams();
}

void TinyGroup::sizes() {
  field("nb_models", {3, 0, 0, 0});
  field("nb_istates", {5, 0, 0, 0});
  field("min_for_direct", {0, 1, 0, 0});  // 256
  field("istates_tsize", {6, 0, 0, 0});   // one record more than is in use
  field("istates_chrs_tsize", {5, 0, 0, 0});
  field("istates_dnxts_tsize", {0, 1, 0, 0});  // 256
  field("lstates_tsize", {2, 0, 0, 0});
  field("lstates_vals_tsize", {3, 0, 0, 0});
  field("def_so_tsize", {2, 0, 0, 0});
  field("nb_facts", {1, 0, 0, 0});
  field("rm_tridups", {1, 0, 0, 0});
  field("rm_caps", {1, 0, 0, 0});
  field("rm_digits", {1, 0, 0, 0});
  field("rm_blks", {0, 0, 0, 0});
}

void TinyGroup::models() {
  field("model 0 name", {0, 0, 0, 0});
  field("model 0 normlp", {0, 0, 0x80, 0x3f});  // 1.0
  field("model 0 lpmin", {0, 0, 0, 0x3f});      // 0.5
  field("model 0 grad", {0, 0, 0x80, 0x3e});    // 0.25
  field("model 0 fact_no", {0xff, 0xff, 0xff, 0xff});
  field("model 1 name", {0, 0, 0, 0});
  field("model 1 normlp", {0, 0, 0, 0x40});    // 2.0
  field("model 1 lpmin", {0, 0, 0x80, 0x3f});  // 1.0
  field("model 1 grad", {0, 0, 0, 0x3f});      // 0.5
  field("model 1 fact_no", {3, 0, 0, 0});
  field("model 2 name", {0, 0, 0, 0});
  field("model 2 normlp", {0, 0, 0x40, 0x40});  // 3.0
  field("model 2 lpmin", {0, 0, 0, 0});         // 0.0
  field("model 2 grad", {0, 0, 0x80, 0x3f});    // 1.0
  field("model 2 fact_no", {3, 0, 0, 0});
  field("name 0 length", {4, 0, 0, 0});
  field("name 0", {'f', 'r', 'A', 0});
  field("name 1 length", {4, 0, 0, 0});
  field("name 1", {'e', 'n', 'A', 0});
  field("name 2 length", {4, 0, 0, 0});
  field("name 2", {'e', 'n', 'B', 0});
}

void TinyGroup::automaton() {
  // A record is a reference (a byte offset) and an info word (3 bytes first successor, 1 byte
  // count).
  field("state 0", {0, 0, 0, 0, 1, 0, 0, 2});
  field("state 1", {2, 0, 0, 0, 3, 0, 0, 1});
  field("state 2", {0, 0, 0, 0, 0, 0, 0, 0});
  field("state 3", {3, 0, 0, 0, 5, 0, 0, 1});
  field("state 4", {4, 0, 0, 0, 6, 0, 0, 1});
  field("state 5", {0xef, 0xbe, 0xad, 0xde, 0x78, 0x56, 0x34, 0x12});  // not in use
  field("istates_chrs", {'a', 'b', 'b', 'a', 'b'});
  field("istates_dnxts", {});
  zeros(97 * 4);
  field("istates_dnxts a", {4, 0, 0, 0});
  zeros(158 * 4);
  // A leaf is 3 bytes place of its first value and 1 byte number of values.
  field("lstates", {0, 0, 0, 2, /**/ 2, 0, 0, 1});
  // A value is an index and a cost.
  field("lstates_vals", {0, 10, /**/ 3, 5, /**/ 2, 7});
  field("def_so", {4, 0, /**/ 3, 0});
}

void TinyGroup::unigrams() {
  field("unigram nb_models", {3, 0, 0, 0});
  field("unigram nb_facts", {1, 0, 0, 0});
  field("uch_lps_buff_tsize", {3, 0, 0, 0});
  field("models_normlp", {0, 0, 0x80, 0x3f, 0, 0, 0x80, 0x3f, 0, 0, 0x80, 0x3f});  // 1.0 each
  field("models_lpmin", {0, 0, 0, 0x40, 0, 0, 0x80, 0x3f, 0, 0, 0, 0x3f});         // 2.0 1.0 0.5
  field("models_grad", {0, 0, 0, 0x3f, 0, 0, 0x80, 0x3e, 0, 0, 0x80, 0x3f});       // 0.5 0.25 1.0
  // A pair is an index and a cost.
  field("uch_lps_buff", {0, 20, /**/ 3, 8, /**/ 1, 12});
  // A word is the place of the byte's first pair in 22 bits and the number of its pairs in 10.
  field("uch_lps", {});
  zeros(97 * 4);
  field("uch_lps a", {0, 0, 0x80, 0});                                   // 2 pairs from 0 on
  field("uch_lps b", {2, 0, 0x40, 0});                                   // 1 pair from 2 on
  for (int b = 99; b < 256; ++b) field("uch_lps behind", {3, 0, 0, 0});  // none, from 3 on
}

void TinyGroup::field(const char* name, std::initializer_list<int> bytes) {
  fields_.emplace_back(name, bytes_.size());
  for (const int byte : bytes) bytes_ += static_cast<char>(byte);
}

void TinyGroup::zeros(int n) { bytes_.append(static_cast<size_t>(n), '\0'); }

size_t TinyGroup::at(const std::string& name) const {
  for (const auto& [field_name, place] : fields_) {
    if (field_name == name) return place;
  }
  abort();
}

std::string TinyGroup::with_word(const std::string& field, int32_t value, size_t offset) const {
  std::string changed = bytes_;
  memcpy(changed.data() + at(field) + offset, &value, sizeof value);
  return changed;
}

std::string TinyGroup::with_byte(const std::string& field, int value, size_t offset) const {
  std::string changed = bytes_;
  changed[at(field) + offset] = static_cast<char>(value);
  return changed;
}

}  // namespace orva
