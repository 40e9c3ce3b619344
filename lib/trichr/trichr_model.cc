// Life cycle of the trigram model, and its file.

#include "lib/trichr/trichr_model.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "lib/trichr/c_locale.h"
#include "lib/trichr/v25a_format.h"
#include "lib/util/accounting.h"

namespace {

constexpr int kFloatSize = 4;
constexpr int kGrowth = 101;  // room for costs made ahead of a loaded line

// Kept: a model file that is refused stays open, so what this opens may leak.
FILE* open_model_to_load(const char* path) { return fopen(path, "rb"); }

// One number in free form; false when the text holds none or one that is not finite. The end of the
// file leaves `value` as it was.
bool read_number(FILE* stream, float* value) {
  return fscanf(stream, "%f ", value) != 0 && std::isfinite(*value);
}

char flag_char(int flag, char letter) { return flag != 0 ? letter : orva::kV25aFlagOff; }

}  // namespace

CTrichrModel::CTrichrModel() : CHashTable(8, 0.8f) { init0(); }

CTrichrModel::~CTrichrModel() { clean(); }

void CTrichrModel::init0() {
  nb_tri = 0;
  rm_tridups = 0;
  rm_caps = 0;
  rm_digits = 0;
  rm_blks = 0;
  tri_lps = nullptr;
  tri_lps_tsize = 0;
}

void CTrichrModel::clean() {
  if (tri_lps_tsize != 0 && tri_lps != nullptr) free_chk(tri_lps, tri_lps_tsize * kFloatSize);
  tri_lps = nullptr;
}

void CTrichrModel::init() {
  clean();
  init0();
  CHashTable::clean();
  CHashTable::init0(8);
}

int CTrichrModel::load(const char* path) {
  const orva::CLocaleScope c_locale;
  int result = kTrichrBadFormat;
  try {
    init();
    FILE* stream = open_model_to_load(path);
    if (stream == nullptr) return kTrichrCannotOpen;
    result = load_stream(stream);
    if (result == kTrichrOk) fclose(stream);
  } catch (const orva::GrowthFailed&) {
    result = kTrichrBadFormat;
  }
  return result;
}

int CTrichrModel::load_stream(FILE* stream) {
  char line[orva::kV25aLineSize];
  if (fgets(line, sizeof line, stream) == nullptr) return kTrichrBadFormat;
  if (strncmp(line, orva::kV25aMark, orva::kV25aMarkLength) != 0) return kTrichrOtherVersion;
  char dups = orva::kV25aFlagOff;
  char caps = orva::kV25aFlagOff;
  char digits = orva::kV25aFlagOff;
  char blanks = orva::kV25aFlagOff;
  sscanf(line + orva::kV25aMarkLength, "%c%c%c%c\n", &dups, &caps, &digits, &blanks);
  rm_tridups = dups == orva::kV25aFlagDups ? 1 : 0;
  rm_caps = caps == orva::kV25aFlagCaps ? 1 : 0;
  rm_digits = digits == orva::kV25aFlagDigits ? 1 : 0;
  rm_blks = blanks == orva::kV25aFlagBlanks ? 1 : 0;

  if (!read_number(stream, &lp_const)) return kTrichrBadFormat;
  for (float& cost : uch_lps) {
    if (!read_number(stream, &cost)) return kTrichrBadFormat;
  }
  if (fgets(line, sizeof line, stream) == nullptr) return kTrichrBadFormat;
  if (sscanf(line, "%f %f", &lp_base, &lp_scale) != 2) return kTrichrBadFormat;
  if (!std::isfinite(lp_base) || !std::isfinite(lp_scale)) return kTrichrBadFormat;
  return load_trigrams(stream);
}

int CTrichrModel::load_trigrams(FILE* stream) {
  char line[orva::kV25aLineSize];
  while (fgets(line, sizeof line, stream) != nullptr) {
    const size_t length = strlen(line);
    if (length == 0) return kTrichrBadFormat;
    // Kept: the last character goes, the newline or not.
    line[length - 1] = '\0';
    if (nb_tri + 1 >= tri_lps_tsize) grow_costs();
    float cost = 0.0f;
    if (sscanf(line, "%f", &cost) != 1 || !std::isfinite(cost)) return kTrichrBadFormat;
    const char* tab = strchr(line, '\t');
    if (tab == nullptr) return kTrichrBadFormat;
    // Kept: the cost goes to the next position whatever index the key has; a repeated key shifts
    // the costs of all that follow.
    tri_lps[nb_tri] = cost;
    int added = 0;
    find_or_add(reinterpret_cast<const unsigned char*>(tab + 1), &added);
    ++nb_tri;
  }
  return kTrichrOk;
}

void CTrichrModel::grow_costs() {
  const int new_tsize = nb_tri + kGrowth;
  const int new_bytes = new_tsize * kFloatSize;
  auto* costs = static_cast<float*>(realloc(tri_lps, static_cast<size_t>(new_bytes)));
  if (costs == nullptr) orva::growth_failed(new_bytes);
  _MallocChkNbBytes += (new_tsize - tri_lps_tsize) * kFloatSize;
  tri_lps = costs;
  tri_lps_tsize = new_tsize;
}

int CTrichrModel::save(FILE* stream, float tri_weight) const {
  const orva::CLocaleScope c_locale;
  fprintf(stream, "%s%c%c%c%c", orva::kV25aMark, flag_char(rm_tridups, orva::kV25aFlagDups),
          flag_char(rm_caps, orva::kV25aFlagCaps), flag_char(rm_digits, orva::kV25aFlagDigits),
          flag_char(rm_blks, orva::kV25aFlagBlanks));
  if (tri_weight > orva::kV25aNoWeight) {
    fprintf(stream, orva::kV25aWeight, static_cast<double>(tri_weight));
  }
  fprintf(stream, "\n");
  fprintf(stream, orva::kV25aConst, static_cast<double>(lp_const));
  for (int v = 0; v < kNbBytes; ++v) {
    fprintf(stream, orva::kV25aByteCost, static_cast<double>(uch_lps[v]));
    if (v % orva::kV25aCostsPerLine == orva::kV25aCostsPerLine - 1) fprintf(stream, "\n");
  }
  fprintf(stream, orva::kV25aBaseScale, static_cast<double>(lp_base),
          static_cast<double>(lp_scale));
  for (int i = 0; i < nb_tri && tri_lps != nullptr; ++i) {
    const char* text = i < nb_elems ? reinterpret_cast<const char*>(key(i))
                                    : static_cast<const char*>(orva::kV25aNoKey);
    fprintf(stream, orva::kV25aTrigram, static_cast<double>(tri_lps[i]), text);
  }
  return 0;
}

int CTrichrModel::save(const char* path, float tri_weight) const {
  FILE* stream = fopen(path, "w");
  if (stream == nullptr) return -1;
  save(stream, tri_weight);
  // Kept: what could not be written is not reported.
  fclose(stream);
  return 0;
}
