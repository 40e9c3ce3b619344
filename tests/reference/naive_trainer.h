// A plain, slow twin of training: strings in a map, one formula after the other.
#ifndef ORVA_TESTS_REFERENCE_NAIVE_TRAINER_H_
#define ORVA_TESTS_REFERENCE_NAIVE_TRAINER_H_

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orva {

struct NaiveModel {
  std::vector<std::pair<std::string, float>> trigrams;  // key in hexadecimal, cost
  std::vector<float> byte_costs;
};

inline std::string hex_of(const std::string& bytes) {
  std::string hex;
  for (const char c : bytes) {
    for (const int nibble : {(c >> 4) & 15, c & 15}) hex.push_back("0123456789abcdef"[nibble]);
  }
  return hex;
}

// Trains on `text`, whose first two bytes are context alone, as the options of CTrichrModel::build.
inline NaiveModel naive_training(const std::string& text, int max_tri, int min_freq, float weight,
                                 float coverage) {
  struct Entry {
    std::string trigram;
    int freq;
  };
  std::vector<Entry> entries;
  std::map<std::string, size_t> known;
  std::map<std::string, int> bigrams;
  std::vector<int> counts(256, 0);
  const int n = text.size() < 2 ? 0 : static_cast<int>(text.size()) - 2;
  for (size_t i = 2; i < text.size(); ++i) {
    const std::string trigram = text.substr(i - 2, 3);
    const auto at = known.emplace(trigram, entries.size());
    if (at.second) entries.push_back({trigram, 0});
    ++entries[at.first->second].freq;
    ++bigrams[trigram.substr(0, 2)];
    ++counts[static_cast<unsigned char>(text[i])];
  }
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.freq > b.freq; });
  size_t kept = entries.size();
  if (min_freq > 0) {
    while (kept > 0 && entries[kept - 1].freq < min_freq) --kept;
  } else if (coverage > 0) {
    const int mark = static_cast<int>(static_cast<long double>(coverage) * n);
    int sum = 0;
    kept = 0;
    while (kept < entries.size() && sum <= mark) sum += entries[kept++].freq;
    max_tri = 100000000;
  }
  kept = std::min(kept, static_cast<size_t>(max_tri));

  const long double w = weight;
  NaiveModel model;
  for (const int count : counts) {
    model.byte_costs.push_back(count == 0 ? -1.0f
                                          : static_cast<float>(-logl((1 - w) * count / (n + 2))));
  }
  for (size_t i = 0; i < kept; ++i) {
    const Entry& e = entries[i];
    const int count = counts[static_cast<unsigned char>(e.trigram[2])];
    const long double p =
        w * (e.freq + 1) / (bigrams[e.trigram.substr(0, 2)] + 26) + (1 - w) * count / (n + 2);
    model.trigrams.emplace_back(hex_of(e.trigram), static_cast<float>(-logl(p)));
  }
  return model;
}

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_NAIVE_TRAINER_H_
