#include "lib/build/taken_apart.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "lib/build/quantise.h"
#include "lib/mgroup/group_format.h"
#include "lib/trichr/c_locale.h"
#include "lib/trichr/v25a_format.h"

namespace orva {

namespace {

// Digits that tell any two floats apart.
constexpr char kExact[] = "%.9g";
// A byte with this cost is one that training never saw.
constexpr float kUnseenByte = -1;
// Costs of bytes from here on are as good as unseen, and a group does not hold them.
constexpr float kUnseenCost = 29.99F;
// How far the largest cost of a model may be from what its step says, in neighbouring floats.
constexpr int kMostNeighbours = 4;

struct FileCloser {
  void operator()(FILE* stream) const { fclose(stream); }
};

// The largest cost of a model, from which its step was made. False when no cost gives that step.
bool largest_cost(float least, float step, float* largest) {
  float up = static_cast<float>(256.0L * step - 1 + least);
  float down = up;
  for (int i = 0; i < kMostNeighbours; ++i) {
    for (const float cost : {up, down}) {
      if (step_of(least, cost) != step) continue;
      *largest = cost;
      return true;
    }
    up = std::nextafter(up, HUGE_VALF);
    down = std::nextafter(down, -HUGE_VALF);
  }
  return false;
}

void print_cost(FILE* out, float cost, char behind) {
  fprintf(out, kExact, static_cast<double>(cost));
  fputc(behind, out);
}

// Calls visit(byte, child) for the children of an internal state.
template <typename Visit>
void for_each_child(const CLidMGroup& group, int state, Visit visit) {
  unsigned char buffer[kNbBytes];
  int count = 0;
  int first = 0;
  const unsigned char* bytes = group.istate_get_chrs_and_offset(state, buffer, &count, &first);
  for (int k = 0; k < count; ++k) visit(uint32_t{bytes[k]}, group.child(state, bytes[k]));
}

}  // namespace

TakenApart::TakenApart(const CLidMGroup& group) : min_for_direct_(group.min_for_direct) {
  take_records(group);
  take_trigrams(group);
  take_bytes(group);
}

void TakenApart::take_records(const CLidMGroup& group) {
  const CmgModels& part = group.models_part;
  const struct {
    int on;
    char letter;
  } flags[] = {{part.rm_tridups, kV25aFlagDups},
               {part.rm_caps, kV25aFlagCaps},
               {part.rm_digits, kV25aFlagDigits},
               {part.rm_blks, kV25aFlagBlanks}};
  for (size_t i = 0; i < 4; ++i) flags_[i] = flags[i].on != 0 ? flags[i].letter : kV25aFlagOff;
  members_.resize(static_cast<size_t>(part.nb_facts));
  for (int m = 0; m < group.nb_models; ++m) {
    const CmgModel& record = part.models[m];
    Model model;
    model.name = record.name;
    model.set = record.fact_no < 0 ? -1 : record.fact_no - group.nb_models;
    model.trigrams = {record.normlp, record.lpmin, record.grad, {}};
    const CUniChrMG& bytes = group.unigram_part;
    model.bytes = {bytes.models_normlp[m], bytes.models_lpmin[m], bytes.models_grad[m], {}};
    if (model.set >= 0) members_[static_cast<size_t>(model.set)].push_back(m);
    models_.push_back(std::move(model));
  }
}

// Gives a code to the model, or to all models of the set, that an accumulator index stands for.
void TakenApart::add(int index, Costs Model::*costs, Code code) {
  const int set = index - nb_models();
  if (set >= static_cast<int>(members_.size())) {
    is_built_ = false;
    return;
  }
  if (set < 0) {
    (models_[static_cast<size_t>(index)].*costs).codes.push_back(code);
    return;
  }
  for (const int m : members_[static_cast<size_t>(set)]) {
    (models_[static_cast<size_t>(m)].*costs).codes.push_back(code);
  }
}

void TakenApart::take_leaf(const CLidMGroup& group, int leaf, uint32_t trigram) {
  const uint32_t word = group.lstates[leaf];
  const int first = leaf_first(word);
  const int count = leaf_count_unsigned(word);
  if (first < 0 || int64_t{first} + count > group.lstates_vals_tsize) {
    is_built_ = false;
    return;
  }
  for (int v = first; v < first + count; ++v) {
    const uint16_t value = group.lstates_vals[v];
    add(value_index(value), &Model::trigrams,
        {trigram, static_cast<unsigned char>(value_cost(value))});
  }
}

// A loaded group may lead anywhere; only states of depth 1 and 2 are known to be no leaves.
void TakenApart::take_trigrams(const CLidMGroup& group) {
  for_each_child(group, 0, [&](uint32_t a, int one) {
    for_each_child(group, one, [&](uint32_t b, int two) {
      for_each_child(group, two, [&](uint32_t c, int three) {
        if (three < group.nb_istates) {
          is_built_ = false;
          return;
        }
        take_leaf(group, three - group.nb_istates, a << 16 | b << 8 | c);
      });
    });
  });
}

void TakenApart::take_bytes(const CLidMGroup& group) {
  const CUniChrMG& part = group.unigram_part;
  for (uint32_t c = 0; c < kNbBytes; ++c) {
    const UchPair* pairs = part.uch_lps_buff + unigram_first(part.uch_lps[c]);
    for (int k = 0; k < unigram_count(part.uch_lps[c]); ++k) {
      add(pairs[k].index, &Model::bytes, {c, pairs[k].q});
    }
  }
}

std::string TakenApart::switches() const {
  std::string letters;
  for (const char flag : std::string(flags_)) {
    if (flag != kV25aFlagOff) letters += flag;
  }
  return letters;
}

// The cost that each code stands for. False when compiling them would not give the codes again.
bool TakenApart::costs_of(const Costs& costs, std::vector<float>* out) {
  const std::vector<Code>& codes = costs.codes;
  out->clear();
  if (codes.empty()) return true;
  float largest = 0;
  if (!std::isfinite(costs.least) || !std::isfinite(costs.step) || !(costs.step > 0) ||
      !largest_cost(costs.least, costs.step, &largest)) {
    return false;
  }
  size_t at_most = 0;
  bool has_least = false;
  for (size_t i = 0; i < codes.size(); ++i) {
    if (i > 0 && codes[i].key == codes[i - 1].key) return false;
    const auto cost =
        static_cast<float>(static_cast<long double>(codes[i].q) * costs.step + costs.least);
    out->push_back(std::min(cost, largest));
    if (codes[i].q > codes[at_most].q) at_most = i;
    has_least = has_least || codes[i].q == 0;
  }
  // The two ends, from which the step is made when the model is compiled.
  (*out)[at_most] = largest;
  if (!has_least) return false;
  for (size_t i = 0; i < codes.size(); ++i) {
    if (quantised((*out)[i], costs.least, costs.step) != codes[i].q) return false;
  }
  return true;
}

std::string TakenApart::write(int model, const std::string& path) const {
  if (!is_built_) return "the group was not built of models";
  const Model& m = at(model);
  std::vector<float> trigrams;
  std::vector<float> seen;
  if (!std::isfinite(m.trigrams.normlp) || !std::isfinite(m.bytes.normlp) ||
      !costs_of(m.trigrams, &trigrams) || !costs_of(m.bytes, &seen)) {
    return "the model " + m.name + " cannot be had back exactly";
  }
  float bytes[kNbBytes];
  std::fill_n(bytes, kNbBytes, kUnseenByte);
  for (size_t i = 0; i < seen.size(); ++i) {
    if (!(seen[i] >= 0 && seen[i] < kUnseenCost)) {
      return "the model " + m.name + " has costs of bytes that no model has";
    }
    bytes[m.bytes.codes[i].key] = seen[i];
  }
  const CLocaleScope c_locale;
  const std::unique_ptr<FILE, FileCloser> out(fopen(path.c_str(), "w"));
  if (out == nullptr) return strerror(errno);
  fprintf(out.get(), "%s%s\n", kV25aMark, flags_);
  print_cost(out.get(), m.bytes.normlp, '\n');
  for (int b = 0; b < kNbBytes; ++b) {
    print_cost(out.get(), bytes[b], b % kV25aCostsPerLine == kV25aCostsPerLine - 1 ? '\n' : ' ');
  }
  // The two are only ever used as one sum.
  print_cost(out.get(), m.trigrams.normlp, ' ');
  print_cost(out.get(), 0, '\n');
  for (size_t i = 0; i < trigrams.size(); ++i) {
    print_cost(out.get(), trigrams[i], '\t');
    fprintf(out.get(), "%06x\n", m.trigrams.codes[i].key);
  }
  return fflush(out.get()) == 0 && ferror(out.get()) == 0 ? std::string() : strerror(errno);
}

}  // namespace orva
