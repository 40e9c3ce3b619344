// TakenApart: a group back in the models that it was compiled from, so that it can be compiled
// again with others beside them.
//
//   const orva::TakenApart models(group);
//   std::string why = models.write(0, "frISO-8859-1.tri");
//   if (!why.empty()) puts(why.c_str());
//
// A group holds costs as one byte, so the costs that come back are those that the bytes stand for,
// not those of the training; compiling them gives the same bytes again, and the same group. What
// models share through fact sets comes back in each of them.
//
// Life cycle: made whole by its constructor, which throws std::bad_alloc without memory.
// Ownership:  its own copies; the group may go away.
// Results:    write returns why a model cannot be had back exactly, empty when it was written.
#ifndef ORVA_LIB_BUILD_TAKEN_APART_H_
#define ORVA_LIB_BUILD_TAKEN_APART_H_

#include <cstdint>
#include <string>
#include <vector>

#include "lib/mgroup/lid_mgroup.h"

namespace orva {

class TakenApart {
 public:
  explicit TakenApart(const CLidMGroup& group);

  int nb_models() const { return static_cast<int>(models_.size()); }
  const std::string& name(int model) const { return at(model).name; }
  // The fact set of a model, counted from 0; -1 when it is in none.
  int set(int model) const { return at(model).set; }
  int min_for_direct() const { return min_for_direct_; }
  // The letters of the preprocessing switches that are set, of D, C, X and B.
  std::string switches() const;

  // Writes a model as a V25a file.
  std::string write(int model, const std::string& path) const;

 private:
  struct Code {
    uint32_t key;  // a trigram, or a single byte
    unsigned char q;
  };
  struct Costs {
    float normlp = 0;
    float least = 0;
    float step = 0;
    std::vector<Code> codes;
  };
  struct Model {
    std::string name;
    int set = -1;
    Costs trigrams;
    Costs bytes;
  };

  const Model& at(int model) const { return models_[static_cast<size_t>(model)]; }
  void take_records(const CLidMGroup& group);
  void take_trigrams(const CLidMGroup& group);
  void take_leaf(const CLidMGroup& group, int leaf, uint32_t trigram);
  void take_bytes(const CLidMGroup& group);
  void add(int index, Costs Model::*costs, Code code);
  static bool costs_of(const Costs& costs, std::vector<float>* out);

  std::vector<Model> models_;
  std::vector<std::vector<int>> members_;  // by fact set
  bool is_built_ = true;  // no place of the group is one that building does not make
  int min_for_direct_ = 0;
  char flags_[5] = {};  // as the header line of a model has them
};

}  // namespace orva

#endif  // ORVA_LIB_BUILD_TAKEN_APART_H_
