// The export of a group as C tables.

#include <string>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/hc_writer.h"
#include "lib/mgroup/lid_mgroup.h"

namespace {

constexpr char kTableFile[] = "hardcoded_mg.C";
constexpr char kHeaderFile[] = "hardcoded_mg.H";

// "Model info; file made automatically, do not change."
constexpr char kBannerTitle[] =
    " *       HardCode model info -- fichier genere automatiquement. Ne pas modifier.\n";
constexpr char kBannerLine[] = " *       %s\n";
constexpr size_t kBannerWidth = 88;
constexpr char kGuard[] = "#ifndef HARDCODEDMGH\n#define HARDCODEDMGH\n\n\n";
constexpr char kEndOfGuard[] = "\n\n#endif\n\n";
constexpr char kDeclareVersions[] =
    "extern char *HC_CLidMGroup_LMGTRI_VERSION;\n"
    "extern char *HC_CLidMGroup_LMGTRI_PLATFORM;\n\n";
constexpr char kVersion[] = "char *HC_CLidMGroup_LMGTRI_VERSION  = \"%s\";\n";
constexpr char kPlatform[] = "char *HC_CLidMGroup_LMGTRI_PLATFORM = \"%s\";\n\n";
// "End of model info."
constexpr char kEnd[] = "\n\n/* *** Fin HardCode model info *** */\n\n";

size_t size_of(int count, size_t elem_size) { return static_cast<size_t>(count) * elem_size; }

void write_banner(FILE* stream) {
  fprintf(stream, "/%s\n", std::string(kBannerWidth, '*').c_str());
  fprintf(stream, kBannerTitle);
  fprintf(stream, " *%s\n", std::string(kBannerWidth - 1, '-').c_str());
  fprintf(stream, kBannerLine, orva::kGroupVersion);
  fprintf(stream, kBannerLine, orva::kGroupPlatform);
  fprintf(stream, " %s/\n\n", std::string(kBannerWidth, '*').c_str());
}

// Kept: a header that was opened stays open when the table file beside it was not.
FILE* open_export_header() { return fopen(kHeaderFile, "w"); }

}  // namespace

namespace orva {

int write_export(const CLidMGroup& group, FILE* c_file, FILE* h_file) {
  write_banner(c_file);
  write_banner(h_file);
  fprintf(h_file, kGuard);
  fprintf(h_file, kDeclareVersions);
  fprintf(c_file, kVersion, kGroupVersion);
  fprintf(c_file, kPlatform, kGroupPlatform);
  const int result = group.f_hc_write(c_file, h_file);
  fprintf(c_file, kEnd);
  fprintf(h_file, kEnd);
  fprintf(h_file, kEndOfGuard);
  return result;
}

}  // namespace orva

int CLidMGroup::hc_save() const {
  FILE* c_file = fopen(kTableFile, "w");
  FILE* h_file = open_export_header();
  if (c_file == nullptr) return -1;
  if (h_file == nullptr) {
    fclose(c_file);
    return -1;
  }
  // Kept: whether everything could be written is not reported.
  orva::write_export(*this, c_file, h_file);
  fclose(c_file);
  fclose(h_file);
  return 0;
}

int CLidMGroup::f_hc_write(FILE* c_file, FILE* h_file) const {
  orva::HcWriter out(c_file, h_file);
  out.integer("HC_CLidMGroup_nb_models", nb_models);
  out.integer("HC_CLidMGroup_nb_istates", nb_istates);
  out.integer("HC_CLidMGroup_min_for_direct", min_for_direct);
  out.integer("HC_CLidMGroup_istates_tsize", istates_tsize);
  out.integer("HC_CLidMGroup_istates_chrs_tsize", istates_chrs_tsize);
  out.integer("HC_CLidMGroup_istates_dnxts_tsize", istates_dnxts_tsize);
  out.integer("HC_CLidMGroup_lstates_tsize", lstates_tsize);
  out.integer("HC_CLidMGroup_lstates_vals_tsize", lstates_vals_tsize);
  out.integer("HC_CLidMGroup_def_so_tsize", def_so_tsize);
  if (models_part.f_hc_write(c_file, h_file) != 0) return -1;

  out.begin_bytes("HC_CLidMGroup_istates");
  for (int i = 0; i < istates_tsize; ++i) {
    const orva::StoredState stored = orva::stored_state(*this, i);
    out.more_bytes(&stored, sizeof stored);
  }
  out.end_bytes();
  out.bytes("HC_CLidMGroup_istates_chrs", istates_chrs, size_of(istates_chrs_tsize, 1));
  out.bytes("HC_CLidMGroup_istates_dnxts", istates_dnxts, size_of(istates_dnxts_tsize, 4));
  out.bytes("HC_CLidMGroup_lstates", lstates, size_of(lstates_tsize, 4));
  out.bytes("HC_CLidMGroup_lstates_vals", lstates_vals, size_of(lstates_vals_tsize, 2));
  out.bytes("HC_CLidMGroup_def_so", def_so, size_of(def_so_tsize, 2));
  return unigram_part.f_hc_write(c_file, h_file);
}

// Groups are not linked in from such tables.
int CLidMGroup::f_hc_read() { return -1; }
