// A model group as maps and lists, and its file. Random groups of every shape are made with it.
#ifndef ORVA_TESTS_REFERENCE_PLAIN_GROUP_H_
#define ORVA_TESTS_REFERENCE_PLAIN_GROUP_H_

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace orva {

struct PlainModel {
  std::string name;
  float lpmin = 0;
  float grad = 0;
  float unigram_lpmin = 0;
  float unigram_grad = 0;
  int set = -1;
};

struct PlainState {
  std::map<uint8_t, int> next;  // successors; from the number of states on they are leaves
  int first = 1;                // number of the first successor
  bool direct = false;
};

// An accumulator index and a quantised cost.
using PlainValue = std::pair<uint8_t, uint8_t>;

struct PlainLeaf {
  std::vector<PlainValue> values;
  int next = 0;  // the state after it
};

struct PlainGroup {
  std::vector<PlainModel> models;
  int nb_sets = 0;
  std::vector<PlainState> states;
  std::vector<PlainLeaf> leaves;
  std::vector<PlainValue> unigrams[256];

  int nb_models() const { return static_cast<int>(models.size()); }
  int nb_states() const { return static_cast<int>(states.size()); }
};

enum class States { kSparse, kDirect, kMixed };

enum class Shape {
  kTrie,           // as groups are built: the state after two bytes depends on them alone
  kAnySuccessors,  // leaves go on from any state
  kAnyGraph,       // direct states lead anywhere that is allowed, too
};

struct PlainOptions {
  States states = States::kMixed;
  Shape shape = Shape::kTrie;
  int nb_models = 5;
  int nb_sets = 2;
  std::string alphabet = "abcdef";
  double density = 0.3;  // share of all trigrams that have a leaf
  bool long_leaves = false;
  // As a builder writes it: no model twice in a leaf or in a byte's costs, neither by itself nor by
  // its set; many values.
  bool built = false;
  // With built: but for half of the leaves.
  bool odd_leaves = false;
};

PlainGroup random_group(std::mt19937* random, const PlainOptions& options);

// The bytes of the group's file.
std::string file_of(const PlainGroup& group);

// Text over the group's alphabet with a foreign byte now and then.
std::string random_text(std::mt19937* random, const PlainOptions& options, size_t length);

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_PLAIN_GROUP_H_
