#include "tests/reference/naive_scorer.h"

namespace orva {

NaiveScorer::NaiveScorer(const PlainGroup* group) : group_(*group), nb_models_(group->nb_models()) {
  const auto nb_indices = static_cast<size_t>(nb_models_ + group->nb_sets);
  seen_.resize(nb_indices);
  for (auto& row : seen_) row.fill(0);
  q_sum_.assign(nb_indices, 0);
  q_count_.assign(nb_indices, 0);
  cost_.assign(nb_indices, 0);
  trigram_count_.assign(nb_indices, 0);
}

int NaiveScorer::child(int state, uint8_t c) const {
  const auto& next = group_.states[static_cast<size_t>(state)].next;
  const auto found = next.find(c);
  return found == next.end() ? 0 : found->second;
}

const PlainLeaf* NaiveScorer::transition(uint8_t c) {
  const int next = child(state_, c);
  if (next >= group_.nb_states()) {
    const PlainLeaf& leaf = group_.leaves[static_cast<size_t>(next - group_.nb_states())];
    last_ = c;
    state_ = leaf.next;
    return &leaf;
  }
  if (next != 0) {
    state_ = next;
  } else {
    const int after_last = child(child(0, last_), c);
    state_ = after_last != 0 ? after_last : child(0, c);
  }
  last_ = c;
  return nullptr;
}

void NaiveScorer::start(uint8_t c1, uint8_t c2) {
  state_ = 0;
  last_ = 0;
  transition(c1);
  transition(c2);
}

void NaiveScorer::feed(const std::string& bytes) {
  total_ += static_cast<int>(bytes.size());
  for (const char byte : bytes) {
    const auto c = static_cast<uint8_t>(byte);
    ++byte_counts_[c];
    const PlainLeaf* const leaf = transition(c);
    // The number of values is a signed byte.
    if (leaf == nullptr || leaf->values.size() > 127) continue;
    for (const auto& [index, q] : leaf->values) {
      ++seen_[index][c];
      q_sum_[index] += q;
      ++q_count_[index];
      ++value_total_;
    }
  }
  convert();
}

void NaiveScorer::convert() {
  for (int m = 0; m < nb_models_; ++m) {
    const PlainModel& model = group_.models[static_cast<size_t>(m)];
    const auto i = static_cast<size_t>(m);
    if (model.set != -1) {
      q_sum_[i] += q_sum_[static_cast<size_t>(nb_models_ + model.set)];
      q_count_[i] += q_count_[static_cast<size_t>(nb_models_ + model.set)];
    }
    if (q_count_[i] == 0) continue;
    const long double added =
        static_cast<long double>(q_sum_[i]) * static_cast<long double>(model.grad) +
        static_cast<long double>(q_count_[i]) * static_cast<long double>(model.lpmin);
    cost_[i] = static_cast<float>(static_cast<long double>(cost_[i]) + added);
    trigram_count_[i] += q_count_[i];
  }
  q_sum_.assign(q_sum_.size(), 0);
  q_count_.assign(q_count_.size(), 0);
}

std::vector<NaiveScorer::Entry> NaiveScorer::entries(uint8_t byte) const {
  std::vector<Entry> result;
  for (const auto& [index, q] : group_.unigrams[byte]) {
    for (int m = 0; m < nb_models_; ++m) {
      const int set = group_.models[static_cast<size_t>(m)].set;
      if (index == m) {
        result.push_back({m, q, set == -1 ? m : nb_models_ + set});
      } else if (index >= nb_models_ && set == index - nb_models_) {
        result.push_back({m, q, index});
      }
    }
  }
  return result;
}

std::vector<float> NaiveScorer::scores() {
  std::vector<uint32_t> sums(static_cast<size_t>(nb_models_), 0);
  std::vector<uint32_t> counts(static_cast<size_t>(nb_models_), 0);
  for (size_t b = 0; b < 256; ++b) {
    for (const Entry& entry : entries(static_cast<uint8_t>(b))) {
      uint32_t k = byte_counts_[b] - seen_[static_cast<size_t>(entry.model)][b];
      if (entry.group != entry.model) k -= seen_[static_cast<size_t>(entry.group)][b];
      sums[static_cast<size_t>(entry.model)] += static_cast<uint32_t>(entry.q) * k;
      counts[static_cast<size_t>(entry.model)] += k;
    }
  }
  std::vector<float> result;
  for (size_t m = 0; m < counts.size(); ++m) {
    const PlainModel& model = group_.models[m];
    long double cost = cost_[m];
    const auto count = static_cast<int32_t>(counts[m]);
    if (count != 0) {
      cost += static_cast<long double>(sums[m]) * model.unigram_grad +
              static_cast<long double>(count) * model.unigram_lpmin;
    }
    const int32_t unseen = total_ - static_cast<int32_t>(trigram_count_[m]) - count;
    const auto sum = static_cast<float>(cost + 30.0L * unseen);
    result.push_back(static_cast<float>(static_cast<long double>(sum) / total_));
  }
  return result;
}

}  // namespace orva
