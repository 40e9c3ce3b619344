// How unlikely a charset is before a byte is read, in nats: what the models must save for it to be
// named. The charsets of the web come first; those of DOS, Macintosh and mainframes need evidence.
#ifndef ORVA_LIB_DETECT_PRIORS_H_
#define ORVA_LIB_DETECT_PRIORS_H_

namespace orva {

// `charset` is an index in the charset table.
double prior_cost(int charset);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_PRIORS_H_
