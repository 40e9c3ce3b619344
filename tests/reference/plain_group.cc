#include "tests/reference/plain_group.h"

#include <algorithm>
#include <set>

namespace orva {
namespace {

// Appends values as the file has them.
class Writer {
 public:
  template <typename T>
  void put(const T& value) {
    const char* const first = reinterpret_cast<const char*>(&value);
    bytes.append(first, sizeof value);
  }
  void word(int value) { put(static_cast<int32_t>(value)); }
  void word(size_t value) { put(static_cast<int32_t>(value)); }

  std::string bytes;
};

// The arrays of the automaton, which have at least one element each.
struct Arrays {
  explicit Arrays(const PlainGroup& group) {
    for (const PlainState& state : group.states) add_state(state);
    for (const PlainLeaf& leaf : group.leaves) add_leaf(leaf);
    for (const auto& run : group.unigrams) {
      unigram_words.push_back(static_cast<uint32_t>(pairs.size() / 2) |
                              static_cast<uint32_t>(run.size()) << 22);
      for (const auto& [index, q] : run) {
        pairs += static_cast<char>(index);
        pairs += static_cast<char>(q);
      }
    }
    if (chrs.empty()) chrs = "x";
    if (tables.empty()) tables.push_back(0);
    if (values.empty()) values.push_back(0);
    if (pairs.empty()) pairs.assign(2, '\0');
  }

  void add_state(const PlainState& state) {
    if (state.direct) {
      states.emplace_back(static_cast<int32_t>(tables.size() * 4), 0U);
      const size_t base = tables.size();
      tables.resize(base + 256, 0);
      for (const auto& [c, next] : state.next) tables[base + c] = next;
      return;
    }
    states.emplace_back(
        static_cast<int32_t>(chrs.size()),
        static_cast<uint32_t>(state.first) | static_cast<uint32_t>(state.next.size()) << 24);
    for (const auto& [c, next] : state.next) chrs += static_cast<char>(c);
  }

  void add_leaf(const PlainLeaf& leaf) {
    leaf_words.push_back(static_cast<uint32_t>(values.size()) |
                         static_cast<uint32_t>(leaf.values.size()) << 24);
    for (const auto& [index, q] : leaf.values) {
      values.push_back(static_cast<uint16_t>(index | q << 8));
    }
    def_so.push_back(static_cast<uint16_t>(leaf.next));
  }

  std::vector<std::pair<int32_t, uint32_t>> states;
  std::string chrs;
  std::vector<int32_t> tables;
  std::vector<uint32_t> leaf_words;
  std::vector<uint16_t> values;
  std::vector<uint16_t> def_so;
  std::string pairs;
  std::vector<uint32_t> unigram_words;
};

// Builds a trie of random trigrams and fills it with random values.
class Maker {
 public:
  Maker(std::mt19937* random, const PlainOptions& options) : random_(*random), options_(options) {}

  PlainGroup make() {
    make_models();
    make_trie();
    make_unigrams();
    if (options_.shape != Shape::kTrie) loosen();
    return std::move(group_);
  }

 private:
  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  bool chance(double p) { return static_cast<double>(random_() % 10000) < p * 10000; }
  float uniform(float most) { return most * static_cast<float>(random_() % 16777216) / 16777216; }

  void make_models() {
    group_.nb_sets = options_.nb_sets;
    for (int m = 0; m < options_.nb_models; ++m) {
      PlainModel model;
      model.name = std::string(1, static_cast<char>('a' + m / 2)) + "xcharset" + std::to_string(m);
      model.lpmin = uniform(3);
      model.grad = uniform(0.1F);
      model.unigram_lpmin = uniform(4);
      model.unigram_grad = uniform(0.1F);
      // Sets beyond the models' reach stay empty.
      model.set = options_.nb_sets > 0 ? below(options_.nb_sets + 1) - 1 : -1;
      group_.models.push_back(model);
    }
  }

  PlainValue value() {
    return {static_cast<uint8_t>(below(options_.nb_models + options_.nb_sets)),
            static_cast<uint8_t>(below(256))};
  }

