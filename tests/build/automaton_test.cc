#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "lib/mgroup/group_format.h"
#include "tests/build/build_fixture.h"

namespace {

using orva::Costs;
using orva::ModelFiles;
using orva::Values;
using orva::values_of;

// What a group must hold, worked out model by model in plain maps.
struct Naive {
  std::map<std::string, std::map<int, int>> codes;  // trigram: model to code

  Naive(const std::vector<Costs>& models) {
    for (size_t m = 0; m < models.size(); ++m) {
      float lpmin = 100000.0f;
      float lpmax = -1.0f;
      for (const auto& [trigram, cost] : models[m]) {
        lpmin = std::min(lpmin, cost);
        lpmax = std::max(lpmax, cost);
      }
      const auto grad = static_cast<float>((1.0L + lpmax - lpmin) / 256);
      for (const auto& [trigram, cost] : models[m]) {
        const long double steps = (static_cast<long double>(cost) - lpmin) / grad + 0.5L;
        codes[trigram][static_cast<int>(m)] = static_cast<int>(steps) & 255;
      }
    }
  }

  Values values(const std::string& trigram, const std::vector<int>& sets) const {
    const auto at = codes.find(trigram);
    if (at == codes.end()) return {};
    const std::map<int, int>& code = at->second;
    Values alone;
    Values shared;
    std::set<int> shared_sets;
    const int nb_models = static_cast<int>(sets.size());
    for (int f = 0; f < nb_models; ++f) {
      std::set<int> seen;
      bool all = true;
      int members = 0;
      for (int m = 0; m < nb_models; ++m) {
        if (sets[static_cast<size_t>(m)] != f) continue;
        ++members;
        const auto c = code.find(m);
        if (c == code.end()) all = false;
        if (c != code.end()) seen.insert(c->second);
      }
      if (members == 0 || !all || seen.size() != 1) continue;
      shared_sets.insert(f);
      shared.emplace_back(nb_models + f, *seen.begin());
    }
    for (const auto& [m, c] : code) {
      if (shared_sets.count(sets[static_cast<size_t>(m)]) == 0) alone.emplace_back(m, c);
    }
    alone.insert(alone.end(), shared.begin(), shared.end());
    return alone;
  }

  bool begins(const std::string& prefix) const {
    const auto at = codes.lower_bound(prefix);
    return at != codes.end() && at->first.compare(0, prefix.size(), prefix) == 0;
  }
};

int state_of(const CLidMGroup& group, const std::string& prefix) {
  int state = 0;
  for (const char c : prefix) state = group.child(state, static_cast<unsigned char>(c));
  return state;
}

// Random models over the first `nb_letters` byte values; two bytes have all of them as successors.
std::vector<Costs> random_models(std::mt19937& random, size_t nb_models, unsigned nb_letters) {
  std::vector<Costs> models(nb_models);
  for (Costs& costs : models) {
    std::map<std::string, float> distinct;
    const auto letter = [&] { return static_cast<char>(random() % nb_letters); };
    const auto cost = [&] { return static_cast<float>(random() % 64) / 4.0f; };
    for (unsigned i = 0; i < 600; ++i) {
      distinct[std::string{letter(), letter(), letter()}] = cost();
    }
    for (unsigned c = 0; c < nb_letters; ++c) {
      distinct[std::string{static_cast<char>(c), 'x', 'y'}] = cost();
      distinct[std::string{'a', static_cast<char>(c), 'z'}] = cost();
      if (c % 2 == 0) distinct[std::string{'a', 'b', static_cast<char>(c)}] = cost();
    }
    costs.assign(distinct.begin(), distinct.end());
  }
  return models;
}

void expect_naive(const CLidMGroup& group, const Naive& naive, const std::vector<int>& sets) {
  for (const auto& [trigram, codes] : naive.codes) {
    ASSERT_EQ(values_of(group, trigram), naive.values(trigram, sets));
    const std::string suffix = trigram.substr(1);
    const std::string last = trigram.substr(2);
    const int expected = naive.begins(suffix) ? state_of(group, suffix)
                         : naive.begins(last) ? state_of(group, last)
                                              : 0;
    ASSERT_EQ(orva::default_successor_of(group, trigram), expected);
  }
  ASSERT_EQ(group.lstates_tsize, static_cast<int>(naive.codes.size()));
}

}  // namespace

TEST(Automaton, RandomModelsAgreeWithANaiveLookup) {
  std::mt19937 random(20);
  for (const int min_for_direct : {2, 128, 256, 257}) {
    // A compact state holds 255 children at most.
    const unsigned nb_letters = min_for_direct == 257 ? 255 : 256;
    for (const std::vector<int>& sets :
         {std::vector<int>{-1, -1, -1, -1}, {0, 0, -1, 1}, {1, -1, 1, 1}}) {
      const std::vector<Costs> models = random_models(random, sets.size(), nb_letters);
      ModelFiles files;
      for (size_t m = 0; m < models.size(); ++m) files.add("m" + std::to_string(m), models[m]);
      files.sets = sets;
      CLidMGroup group;
      ASSERT_EQ(files.build(group, min_for_direct), 0);
      EXPECT_EQ(orva::group_defect(group), "");
      const Naive naive(models);
      expect_naive(group, naive, sets);
      for (int i = 0; i < 20000; ++i) {
        const std::string any = {static_cast<char>(random()), static_cast<char>(random()),
                                 static_cast<char>(random())};
        ASSERT_EQ(values_of(group, any), naive.values(any, sets));
      }
    }
  }
}

