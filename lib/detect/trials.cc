#include "lib/detect/trials.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <iterator>
#include <optional>
#include <utility>

#include "lib/detect/charset_table.h"
#include "lib/detect/placement.h"

namespace orva {

namespace {

// A reading is not asked for where more of its letters are missing from a home, or where odd signs
// outnumber its letters by more.
constexpr double kMostMissing = 0.2;
constexpr double kMostOdd = 1.5;

// The least of some columns: base + sums * unit, and the same with what is extra.
struct Least {
  double cost = kNoCost;
  double with_extra = kNoCost;
};

struct Columns {
  const double* base;
  const double* extra;
  const double* barred;
  const double* sums;
};

// REQUIRES: an even number of columns.
Least least_of_columns(const Columns& columns, size_t count, double unit) {
  const __m128d units = _mm_set1_pd(unit);
  __m128d cost = _mm_set1_pd(kNoCost);
  __m128d with_extra = cost;
  for (size_t k = 0; k < count; k += 2) {
    const __m128d total = _mm_mul_pd(_mm_loadu_pd(columns.sums + k), units);
    const __m128d now = _mm_add_pd(_mm_add_pd(_mm_loadu_pd(columns.base + k), total),
                                   _mm_loadu_pd(columns.barred + k));
    cost = _mm_min_pd(cost, now);
    with_extra = _mm_min_pd(with_extra, _mm_add_pd(now, _mm_loadu_pd(columns.extra + k)));
  }
  return {least_lane(cost), least_lane(with_extra)};
}

}  // namespace

uint64_t most_missing(uint64_t letters) {
  return static_cast<uint64_t>(kMostMissing * static_cast<double>(letters));
}

// A reading in one home.
struct Trials::InHome {
  const Home* home = nullptr;
  size_t index = 0;          // of the home
  std::vector<double> sums;  // by column of its models: whole numbers, in their units
  size_t length = 0;         // of the pieces asked about
  Least least;
  bool alive = true;

