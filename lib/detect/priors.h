// How unlikely a charset is before a byte is read, in nats: what the models must save for it to be
// named. The charsets of the web come first; those of DOS, Macintosh and mainframes need evidence.
#ifndef ORVA_LIB_DETECT_PRIORS_H_
#define ORVA_LIB_DETECT_PRIORS_H_

#include <string_view>

namespace orva {

// `charset` is an index in the charset table.
double prior_cost(int charset);

// What it costs that text of `language` is in `charset`, when the charset was made for another
// script.
double mismatch_cost(int charset, std::string_view language);

// How unlikely a language is before a letter is read, in units of the detector's doubt: the
// languages that most documents are in come first.
double language_prior(std::string_view language);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_PRIORS_H_
