// Trials of readings against plain ones, bit for bit, and what they are made of against its like.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "lib/detect/builtin_models.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/converter.h"
#include "lib/detect/evidence.h"
#include "lib/detect/focus.h"
#include "lib/detect/least.h"
#include "lib/detect/rewriting.h"
#include "lib/detect/trials.h"
#include "tests/reference/plain_trials.h"

namespace orva {
namespace {

using Random = std::minstd_rand;

constexpr char kRussian[] =
    "«Утром мы ПОШЛИ на реку» — ловить рыбу, но вода была ТАКОЙ холодной, что никто не захотел "
    "остаться; ААААА! И к обеду все вернулись домой, № 12: пить чай…";
constexpr char kGerman[] =
    "Für größere Übungen müssen wir früh aufstehen; l’été, „später“ wäre es zu heiß – 25° "
    "gefühlt, ÄÄÄÄÄÖ.";
constexpr char kVietnamese[] =
    "Sáng nay chúng tôi ra bờ sông câu cá, nhưng nước lạnh quá nên không ai muốn ở lại lâu. ";
constexpr char kRomanian[] = "În această dimineaţă ne-am dus la râu să prindem peşte, şi apă rece.";
constexpr char kGreek[] = "Το πρωί πήγαμε στο ποτάμι να ψαρέψουμε, αλλά το νερό ήταν πολύ κρύο.";

std::string in(const char* charset, const std::string& text) {
  Conversion out;
  encode_text(*find_charset(charset), text, &out);
  return out.bytes;
}

std::string bytes_at_random(size_t size, Random* random) {
  std::string bytes;
  while (bytes.size() < size) {
    const auto b = static_cast<unsigned char>((*random)() >> 8);
    bytes.push_back(static_cast<char>((*random)() % 3 == 0 ? b : 0x80 | b));
  }
  return bytes;
}

bool keeps_ascii(int charset) {
  return single_byte_table(charset) != nullptr && (kCharsets[charset].flags & kEbcdic) == 0;
}

class TrialsTwin : public testing::Test {
 protected:
  void SetUp() override {
    tables_ = builtin_models();
    if (tables_ == nullptr) GTEST_SKIP() << "no models are built in";
    trials_ = std::make_unique<Trials>(tables_->homes());
    const size_t nb_languages = tables_->languages().size();
    Random random(5);
    for (size_t l = 0; l < nb_languages; ++l) {
      base_.push_back(static_cast<double>(random() % 100) / 8);
      extra_.push_back(static_cast<double>(random() % 100) / 4);
    }
    for (const uint32_t scripts : {kAllScripts, script_bit(kLatin) | script_bit(kCyrillic)}) {
      possible_.push_back(tables_->homes().possible(scripts, {}));
    }
  }

  std::vector<Reading> readings() const {
    std::vector<Reading> all;
    for (int c = 0; c < kCharsetCount; ++c) {
      if (!keeps_ascii(c)) continue;
      Reading& reading = all.emplace_back();
      reading.charsets = {c};
      reading.costs.assign(base_.size(), kNoCost);
      reading.possible = &possible_[static_cast<size_t>(c) % possible_.size()];
      reading.prior = c % 7;
    }
    return all;
  }

  struct Limits {
    double margin;
    double told;
    double rival;
  };

  template <typename AnyTrials>
  std::vector<std::vector<double>> run(AnyTrials* trials, const TrialText& text, Limits limits) {
    std::vector<Reading> all = readings();
    trials->start(&text, &base_, &extra_);
    trials->set_margin(limits.margin);
    trials->set_told(limits.told);
    trials->set_rival(limits.rival);
    for (Reading& reading : all) trials->add(&reading);
    trials->run();
    std::vector<std::vector<double>> costs;
    for (const Reading& reading : all) costs.push_back(reading.costs);
    return costs;
  }

  void expect_twin(const std::string& bytes) {
    const TrialText text(normalised(bytes));
    PlainTrials plain(tables_->homes());
    for (const Limits& limits : {Limits{60, 80, kNoCost}, Limits{60, 80, 300},
                                 Limits{10, 20, kNoCost}, Limits{kNoCost, kNoCost, kNoCost}}) {
      ASSERT_EQ(run(trials_.get(), text, limits), run(&plain, text, limits)) << bytes;
    }
  }