  double total(size_t i) const { return sums[i] * home->models.unit(); }
};

struct Trials::Trial {
  Reading* reading = nullptr;
  const LetterCodes* codes = nullptr;
  std::optional<Placement> placement;
  Pool<InHome> homes;
  size_t written = 0;  // the number of what was written last
  double extra = 0;    // of the pieces asked about, whatever the language is
  size_t length = 0;   // of the pieces asked about
  double least = kNoCost;
  double behind = 0;  // the best, when it gave up
  bool alive = true;
};

Trials::Trials(const Homes& homes) : homes_(homes) {}

Trials::~Trials() = default;

void Trials::start(const TrialText* text, const std::vector<double>* base,
                   const std::vector<double>* extra) {
  text_ = text;
  base_ = base;
  rival_ = kNoCost;
  trials_.clear();
  all_ = homes_.all().data();
  column_base_.assign(homes_.nb_columns(), kNoCost);
  column_extra_.assign(homes_.nb_columns(), 0);
  for (const Home& home : homes_.all()) {
    for (size_t i = 0; i < home.languages.size(); ++i) {
      column_base_[home.first_column + i] = (*base)[home.languages[i]];
      column_extra_[home.first_column + i] = (*extra)[home.languages[i]];
    }
  }
}

// Whether a reading is not to be asked about in a home, for its letters are not there.
bool Trials::lacks_letters(const HighBytes& missing, uint64_t most) const {
  const ByteCounts& counts = text_->counts;
  if (!counts.high.share(missing)) return false;
  uint64_t sum = 0;
  for (size_t w = 0; w < std::size(missing.words); ++w) {
    for (uint64_t bits = counts.high.words[w] & missing.words[w]; bits != 0; bits &= bits - 1) {
      sum += counts.of[0x80 + 64 * w + static_cast<size_t>(std::countr_zero(bits))];
      if (sum > most) return true;
    }
  }
  return false;
}

void Trials::add(Reading* reading) {
  const int charset = reading->charsets.front();
  const Placement placement(alphabet_of(charset), text_->counts);
  if (static_cast<double>(placement.odd()) >
      kMostOdd * (static_cast<double>(placement.letters()) + 1)) {
    return;
  }
  const uint64_t most = most_missing(placement.letters());
  const HighBytes* const missing = &homes_.missing(charset, 0);
  Trial& trial = trials_.add();
  trial.homes.clear();
  for (const size_t h : reading->possible->homes) {
    if (lacks_letters(missing[h], most)) continue;
    const Home& home = all_[h];
    InHome& in = trial.homes.add();
    in.home = &home;
    in.index = h;
    in.sums.assign(home.nb_columns(), 0);
    in.length = 0;
    in.alive = true;
  }
  if (trial.homes.empty()) {
    trials_.drop();
    return;
  }
  trial.reading = reading;
  trial.codes = &letter_codes_of(charset);
  trial.placement = placement;
  trial.extra = 0;
  trial.length = 0;
  trial.least = kNoCost;
  trial.behind = 0;
  trial.alive = true;
}

// Writes the pieces from the `first` one to before the `last` one, to be asked about.
void Trials::write(size_t first, size_t last, Trial* trial) {
  size_t length = 0;
  size_t room = 0;
  for (size_t i = first; i < last; ++i) {
    const TrialText::Piece& piece = text_->pieces[i];
    trial->extra += trial->placement->cost(text_->segments[piece.segment], piece.from, piece.to);
    length += piece.to - piece.from;
    room += piece.to - piece.context;
  }
  trial->length += length;
  LetterCode* const begin = costs_.room(room);
  LetterCode* end = begin;
  parts_.clear();
  for (size_t i = first; i < last; ++i) {
    const TrialText::Piece& piece = text_->pieces[i];
    const std::string_view segment = text_->segments[piece.segment];
    LetterCode* const start = end;
    LetterCode* const middle =
        trial->codes->write(segment, piece.context, piece.from, start, start);
    end = trial->codes->write(segment, piece.from, piece.to, start, middle);
    parts_.push_back({static_cast<size_t>(start - begin), static_cast<size_t>(middle - begin),
                      static_cast<size_t>(end - begin)});
  }
  trial->written = costs_.add(end, parts_);
  for (InHome& in : trial->homes) {
    if (!in.alive) continue;
    costs_.want(trial->written, in.index);
    in.length += length;
  }
}

void Trials::ask(size_t first, size_t last) {
  costs_.start(homes_.all());
  for (Trial& trial : trials_) {
    if (trial.alive) write(first, last, &trial);
  }
  costs_.ask();
  for (Trial& trial : trials_) {
    if (!trial.alive) continue;
    for (InHome& in : trial.homes) {
      if (!in.alive) continue;
      const double* const sums = costs_.sums(trial.written, in.index);
      add_to(in.sums.data(), sums, in.sums.size());
    }
  }
}

// Gives up homes that are neither near the cheapest nor near the likeliest of the languages.
void Trials::compare(Trial* trial) {
  double least_in_all = kNoCost;
  trial->least = kNoCost;
  for (InHome& in : trial->homes) {
    if (!in.alive) continue;
    const size_t first = in.home->first_column;
    in.least = least_of_columns({column_base_.data() + first, column_extra_.data() + first,
                                 trial->reading->possible->barred.data() + first, in.sums.data()},
                                in.sums.size(), in.home->models.unit());
    trial->least = std::min(trial->least, in.least.cost);
    least_in_all = std::min(least_in_all, in.least.with_extra);
  }
  for (InHome& in : trial->homes) {
    in.alive = in.alive && (in.least.cost <= trial->least + margin_ ||
                            in.least.with_extra <= least_in_all + margin_);
  }
  trial->least += trial->extra + trial->reading->prior;
}

double Trials::rival_at(size_t asked) const {
  const double least = least_of(base_->data(), base_->size());
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
  TwoLeast two;
  for (const InHome& in : alive->homes) {
    const size_t first = in.home->first_column;
    for (size_t i = 0; i < in.home->languages.size() && in.alive; ++i) {
      two.add(column_base_[first + i] + column_extra_[first + i] + in.total(i) +
              alive->reading->possible->barred[first + i]);
    }
  }
  return two.next >= two.least + told_;
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
    ask(asked, until);
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
  double least = kNoCost;
  for (const InHome& in : trial->homes) {
    const size_t first = in.home->first_column;
    const double* const base = column_base_.data() + first;
    const double* const barred = reading.possible->barred.data() + first;
    const double times = stretch(in.length);
    const size_t* language = in.home->languages.data();
    for (size_t i = 0; i < in.home->languages.size(); ++i) {
      const double cost = base[i] + in.total(i) * times + extra + barred[i];
      reading.costs[language[i]] = cost;
      least = std::min(least, cost);
    }
  }
  trial->least = least + reading.prior;
}

// What a little of the text tells about the rest is too rough to pass those that were asked on.
void Trials::keep_behind(const Trial& trial, double least) {
  const double missing = std::max(0.0, least - trial.least);
  for (double& cost : trial.reading->costs) cost += missing;
}

}  // namespace orva
