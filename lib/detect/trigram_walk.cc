#include "lib/detect/trigram_walk.h"

namespace orva {

namespace {

bool is_blank(unsigned byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

}  // namespace

Folding::Folding(const CmgModels& switches) : cuts_runs_(switches.rm_tridups != 0) {
  for (unsigned b = 0; b < 256; ++b) {
    const bool folded = switches.rm_caps != 0 && b >= 'A' && b <= 'Z';
    to_[b] = static_cast<uint16_t>(folded ? b + 32 : b);
    const bool digit = b >= '0' && b <= '9';
    if ((switches.rm_digits != 0 && digit) || (switches.rm_blks != 0 && is_blank(b))) {
      to_[b] = kLeftOut;
    }
  }
}

}  // namespace orva
