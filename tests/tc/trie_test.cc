#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "lib/tc/tc_trie.h"
#include "lib/tc/trie_fsa_enum.h"
#include "tests/tc/tc_fixture.h"

namespace {
using Trie = TCTrie<unsigned char>;

struct State {
  std::string chrs;
  int word;
};

std::vector<State> states_of(const Trie& trie) {
  TCTrieFsaEnum<unsigned char> states;
  states.init0(&trie);
  std::vector<State> out;
  unsigned char chrs[256];
  int nb = 0;
  int word = 0;
  while (states.next(&nb, chrs, &word)) out.push_back({std::string(chrs, chrs + nb), word});
  return out;
}

void add(Trie& trie, const std::string& path, int word) {
  trie.add_path(orva_test::key(path), static_cast<int>(path.size()))->word = word;
}
}  // namespace

TEST(Trie, NewPathHasNoWordAndAKnownOneKeepsIts) {
  Trie trie;
  EXPECT_EQ(trie.add_path(orva_test::key("abc"), 3)->word, -1);
  add(trie, "abc", 4);
  EXPECT_EQ(trie.add_path(orva_test::key("abc"), 3)->word, 4);
  EXPECT_EQ(trie.add_path(orva_test::key("abd"), 3)->word, -1);
}

TEST(Trie, PathsMayHoldNul) {
  Trie trie;
  add(trie, std::string("\0\0a", 3), 1);
  add(trie, std::string("\0b\0", 3), 2);
  EXPECT_EQ(states_of(trie)[1].chrs, std::string("\0b", 2));
}

TEST(Trie, EmptyTrieIsItsRoot) {
  const Trie trie;
  const std::vector<State> states = states_of(trie);
  ASSERT_EQ(states.size(), 1u);
  EXPECT_EQ(states[0].chrs, "");
  EXPECT_EQ(states[0].word, -1);
}

TEST(Trie, StatesComeBreadthFirstWithAscendingChildren) {
  Trie trie;
  add(trie, "bax", 0);
  add(trie, "aby", 1);
  add(trie,
      "\xff"
      "aa",
      2);
  add(trie, "baa", 3);
  add(trie, "aaz", 4);
  const std::vector<State> states = states_of(trie);
  std::vector<std::string> chrs;
  std::vector<int> words;
  for (const State& s : states) {
    if (s.word < 0) {
      EXPECT_TRUE(words.empty()) << "a leaf came before an inner state";
      chrs.push_back(s.chrs);
    } else {
      EXPECT_EQ(s.chrs, "");
      words.push_back(s.word);
    }
  }
  EXPECT_EQ(chrs, (std::vector<std::string>{"ab\xff", "ab", "a", "a", "z", "y", "ax", "a"}));
  EXPECT_EQ(words, (std::vector<int>{4, 1, 3, 0, 2}));
}

TEST(Trie, RandomPathsAreAllFoundInOrder) {
  std::mt19937 random(3);
  Trie trie;
  std::map<std::string, int> expected;
  for (int i = 0; i < 20000; ++i) {
    std::string path;
    for (int k = 0; k < 3; ++k) path.push_back(static_cast<char>(random() % 60 * 4));
    TrieNodeSeg* leaf = trie.add_path(orva_test::key(path), 3);
    const auto known = expected.find(path);
    ASSERT_EQ(leaf->word, known == expected.end() ? -1 : known->second);
    if (leaf->word < 0) leaf->word = static_cast<int>(expected.size());
    expected.emplace(path, leaf->word);
  }
  std::vector<int> words;
  for (const State& s : states_of(trie)) {
    if (s.word >= 0) words.push_back(s.word);
  }
  // Leaves in ascending order of their paths, bytes taken as unsigned.
  struct ByBytes {
    bool operator()(const std::string& a, const std::string& b) const {
      return std::vector<unsigned char>(a.begin(), a.end()) <
             std::vector<unsigned char>(b.begin(), b.end());
    }
  };
  std::map<std::string, int, ByBytes> sorted(expected.begin(), expected.end());
  std::vector<int> in_order;
  for (const auto& entry : sorted) in_order.push_back(entry.second);
  EXPECT_EQ(words, in_order);
}

TEST(Trie, EnumeratorStartsAgainAndGivesItsQueueBack) {
  Trie trie;
  for (int i = 0; i < 256; ++i) {
    for (int j = 0; j < 40; ++j) {
      const unsigned char path[3] = {static_cast<unsigned char>(i), static_cast<unsigned char>(j),
                                     1};
      trie.add_path(path, 3)->word = i * 40 + j;
    }
  }
  const int before = _MallocChkNbBytes;
  {
    TCTrieFsaEnum<unsigned char> states;
    unsigned char chrs[256];
    int nb = 0;
    int word = 0;
    for (int round = 0; round < 2; ++round) {
      states.init0(&trie);
      int nb_states = 0;
      while (nb_states < 9000 && states.next(&nb, chrs, &word)) ++nb_states;
      EXPECT_EQ(nb_states, 9000);
    }
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
  EXPECT_EQ(states_of(trie).size(), 1u + 256 + 2 * 256 * 40);
}

TEST(Trie, EverythingIsGivenBack) {
  const int before = _MallocChkNbBytes;
  {
    Trie trie;
    for (int i = 0; i < 20; ++i) add(trie, std::string("ab") + static_cast<char>('a' + i), i);
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}