  // Values of some indices, each once; a share of them costs the most. Members of a set that has
  // one have none, but in odd leaves.
  PlainLeaf built_leaf() {
    PlainLeaf result;
    const bool odd = options_.odd_leaves && chance(0.5);
    const double share = chance(0.5) ? 0.1 : 0.6;
    std::set<int> sets;
    for (int i = options_.nb_models + options_.nb_sets - 1; i >= 0; --i) {
      if (result.values.size() >= 126 || !chance(share)) continue;
      if (i >= options_.nb_models) {
        sets.insert(i - options_.nb_models);
      } else if (!odd && sets.count(group_.models[static_cast<size_t>(i)].set) != 0) {
        continue;
      }
      const int q = chance(0.2) ? 255 : below(256);
      result.values.push_back({static_cast<uint8_t>(i), static_cast<uint8_t>(q)});
      if (odd && chance(0.1)) result.values.push_back(result.values.back());
    }
    return result;
  }

  PlainLeaf leaf() {
    if (options_.built) return built_leaf();
    PlainLeaf result;
    int count = below(6);
    if (options_.long_leaves && chance(0.1)) count = 120 + below(20);
    for (int i = 0; i < count; ++i) result.values.push_back(value());
    return result;
  }

  bool direct() {
    if (options_.states == States::kMixed) return chance(0.5);
    return options_.states == States::kDirect;
  }

  using Bytes = std::basic_string<uint8_t>;

  // Gives state `from` one new state by each byte that follows `prefix`.
  void add_level(const std::set<Bytes>& trigrams, int from, const Bytes& prefix) {
    PlainState& state = group_.states[static_cast<size_t>(from)];
    state.direct = direct();
    state.first = group_.nb_states();
    std::set<uint8_t> bytes;
    for (const Bytes& t : trigrams) {
      if (t.compare(0, prefix.size(), prefix) == 0) bytes.insert(t[prefix.size()]);
    }
    int next = group_.nb_states();
    for (const uint8_t c : bytes) {
      state.next[c] = next++;
      prefix_of_.push_back(prefix + c);
    }
    group_.states.resize(static_cast<size_t>(next));
  }

  void make_trie() {
    std::set<Bytes> trigrams;
    for (const char a : options_.alphabet) {
      for (const char b : options_.alphabet) {
        for (const char c : options_.alphabet) {
          if (!chance(options_.density)) continue;
          trigrams.insert(
              {static_cast<uint8_t>(a), static_cast<uint8_t>(b), static_cast<uint8_t>(c)});
        }
      }
    }
    trigrams.insert(Bytes(3, static_cast<uint8_t>(options_.alphabet[0])));
    group_.states.resize(1);
    prefix_of_ = {Bytes()};
    for (int s = 0; s < group_.nb_states(); ++s) {
      const Bytes prefix = prefix_of_[static_cast<size_t>(s)];
      if (prefix.size() < 2) add_level(trigrams, s, prefix);
    }
    for (int s = 0; s < group_.nb_states(); ++s) {
      if (prefix_of_[static_cast<size_t>(s)].size() == 2) add_leaves(trigrams, s);
    }
  }

  void add_leaves(const std::set<Bytes>& trigrams, int from) {
    PlainState& state = group_.states[static_cast<size_t>(from)];
    const Bytes& prefix = prefix_of_[static_cast<size_t>(from)];
    state.direct = direct();
    state.first = group_.nb_states() + static_cast<int>(group_.leaves.size());
    for (const Bytes& t : trigrams) {
      if (t.compare(0, 2, prefix) != 0) continue;
      state.next[t[2]] = group_.nb_states() + static_cast<int>(group_.leaves.size());
      group_.leaves.push_back(leaf());
      group_.leaves.back().next = state_of(Bytes{t[1], t[2]});
    }
  }

  // The state of the longest end of `context` that has one.
  int state_of(const Bytes& context) const {
    const auto found = std::find(prefix_of_.begin(), prefix_of_.end(), context);
    if (found != prefix_of_.end()) return static_cast<int>(found - prefix_of_.begin());
    return state_of(context.substr(1));
  }