TEST(Automaton, RandomModelsOfFewLettersAgreeWithANaiveLookup) {
  std::mt19937 random(21);
  for (int round = 0; round < 30; ++round) {
    std::vector<Costs> models;
    const unsigned nb_letters = 3 + static_cast<unsigned>(round) % 9;
    for (int m = 0; m < 3; ++m) {
      std::map<std::string, float> distinct;
      for (int i = 0; i < 40; ++i) {
        std::string trigram;
        for (int k = 0; k < 3; ++k)
          trigram.push_back(static_cast<char>('a' + random() % nb_letters));
        distinct[trigram] = static_cast<float>(random() % 4);
      }
      models.emplace_back(distinct.begin(), distinct.end());
    }
    ModelFiles files;
    for (const Costs& costs : models) files.add("m" + std::to_string(files.nb()), costs);
    files.sets = {0, 0, 0};
    CLidMGroup group;
    ASSERT_EQ(files.build(group, 5 + round % 7), 0);
    expect_naive(group, Naive(models), files.sets);
  }
}

TEST(Automaton, StatesAreNumberedBreadthFirst) {
  ModelFiles files;
  files.add("enA", {{"bcd", 1.0f}, {"abc", 2.0f}, {"abd", 3.0f}, {"aac", 4.0f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(group.nb_istates, 6);
  EXPECT_EQ(state_of(group, "a"), 1);
  EXPECT_EQ(state_of(group, "b"), 2);
  EXPECT_EQ(state_of(group, "aa"), 3);
  EXPECT_EQ(state_of(group, "ab"), 4);
  EXPECT_EQ(state_of(group, "bc"), 5);
  EXPECT_EQ(state_of(group, "aac"), 6);
  EXPECT_EQ(state_of(group, "bcd"), 9);
  EXPECT_EQ(std::string(group.istates_chrs, group.istates_chrs + group.istates_chrs_tsize),
            "ababccc"
            "dd");
}

TEST(Automaton, DefaultSuccessorIsTheSuffixThenTheLastByteThenTheRoot) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}, {"bcd", 2.0f}, {"xya", 3.0f}, {"xyz", 4.0f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(orva::default_successor_of(group, "abc"), state_of(group, "bc"));
  EXPECT_EQ(orva::default_successor_of(group, "xya"), state_of(group, "a"));
  EXPECT_EQ(orva::default_successor_of(group, "xyz"), 0);
  EXPECT_EQ(group.child(0, 'c'), 0);
}

TEST(Automaton, WithoutDirectStatesTheDirectTableIsOneZero) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group, 257), 0);
  EXPECT_EQ(group.istates_dnxts_tsize, 1);
  EXPECT_EQ(group.istates_dnxts[0], 0);
}

TEST(Automaton, DirectStatesBeginAtTheGivenNumberOfChildren) {
  ModelFiles files;
  files.add("enA", {{"aab", 1.0f}, {"abb", 1.0f}, {"acc", 1.0f}});
  for (const int min : {3, 4}) {
    CLidMGroup group;
    ASSERT_EQ(files.build(group, min), 0);
    EXPECT_EQ(group.istates_dnxts_tsize, min == 3 ? 256 : 1);
    EXPECT_EQ(orva::state_first(group.istates[1].info) == 0, min == 3);
    EXPECT_EQ(state_of(group, "acc"), 7);
  }
}

TEST(Automaton, TrigramsMayBeginWithNul) {
  ModelFiles files;
  const std::string nul("\0\0\0", 3);
  files.add("enA", {{nul, 1.0f}, {std::string("\0a\0", 3), 1.5f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(values_of(group, nul), (Values{{0, 0}}));
  EXPECT_EQ(orva::default_successor_of(group, nul), state_of(group, std::string("\0\0", 2)));
}

TEST(Automaton, BuiltGroupIsSavedAndLoadedAlike) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}, {"abd", 2.0f}});
  files.add("frA", {{"abc", 1.0f}, {"xbd", 2.0f}});
  files.sets = {0, 0};
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  const std::string bytes = orva::saved_group(group);
  const orva::TempDir dir;
  CLidMGroup back;
  ASSERT_EQ(back.load(dir.file("group", bytes).c_str()), kGroupOk);
  EXPECT_EQ(orva::saved_group(back), bytes);
}

TEST(Automaton, SecondBuildReplacesTheFirst) {
  ModelFiles first;
  first.add("enA", {{"abc", 1.0f}});
  first.add("enB", {{"abd", 1.0f}});
  ModelFiles second;
  second.add("frA", {{"xyz", 1.0f}});
  CLidMGroup group;
  ASSERT_EQ(first.build(group), 0);
  ASSERT_EQ(second.build(group), 0);
  CLidMGroup fresh;
  ASSERT_EQ(second.build(fresh), 0);
  EXPECT_EQ(orva::saved_group(group), orva::saved_group(fresh));
}
