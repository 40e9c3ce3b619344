#include "lib/detect/trials.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "lib/detect/charset_table.h"
#include "lib/detect/focus.h"

namespace orva {

namespace {

// A reading is not asked for where more of its letters are missing from a home, or where odd signs
// outnumber its letters by more.
constexpr double kMostMissing = 0.2;
constexpr double kMostOdd = 1.5;

// Bytes of a piece, and how many of the pieces that follow each other are asked about far apart.
constexpr size_t kPiece = 32;
constexpr size_t kFirstPiece = 14;
constexpr size_t kStride = 16;

// Texts that differ have other ones, as a rule.
uint64_t print_of(std::string_view text) {
  uint64_t print = text.size();
  while (!text.empty()) {
    uint64_t word = 0;
    memcpy(&word, text.data(), std::min(text.size(), sizeof(word)));
    print = (print ^ word) * 0x9E3779B97F4A7C15U;
    print ^= print >> 29;
    text.remove_prefix(std::min(text.size(), sizeof(word)));
  }
  return print;
}

}  // namespace

bool lacks_letters(const Rewriting& rewriting, const ByteCounts& counts,
                   const Placement& placement) {
  const uint64_t letters = placement.letters();
  const double most = kMostMissing * static_cast<double>(letters);
  return rewriting.lacks_more(counts, static_cast<uint64_t>(most), letters);
}

TrialText::TrialText(std::vector<std::string> texts)
    : segments(std::move(texts)), counts(segments) {
  std::vector<Piece> in_order;
  for (size_t s = 0; s < segments.size(); ++s) {
    for (size_t from = 0; from < segments[s].size(); from += kPiece) {
      const size_t to = std::min(from + kPiece, segments[s].size());
      in_order.push_back({s, context_before(segments[s], from), from, to});
      length += to - from;
    }
  }
  for (const size_t first : {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15}) {
    for (size_t i = first; i < in_order.size(); i += kStride) pieces.push_back(in_order[i]);
  }
  if (!pieces.empty()) cut_first();
}

// A few bytes tell most wrong readings.
void TrialText::cut_first() {
  Piece& first = pieces.front();
  if (first.to - first.from < 2 * kFirstPiece) return;
  Piece rest = first;
  first.to = rest.from = first.from + kFirstPiece;
  rest.context = context_before(segments[rest.segment], rest.from);
  pieces.insert(pieces.begin() + 1, rest);
}

struct Trials::Answer {
  uint64_t print = 0;  // of the text
  std::string written;
  std::vector<Part> parts;
  CostSums sums;
};

// A reading in one home.
struct Trials::InHome {
  const Home* home = nullptr;
  const Rewriting* rewriting = nullptr;
  size_t index = 0;  // of the home
  CostSums sums;
  size_t length = 0;  // of the pieces asked about
  bool alive = true;
};

struct Trials::Trial {
  Reading* reading = nullptr;
  std::optional<Placement> placement;
  Pool<InHome> homes;
  double extra = 0;   // of the pieces asked about, whatever the language is
  size_t length = 0;  // of the pieces asked about
  double least = kNoCost;
  double behind = 0;  // the best, when it gave up
  bool alive = true;
};

Trials::Trials(const Homes& homes) : homes_(homes) {}

Trials::~Trials() = default;

void Trials::start(const TrialText* text, const std::vector<double>* base) {
  text_ = text;
  base_ = base;
  rival_ = kNoCost;
  trials_.clear();
  answers_.resize(homes_.all().size());
}

void Trials::add(Reading* reading) {
  const int charset = reading->charsets.front();
  const Placement placement(alphabet_of(charset), text_->counts);
  if (static_cast<double>(placement.odd()) >
      kMostOdd * (static_cast<double>(placement.letters()) + 1)) {
    return;
  }
  const std::vector<Rewriting>& rewritings = homes_.rewritings(charset);
  Trial& trial = trials_.add();
  trial.homes.clear();
  for (const size_t h : reading->possible->homes) {
    if (lacks_letters(rewritings[h], text_->counts, placement)) continue;
    const Home& home = homes_.all()[h];
    InHome& in = trial.homes.add();
    in.home = &home;
    in.index = h;
    in.rewriting = &rewritings[h];
    in.sums.start(home.models);
    in.length = 0;
    in.alive = true;
  }
  if (trial.homes.empty()) {
    trials_.drop();
    return;
  }
  trial.reading = reading;
  trial.placement = placement;
  trial.extra = 0;
  trial.length = 0;
  trial.least = kNoCost;
  trial.behind = 0;
  trial.alive = true;
}

// What the pieces cost that were written last, in a home.
const CostSums& Trials::answer(const HomeModels& models, std::string_view written,
                               Pool<Answer>* known) {
  const uint64_t print = print_of(written);
  for (const Answer& answer : *known) {
    if (answer.print == print && answer.written == written && answer.parts == parts_) {
      return answer.sums;
    }
  }
  Answer& answer = known->add();
  answer.print = print;
  answer.written = written;
  answer.parts = parts_;
  answer.sums.start(models);
  for (const Part& part : parts_) {
    answer.sums.add(written.substr(part.begin, part.end - part.begin), part.from - part.begin);
  }
  return answer.sums;
}

// Asks about the pieces from the `first` one to before the `last` one.
void Trials::ask(size_t first, size_t last, Trial* trial) {
  size_t length = 0;
  size_t room = 0;
  for (size_t i = first; i < last; ++i) {
    const TrialText::Piece& piece = text_->pieces[i];
    trial->extra += trial->placement->cost(text_->segments[piece.segment], piece.from, piece.to);
    length += piece.to - piece.from;
    room += (piece.to - piece.context) * Rewriting::kLongest;
  }
  trial->length += length;
  if (written_.size() < room) written_.resize(room);
  for (InHome& in : trial->homes) {
    if (!in.alive) continue;
    char* const begin = written_.data();
    char* end = begin;
    parts_.clear();
    for (size_t i = first; i < last; ++i) {
      const TrialText::Piece& piece = text_->pieces[i];
      const std::string& segment = text_->segments[piece.segment];
      char* const start = end;
      char* const middle = in.rewriting->write(segment, piece.context, piece.from, start, start);
      end = in.rewriting->write(segment, piece.from, piece.to, start, middle);
      parts_.push_back({static_cast<size_t>(start - begin), static_cast<size_t>(middle - begin),
                        static_cast<size_t>(end - begin)});
    }
    const std::string_view written(begin, static_cast<size_t>(end - begin));
    in.sums.add(answer(in.home->models, written, &answers_[in.index]));
    in.length += length;
  }
}

// Gives up homes that are neither near the cheapest nor near the likeliest of the languages.
void Trials::compare(Trial* trial) {
  const std::vector<double>& language_extra = *trial->reading->language_extra;
  const std::vector<char>& possible = trial->reading->possible->marks;
  double least_in_all = kNoCost;
  least_.clear();
  trial->least = kNoCost;
  for (const InHome& in : trial->homes) {
    least_.emplace_back(kNoCost, kNoCost);
    for (size_t i = 0; i < in.home->languages.size() && in.alive; ++i) {
      const size_t l = in.home->languages[i];
      if (possible[l] == 0) continue;
      const double cost = (*base_)[l] + in.sums.total(i);
      least_.back().first = std::min(least_.back().first, cost);
      least_.back().second = std::min(least_.back().second, cost + language_extra[l]);
    }
    trial->least = std::min(trial->least, least_.back().first);
    least_in_all = std::min(least_in_all, least_.back().second);
  }
  for (size_t h = 0; h < least_.size(); ++h) {
    trial->homes[h].alive =
        least_[h].first <= trial->least + margin_ || least_[h].second <= least_in_all + margin_;
  }
  trial->least += trial->extra + trial->reading->prior;
}

double Trials::rival_at(size_t asked) const {
  const double least = *std::min_element(base_->begin(), base_->end());
  const double share = static_cast<double>(asked) / static_cast<double>(text_->length);
  return least + std::max(rival_ - least, 0.0) * share + margin_;
}

// Whether one language of one reading is left.
bool Trials::is_told() const {
  const Trial* alive = nullptr;
  for (const Trial& trial : trials_) {
    if (!trial.alive) continue;
    if (alive != nullptr) return false;
    alive = &trial;
  }
  if (alive == nullptr) return true;
  double least = kNoCost;
  double next = kNoCost;
  for (const InHome& in : alive->homes) {
    for (size_t i = 0; i < in.home->languages.size() && in.alive; ++i) {
      const size_t l = in.home->languages[i];
      if (alive->reading->possible->marks[l] == 0) continue;
      double cost = (*base_)[l] + (*alive->reading->language_extra)[l] + in.sums.total(i);
      if (cost < least) std::swap(cost, least);
      next = std::min(next, cost);
    }
  }
  return next >= least + told_;
}

void Trials::run() {
  size_t asked = 0;
  size_t asked_bytes = 0;
  for (size_t until = 1; asked < text_->pieces.size(); until *= 2) {
    until = std::min(until, text_->pieces.size());
    for (size_t i = asked; i < until; ++i) {
      asked_bytes += text_->pieces[i].to - text_->pieces[i].from;
    }
    double least = rival_ == kNoCost ? kNoCost : rival_at(asked_bytes);
    for (Pool<Answer>& answers : answers_) answers.clear();
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
    if (!trial.alive) keep_behind(trial, best + trial.behind);
  }
}

void Trials::settle(Trial* trial) const {
  // Of a text that is all ASCII there was nothing to ask about.
  const auto stretch = [this](size_t length) {
    return length == 0 ? 1 : static_cast<double>(text_->length) / static_cast<double>(length);
  };
  Reading& reading = *trial->reading;
  const double extra =
      trial->extra * stretch(trial->length) + trial->placement->whole_cost(text_->segments);
  trial->least = kNoCost;
  for (const InHome& in : trial->homes) {
    for (size_t i = 0; i < in.home->languages.size(); ++i) {
      const size_t l = in.home->languages[i];
      if (reading.possible->marks[l] == 0) continue;
      reading.costs[l] = (*base_)[l] + in.sums.total(i) * stretch(in.length) + extra;
      trial->least = std::min(trial->least, reading.costs[l] + reading.prior);
    }
  }
}

// What a little of the text tells about the rest is too rough to pass those that were asked on.
void Trials::keep_behind(const Trial& trial, double least) {
  const double missing = std::max(0.0, least - trial.least);
  for (double& cost : trial.reading->costs) cost += missing;
}

}  // namespace orva