  // Some sets share a byte's cost; of the others' models and those in no set most have one.
  std::vector<PlainValue> built_unigrams() {
    std::vector<PlainValue> run;
    for (int m = 0; m < options_.nb_models; ++m) {
      if (chance(0.8)) {
        run.push_back({static_cast<uint8_t>(m), static_cast<uint8_t>(below(256))});
      }
    }
    for (int set = 0; set < options_.nb_sets; ++set) {
      const auto is_member = [&](const PlainValue& value) {
        return value.first < options_.nb_models && group_.models[value.first].set == set;
      };
      if (std::any_of(run.begin(), run.end(), is_member) && chance(0.5)) continue;
      run.erase(std::remove_if(run.begin(), run.end(), is_member), run.end());
      run.push_back(
          {static_cast<uint8_t>(options_.nb_models + set), static_cast<uint8_t>(below(256))});
    }
    return run;
  }

  void make_unigrams() {
    for (const char c : options_.alphabet) {
      auto& run = group_.unigrams[static_cast<uint8_t>(c)];
      if (options_.built) run = built_unigrams();
      for (int count = options_.built ? 0 : below(5); count > 0; --count) run.push_back(value());
    }
  }

  void loosen() {
    for (PlainLeaf& leaf : group_.leaves) {
      if (chance(0.3)) leaf.next = below(group_.nb_states());
    }
    if (options_.shape != Shape::kAnyGraph) return;
    for (int s = 1; s < group_.nb_states(); ++s) {
      PlainState& state = group_.states[static_cast<size_t>(s)];
      if (!state.direct || prefix_of_[static_cast<size_t>(s)].size() != 2) continue;
      for (const char c : options_.alphabet) {
        if (!chance(0.4)) continue;
        state.next[static_cast<uint8_t>(c)] =
            1 + below(group_.nb_states() - 1 + static_cast<int>(group_.leaves.size()));
      }
    }
  }

  std::mt19937& random_;
  const PlainOptions& options_;
  PlainGroup group_;
  std::vector<Bytes> prefix_of_;  // bytes that lead from the root to each state
};

}  // namespace

PlainGroup random_group(std::mt19937* random, const PlainOptions& options) {
  return Maker(random, options).make();
}

std::string random_text(std::mt19937* random, const PlainOptions& options, size_t length) {
  std::string text;
  while (text.size() < length) {
    const auto choice = (*random)();
    const bool foreign = choice % 16 == 0;
    text += foreign ? static_cast<char>(choice >> 8)
                    : options.alphabet[(choice >> 8) % options.alphabet.size()];
  }
  return text;
}

std::string file_of(const PlainGroup& group) {
  const Arrays arrays(group);
  Writer out;
  out.bytes = "Package Lid -- Modele Tricar Version 2.25a (20 oct 1998)\nPlateforme  LINUX\n";
  out.word(group.models.size());
  out.word(arrays.states.size());
  out.word(256);  // min_for_direct
  out.word(arrays.states.size());
  out.word(arrays.chrs.size());
  out.word(arrays.tables.size());
  out.word(arrays.leaf_words.size());
  out.word(arrays.values.size());
  out.word(arrays.def_so.size());
  out.word(group.nb_sets);
  for (const int on : {1, 1, 1, 0}) out.word(on);
  for (const PlainModel& model : group.models) {
    out.word(0);
    out.put(1.0F);
    out.put(model.lpmin);
    out.put(model.grad);
    out.word(model.set == -1 ? -1 : group.nb_models() + model.set);
  }
  for (const PlainModel& model : group.models) {
    out.word(model.name.size() + 1);
    out.bytes += model.name + '\0';
  }
  for (const auto& [reference, info] : arrays.states) {
    out.put(reference);
    out.put(info);
  }
  out.bytes += arrays.chrs;
  for (const int32_t next : arrays.tables) out.put(next);
  for (const uint32_t word : arrays.leaf_words) out.put(word);
  for (const uint16_t value : arrays.values) out.put(value);
  for (const uint16_t next : arrays.def_so) out.put(next);
  out.word(group.models.size());
  out.word(group.nb_sets);
  out.word(arrays.pairs.size() / 2);
  for (size_t m = 0; m < group.models.size(); ++m) out.put(1.0F);
  for (const PlainModel& model : group.models) out.put(model.unigram_lpmin);
  for (const PlainModel& model : group.models) out.put(model.unigram_grad);
  out.bytes += arrays.pairs;
  for (const uint32_t word : arrays.unigram_words) out.put(word);
  return out.bytes;
}

}  // namespace orva