  std::shared_ptr<const ModelTables> tables_;
  std::unique_ptr<Trials> trials_;  // for all texts
  std::vector<double> base_;
  std::vector<double> extra_;
  std::vector<PossibleLanguages> possible_;
};

TEST_F(TrialsTwin, RealTextsCostWhatTheyDoReadingByReading) {
  const std::pair<const char*, const char*> texts[] = {
      {"windows-1251", kRussian}, {"KOI8-R", kRussian},      {"IBM866", kRussian},
      {"windows-1252", kGerman},  {"IBM850", kGerman},       {"windows-1258", kVietnamese},
      {"VISCII", kVietnamese},    {"ISO-8859-2", kRomanian}, {"windows-1253", kGreek},
      {"ISO-8859-16", kRomanian}};
  for (const auto& [charset, text] : texts) {
    const std::string bytes = in(charset, text);
    expect_twin(bytes);
    expect_twin(bytes.substr(0, 20));
    expect_twin(bytes + bytes + "plain words between them " + bytes);
  }
  expect_twin("");
  expect_twin("plain");
  expect_twin("\xE9");
}

TEST_F(TrialsTwin, RandomBytesCostWhatTheyDoReadingByReading) {
  Random random(17);
  for (const size_t size : {1, 3, 15, 40, 200, 1000}) expect_twin(bytes_at_random(size, &random));
}

TEST_F(TrialsTwin, HomesSeeOfCodesWhatTheySeeOfBytes) {
  Random random(23);
  for (int c = 0; c < kCharsetCount; ++c) {
    if (!keeps_ascii(c)) continue;
    std::string text = bytes_at_random(120, &random);
    text.insert(random() % text.size(), random() % 6, static_cast<char>(0x80 | random() % 128));
    std::vector<LetterCode> codes(text.size());
    const size_t half = text.size() / 2;
    LetterCode* const middle = letter_codes_of(c).write(text, 0, half, codes.data(), codes.data());
    const LetterCode* const end =
        letter_codes_of(c).write(text, half, text.size(), codes.data(), middle);
    for (size_t h = 0; h < tables_->homes().all().size(); ++h) {
      const Home& home = tables_->homes().all()[h];
      const Rewriting& rewriting = tables_->homes().rewritings(c)[h];
      std::string written(text.size() * Rewriting::kLongest, 0);
      char* const begin = written.data();
      const char* const mid = rewriting.write(text, 0, half, begin, begin);
      const auto context = static_cast<size_t>(mid - begin);
      const char* const last = rewriting.write(text, half, text.size(), begin, begin + context);
      written.resize(static_cast<size_t>(last - begin));
      std::vector<unsigned char> expected;
      walk_trigrams(written, context, home.models.folding(),
                    [&expected](const unsigned char* bytes, size_t count) {
                      for (size_t i = 0; i < count; ++i) {
                        expected.insert(expected.end(), bytes + i, bytes + i + 3);
                      }
                    });
      std::vector<unsigned char> folded(text.size() * LetterForm::kLongest + HomeForms::kSlack);
      const size_t size = home.forms.fold(codes.data(), middle, end, folded.data());
      std::vector<unsigned char> seen;
      for (size_t i = 0; i + 2 < size; ++i) {
        seen.insert(seen.end(), folded.begin() + static_cast<ptrdiff_t>(i),
                    folded.begin() + static_cast<ptrdiff_t>(i) + 3);
      }
      ASSERT_EQ(seen, expected) << kCharsets[c].iana << " " << h;
    }
  }
}

TEST_F(TrialsTwin, LettersThatHomesLackAreThoseTheyCannotWrite) {
  for (int c = 0; c < kCharsetCount; ++c) {
    if (!keeps_ascii(c)) continue;
    for (size_t h = 0; h < tables_->homes().all().size(); ++h) {
      const HighBytes& missing = *(&tables_->homes().missing(c, 0) + h);
      for (int b = 0x80; b < 256; ++b) {
        const std::string text(1, static_cast<char>(b));
        const bool lacks = tables_->homes().rewritings(c)[h].missing(ByteCounts({text})) != 0;
        ASSERT_EQ((missing.words[b / 64 - 2] >> b % 64 & 1) != 0, lacks);
      }
    }
  }
}

TEST(CharsetSets, HoldWhatCannotDecodeTheDocument) {
  Random random(29);
  for (int run = 0; run < 200; ++run) {
    Evidence evidence;
    evidence.feed(bytes_at_random(random() % 30, &random));
    for (const bool with_controls : {false, true}) {
      const CharsetSet undecodable = evidence.undecodable(with_controls);
      for (int c = 0; c < kCharsetCount; ++c) {
        if (single_byte_table(c) == nullptr) continue;
        ASSERT_EQ(undecodable.holds(c), !evidence.decodes(c, with_controls)) << kCharsets[c].iana;
      }
    }
  }
}

TEST(Least, VectorsCompareAsLoopsDo) {
  Random random(31);
  for (size_t count = 0; count < 70; ++count) {
    std::vector<double> costs;
    for (size_t i = 0; i < count; ++i) {
      costs.push_back(random() % 5 == 0 ? kNoCost : static_cast<double>(random() % 50) / 4);
    }
    std::vector<double> sorted = costs;
    sorted.resize(count + 2, kNoCost);
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(least_of(costs.data(), count), sorted[0]);
    const std::vector<double> none(count, 0);
    std::vector<double> sums(count);
    const TwoLeast two = two_least_sums(none.data(), costs.data(), none.data(), count, sums.data());
    EXPECT_EQ(sums, costs);
    EXPECT_EQ(two.least, sorted[0]);
    EXPECT_EQ(two.next, sorted[1]);
    const auto first = std::find(costs.begin(), costs.end(), two.least);
    EXPECT_EQ(place_of(two.least, costs.data(), count), static_cast<size_t>(first - costs.begin()));
    std::vector<double> doubled = costs;
    add_to(doubled.data(), costs.data(), count);
    for (size_t i = 0; i < count; ++i) EXPECT_EQ(doubled[i], costs[i] + costs[i]);
  }
}

}  // namespace
}  // namespace orva
