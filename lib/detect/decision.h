// Decision: from evidence and models to an answer.
//
// In order: an empty document; a byte order mark; escape sequences; the signature of a file that is
// no text; pure ASCII; valid UTF-8; and for the rest the readings that can decode every byte,
// ranked by what they cost under their best model plus what their charset costs before a byte is
// read.
#ifndef ORVA_LIB_DETECT_DECISION_H_
#define ORVA_LIB_DETECT_DECISION_H_

#include <string_view>
#include <vector>

#include "lib/detect/charset_table.h"
#include "lib/detect/confidence.h"
#include "lib/detect/evidence.h"
#include "lib/detect/pricing.h"
#include "lib/detect/prior_tables.h"

namespace orva {

enum class DocumentKind { kEmpty, kText, kBinary };

struct Candidate {
  int charset = -1;
  int language = -1;  // index in the tables' languages; -1: not told
  double cost = 0;    // nats, lower is better
  double probability = 0;
  double language_probability = 0;  // of this language, given the charset; of the likeliest one
};

struct Decision {
  DocumentKind kind = DocumentKind::kEmpty;
  bool has_mark = false;
  Grounds grounds;  // of the likeliest candidate
  // The likeliest first; empty when nothing can be said.
  std::vector<Candidate> candidates;
};

// What the caller lets the answer be. Empty vectors allow everything.
struct Restrictions {
  std::vector<char> charsets;   // by index in the charset table: nonzero allows
  std::vector<char> languages;  // by index in the tables' languages

  bool allows_charset(int charset) const {
    if (charsets.empty()) return (kCharsets[charset].flags & kPart) == 0;
    return charsets[static_cast<size_t>(charset)] != 0;
  }
  bool allows_language(size_t language) const {
    return languages.empty() || languages[language] != 0;
  }
};

class Decider {
 public:
  explicit Decider(const ModelTables& tables)
      : tables_(tables),
        priors_(tables),
        pricing_(tables),
        no_extra_(tables.languages().size(), 0) {}

  Decision decide(const Evidence& evidence, std::string_view sample,
                  const Restrictions& restrictions);

 private:
  struct Task;  // one document's evidence, sample and restrictions

  bool decide_by_mark(const Task& task, Decision* decision);
  bool decide_by_escapes(const Task& task, Decision* decision);
  bool decide_ascii(const Task& task, Decision* decision);
  bool decide_escapeless(const Task& task, Decision* decision);
  bool decide_utf8(const Task& task, Decision* decision);
  void decide_by_cost(const Task& task, Decision* decision);
  // Adds the only candidate: `charset`, with the best language of `text`, which is UTF-8.
  void settle(const Task& task, int charset, std::string_view text, Ground ground,
              Decision* decision);
  // The best language of a reading; `*grounds` receives all but the margin.
  Candidate best_of(const Task& task, const Reading& reading, Grounds* grounds);
  void weigh_languages(const Task& task);
  int name_for(const Reading& reading, int language, const Task& task) const;

  const ModelTables& tables_;
  const PriorTables priors_;
  Pricing pricing_;
  Pool<Reading> readings_;
  std::vector<double> language_priors_;  // of the document
  std::vector<double> compared_;         // costs of a reading, by language
  const std::vector<double> no_extra_;   // zeros
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_DECISION_H_
