#include "lib/mgroup/uni_chr_mg.h"

#include <climits>
#include <cstring>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/group_stream.h"
#include "lib/util/accounting.h"

namespace {

constexpr int kFloatSize = 4;
constexpr int kPairSize = 2;

// Releases an array that may be missing after a failed allocation.
template <typename T>
void release(T** array, int size) {
  if (*array != nullptr) free_chk(*array, size);
  *array = nullptr;
}

}  // namespace

void CUniChrMG::init0() {
  nb_models = 0;
  nb_facts = 0;
  models_normlp = nullptr;
  models_lpmin = nullptr;
  models_grad = nullptr;
  uch_lps_buff = nullptr;
  uch_lps_buff_tsize = 0;
  memset(uch_lps, 0, sizeof uch_lps);
  allocated = 0;
  verbose = 0;
}

void CUniChrMG::clean() {
  if (allocated == 0) return;
  release(&models_normlp, nb_models * kFloatSize);
  release(&models_lpmin, nb_models * kFloatSize);
  release(&models_grad, nb_models * kFloatSize);
  release(&uch_lps_buff, uch_lps_buff_tsize * kPairSize);
  nb_models = 0;
  uch_lps_buff_tsize = 0;
  allocated = 0;
}

int CUniChrMG::allocs() {
  allocated = 1;
  models_normlp = static_cast<float*>(malloc_chk(nb_models * kFloatSize));
  models_lpmin = static_cast<float*>(malloc_chk(nb_models * kFloatSize));
  models_grad = static_cast<float*>(malloc_chk(nb_models * kFloatSize));
  uch_lps_buff = static_cast<UchPair*>(malloc_chk(uch_lps_buff_tsize * kPairSize));
  const bool ok = models_normlp != nullptr && models_lpmin != nullptr && models_grad != nullptr &&
                  uch_lps_buff != nullptr;
  return ok ? 0 : -1;
}

int CUniChrMG::f_read(FILE* stream, std::string* why) {
  const int verbose_before = verbose;
  clean();
  init0();
  verbose = verbose_before;
  int nb = 0;
  int nb_pairs = 0;
  if (!orva::read_word(stream, &nb) || !orva::read_word(stream, &nb_facts) ||
      !orva::read_word(stream, &nb_pairs)) {
    return orva::read_failure(stream, "missing word of the unigram section", why);
  }
  const int64_t needed =
      int64_t{3} * kFloatSize * nb + int64_t{kPairSize} * nb_pairs + int64_t{sizeof uch_lps};
  if (nb < 1 || nb_pairs < 1 || needed > INT_MAX || needed > orva::bytes_left(stream)) {
    return orva::read_failure(stream, "sizes of the unigram section do not fit the file", why);
  }
  nb_models = nb;
  uch_lps_buff_tsize = nb_pairs;
  if (allocs() != 0) return orva::read_failure(stream, "out of memory", why);
  const auto nb_floats = static_cast<size_t>(nb);
  const bool ok =
      orva::read_items(stream, models_normlp, kFloatSize, nb_floats) &&
      orva::read_items(stream, models_lpmin, kFloatSize, nb_floats) &&
      orva::read_items(stream, models_grad, kFloatSize, nb_floats) &&
      orva::read_items(stream, uch_lps_buff, kPairSize, static_cast<size_t>(nb_pairs)) &&
      orva::read_items(stream, uch_lps, 4, orva::kNbBytes);
  return ok ? 0 : orva::read_failure(stream, "file ends in the unigram section", why);
}

int CUniChrMG::f_write(FILE* stream) const {
  for (const int field : {nb_models, nb_facts, uch_lps_buff_tsize}) {
    if (!orva::write_word(stream, field)) return -1;
  }
  const auto nb_floats = static_cast<size_t>(nb_models);
  const auto nb_pairs = static_cast<size_t>(uch_lps_buff_tsize);
  const bool ok = orva::write_items(stream, models_normlp, kFloatSize, nb_floats) &&
                  orva::write_items(stream, models_lpmin, kFloatSize, nb_floats) &&
                  orva::write_items(stream, models_grad, kFloatSize, nb_floats) &&
                  orva::write_items(stream, uch_lps_buff, kPairSize, nb_pairs) &&
                  orva::write_items(stream, uch_lps, 4, orva::kNbBytes);
  return ok ? 0 : -1;
}
