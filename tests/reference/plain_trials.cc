#include "tests/reference/plain_trials.h"

#include <algorithm>
#include <string>

#include "lib/detect/charset_table.h"
#include "lib/detect/placement.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/trials.h"

namespace orva {

namespace {

constexpr double kMostOdd = 1.5;

Placement placement_of(const Reading& reading, const TrialText& text) {
  return {alphabet_of(reading.charsets.front()), text.counts};
}

}  // namespace

void PlainTrials::start(const TrialText* text, const std::vector<double>* base,
                        const std::vector<double>* extra) {
  text_ = text;
  base_ = base;
  extra_ = extra;
  rival_ = kNoCost;
  trials_.clear();
}

void PlainTrials::add(Reading* reading) {
  const Placement placement = placement_of(*reading, *text_);
  if (static_cast<double>(placement.odd()) >
      kMostOdd * (static_cast<double>(placement.letters()) + 1)) {
    return;
  }
  Trial trial;
  trial.reading = reading;
  for (const size_t h : reading->possible->homes) {
    const Rewriting& rewriting = homes_.rewritings(reading->charsets.front())[h];
    if (rewriting.missing(text_->counts) > most_missing(placement.letters())) continue;
    InHome in;
    in.home = h;
    in.sums.start(homes_.all()[h].models);
    trial.homes.push_back(in);
  }
  if (!trial.homes.empty()) trials_.push_back(trial);
}

void PlainTrials::ask(size_t first, size_t last, Trial* trial) const {
  const Placement placement = placement_of(*trial->reading, *text_);
  const auto& rewritings = homes_.rewritings(trial->reading->charsets.front());
  for (size_t i = first; i < last; ++i) {
    const TrialText::Piece& piece = text_->pieces[i];
    const std::string_view segment = text_->segments[piece.segment];
    const size_t length = piece.to - piece.from;
    trial->extra += placement.cost(segment, piece.from, piece.to);
    trial->length += length;
    for (InHome& in : trial->homes) {
      if (!in.alive) continue;
      std::string written((piece.to - piece.context) * Rewriting::kLongest, 0);
      const Rewriting& rewriting = rewritings[in.home];
      char* const begin = written.data();
      const char* const middle = rewriting.write(segment, piece.context, piece.from, begin, begin);
      const auto context = static_cast<size_t>(middle - begin);
      const char* const end =
          rewriting.write(segment, piece.from, piece.to, begin, begin + context);
      in.sums.add({begin, static_cast<size_t>(end - begin)}, context);
      in.length += length;
    }
  }
}

void PlainTrials::compare(Trial* trial) const {
  trial->least = kNoCost;
  double least_with_extra = kNoCost;
  std::vector<std::pair<double, double>> least(trial->homes.size(), {kNoCost, kNoCost});
  for (size_t h = 0; h < least.size(); ++h) {
    const InHome& in = trial->homes[h];
    const std::vector<size_t>& languages = homes_.all()[in.home].languages;
    for (size_t i = 0; i < languages.size() && in.alive; ++i) {
      const size_t l = languages[i];
      if (trial->reading->possible->marks[l] == 0) continue;
      const double cost = (*base_)[l] + in.sums.total(i);
      least[h].first = std::min(least[h].first, cost);
      least[h].second = std::min(least[h].second, cost + (*extra_)[l]);
    }
    trial->least = std::min(trial->least, least[h].first);
    least_with_extra = std::min(least_with_extra, least[h].second);
  }
  for (size_t h = 0; h < least.size(); ++h) {
    trial->homes[h].alive =
        trial->homes[h].alive &&
        (least[h].first <= trial->least + margin_ || least[h].second <= least_with_extra + margin_);
  }
  trial->least += trial->extra + trial->reading->prior;
}

bool PlainTrials::is_told() const {
  const auto alive = [](const Trial& trial) { return trial.alive; };
  const auto nb_alive = std::count_if(trials_.begin(), trials_.end(), alive);
  if (nb_alive != 1) return nb_alive == 0;
  const Trial& trial = *std::find_if(trials_.begin(), trials_.end(), alive);
  std::vector<double> costs = {kNoCost, kNoCost};
  for (const InHome& in : trial.homes) {
    const std::vector<size_t>& languages = homes_.all()[in.home].languages;
    for (size_t i = 0; i < languages.size() && in.alive; ++i) {
      const size_t l = languages[i];
      if (trial.reading->possible->marks[l] == 0) continue;
      costs.push_back((*base_)[l] + (*extra_)[l] + in.sums.total(i));
    }
  }
  std::sort(costs.begin(), costs.end());
  return costs[1] >= costs[0] + told_;
}

void PlainTrials::settle(Trial* trial) const {
  const auto stretch = [this](size_t length) {
    return length == 0 ? 1 : static_cast<double>(text_->length) / static_cast<double>(length);
  };
  Reading& reading = *trial->reading;
  const double extra = trial->extra * stretch(trial->length) +
                       placement_of(reading, *text_).whole_cost(text_->segments);
  trial->least = kNoCost;
  for (const InHome& in : trial->homes) {
    const std::vector<size_t>& languages = homes_.all()[in.home].languages;
    for (size_t i = 0; i < languages.size(); ++i) {
      const size_t l = languages[i];
      if (reading.possible->marks[l] == 0) continue;
      reading.costs[l] = (*base_)[l] + in.sums.total(i) * stretch(in.length) + extra;
      trial->least = std::min(trial->least, reading.costs[l] + reading.prior);
    }
  }
}

void PlainTrials::run() {
  size_t asked = 0;
  size_t bytes = 0;
  for (size_t until = 1; asked < text_->pieces.size(); until *= 2) {
    until = std::min(until, text_->pieces.size());
    for (size_t i = asked; i < until; ++i) bytes += text_->pieces[i].to - text_->pieces[i].from;
    double least = kNoCost;
    if (rival_ != kNoCost) {
      const double of_base = *std::min_element(base_->begin(), base_->end());
      const double share = static_cast<double>(bytes) / static_cast<double>(text_->length);
      least = of_base + std::max(rival_ - of_base, 0.0) * share + margin_;
    }
    for (Trial& trial : trials_) {
      if (trial.alive) ask(asked, until, &trial);
    }
    asked = until;
    if (asked == text_->pieces.size()) break;
    for (Trial& trial : trials_) {
      if (!trial.alive) continue;
      compare(&trial);
      least = std::min(least, trial.least);
    }
    for (Trial& trial : trials_) {
      if (!trial.alive) continue;
      trial.behind = trial.least - least;
      trial.alive = trial.behind <= margin_;
    }
    if (is_told()) break;
  }
  double best = kNoCost;
  for (Trial& trial : trials_) {
    settle(&trial);
    if (trial.alive) best = std::min(best, trial.least);
  }
  for (const Trial& trial : trials_) {
    if (trial.alive) continue;
    const double missing = std::max(0.0, best + trial.behind - trial.least);
    for (double& cost : trial.reading->costs) cost += missing;
  }
}

}  // namespace orva
