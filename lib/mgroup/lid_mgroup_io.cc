// The model group file: reader and writer.
#include <climits>
#include <cstring>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/group_stream.h"
#include "lib/mgroup/lid_mgroup.h"

namespace {

// Reads one header line and cuts its last character, whatever it is. False at the end of the file.
bool read_header_line(FILE* stream, char* line) {
  if (fgets(line, orva::kGroupLineSize, stream) == nullptr) return false;
  const size_t length = strlen(line);
  if (length > 0) line[length - 1] = '\0';
  return true;
}

int header_failure(int code, const char* what, std::string* why) {
  if (why != nullptr) *why = what;
  return code;
}

int check_header(FILE* stream, std::string* why) {
  char line[orva::kGroupLineSize];
  if (!read_header_line(stream, line)) {
    return header_failure(kGroupBadFormat, "no first line", why);
  }
  if (strncmp(line, orva::kGroupVersion, orva::kGroupPackageLength) != 0) {
    return header_failure(kGroupBadFormat, "first line is not that of a model group", why);
  }
  if (strcmp(line, orva::kGroupVersion) != 0) {
    return header_failure(kGroupOtherVersion, "first line names another version", why);
  }
  if (!read_header_line(stream, line)) {
    return header_failure(kGroupBadFormat, "no second line", why);
  }
  if (strcmp(line, orva::kGroupPlatform) != 0) {
    return header_failure(kGroupOtherPlatform, "second line names another platform", why);
  }
  return kGroupOk;
}

// The address of a stored reference; false when what it names does not lie in its array.
bool resolve_reference(CLidMGroup* group, int istate, const orva::StoredState& stored) {
  CLidMGState& state = group->istates[istate];
  state.info = stored.info;
  if (istate >= group->nb_istates) {
    state.ref.unused = static_cast<uint32_t>(stored.reference);
    return true;
  }
  const int64_t at = stored.reference;
  if (orva::state_first(stored.info) != 0) {
    if (at < 0 || at + orva::state_count(stored.info) > group->istates_chrs_tsize) return false;
    state.ref.chrs = group->istates_chrs + at;
    return true;
  }
  if (at < 0 || at % 4 != 0 || at / 4 + orva::kNbBytes > group->istates_dnxts_tsize) return false;
  state.ref.dnxts = group->istates_dnxts + at / 4;
  return true;
}

int read_states(CLidMGroup* group, FILE* stream, std::string* why) {
  for (int i = 0; i < group->istates_tsize; ++i) {
    orva::StoredState stored;
    if (!orva::read_items(stream, &stored, sizeof stored, 1)) {
      return orva::read_failure(stream, "file ends in the internal states", why);
    }
    if (!resolve_reference(group, i, stored)) {
      return orva::read_failure(
          stream, "internal state " + std::to_string(i) + " refers outside its array", why);
    }
  }
  return 0;
}

// Sizes of sections 17 to 22 in the file, in bytes.
int64_t arrays_size(const CLidMGroup& group) {
  return int64_t{orva::kStoredStateSize} * group.istates_tsize + group.istates_chrs_tsize +
         int64_t{4} * group.istates_dnxts_tsize + int64_t{4} * group.lstates_tsize +
         int64_t{2} * group.lstates_vals_tsize + int64_t{2} * group.def_so_tsize;
}

int read_arrays(CLidMGroup* group, FILE* stream, std::string* why) {
  for (const int tsize :
       {group->istates_tsize, group->istates_chrs_tsize, group->istates_dnxts_tsize,
        group->lstates_tsize, group->lstates_vals_tsize, group->def_so_tsize}) {
    // Kept: a group with an empty array can be saved but not loaded.
    if (tsize < 1) return orva::read_failure(stream, "an array is empty", why);
  }
  const int64_t size = arrays_size(*group);
  if (size > INT_MAX || size > orva::bytes_left(stream)) {
    return orva::read_failure(stream, "arrays are larger than the file", why);
  }
  if (group->allocs() != 0) return orva::read_failure(stream, "out of memory", why);
  if (read_states(group, stream, why) != 0) return -1;
  const auto count = [](int tsize) { return static_cast<size_t>(tsize); };
  const bool ok =
      orva::read_items(stream, group->istates_chrs, 1, count(group->istates_chrs_tsize)) &&
      orva::read_items(stream, group->istates_dnxts, 4, count(group->istates_dnxts_tsize)) &&
      orva::read_items(stream, group->lstates, 4, count(group->lstates_tsize)) &&
      orva::read_items(stream, group->lstates_vals, 2, count(group->lstates_vals_tsize)) &&
      orva::read_items(stream, group->def_so, 2, count(group->def_so_tsize));
  return ok ? 0 : orva::read_failure(stream, "file ends in the arrays", why);
}

// Makes the fact table from the models' fact numbers.
int read_facts(CLidMGroup* group, FILE* stream, std::string* why) {
  const CmgModels& part = group->models_part;
  const int nb_facts = part.nb_facts;
  if (nb_facts < 0 || nb_facts > orva::kMaxIndices - group->nb_models) {
    return orva::read_failure(stream, "models and fact sets are more than 256", why);
  }
  int fact_of_model[orva::kMaxIndices];
  for (int m = 0; m < group->nb_models; ++m) {
    const int fact = part.models[m].fact_no;
    if (fact != -1 && (fact < group->nb_models || fact >= group->nb_models + nb_facts)) {
      return orva::read_failure(
          stream, "model " + std::to_string(m) + " is in a fact set that does not exist", why);
    }
    fact_of_model[m] = fact == -1 ? -1 : fact - group->nb_models;
  }
  group->fact_table = new CLidMGFact(fact_of_model, group->nb_models);
  return 0;
}

}  // namespace

orva::StoredState orva::stored_state(const CLidMGroup& group, int istate) {
  const CLidMGState& state = group.istates[istate];
  if (istate >= group.nb_istates) return {static_cast<int32_t>(state.ref.unused), state.info};
  if (state_first(state.info) != 0) {
    return {static_cast<int32_t>(state.ref.chrs - group.istates_chrs), state.info};
  }
  return {static_cast<int32_t>((state.ref.dnxts - group.istates_dnxts) * 4), state.info};
}

int CLidMGroup::load(const char* path) {
  FILE* stream = fopen(path, "rb");
  if (stream == nullptr) return kGroupCannotOpen;
  const int result = load(stream);
  // Kept: a stream whose content is refused stays open.
  if (result == kGroupOk) fclose(stream);
  return result;
}

int CLidMGroup::load(FILE* stream, std::string* why) {
  const int header = check_header(stream, why);
  if (header != kGroupOk) return header;
  if (f_read(stream, why) != 0) return kGroupBadFormat;
  const std::string defect = orva::group_defect(*this);
  if (defect.empty()) return kGroupOk;
  if (why != nullptr) *why = defect;
  return kGroupBadFormat;
}

int CLidMGroup::f_read(FILE* stream, std::string* why) {
  const int verbose_before = verbose;
  clean();
  init0();
  unigram_part.clean();
  verbose = verbose_before;
  int* const fields[] = {&nb_models,     &nb_istates,         &min_for_direct,
                         &istates_tsize, &istates_chrs_tsize, &istates_dnxts_tsize,
                         &lstates_tsize, &lstates_vals_tsize, &def_so_tsize};
  for (int* field : fields) {
    if (!orva::read_word(stream, field)) {
      return orva::read_failure(stream, "missing word of the group's sizes", why);
    }
  }
  if (models_part.f_read(stream, nb_models, why) != 0) return -1;
  if (nb_istates < 1 || nb_istates > istates_tsize) {
    return orva::read_failure(stream, "number of internal states does not fit their table", why);
  }
  if (read_arrays(this, stream, why) != 0) return -1;
  if (unigram_part.f_read(stream, why) != 0) return -1;
  return read_facts(this, stream, why);
}

int CLidMGroup::save(const char* path) const {
  FILE* stream = fopen(path, "wb");
  if (stream == nullptr) return -1;
  const int result = save(stream);
  // What is still buffered may fail to reach the file.
  return fclose(stream) == 0 ? result : -1;
}

int CLidMGroup::save(FILE* stream) const {
  if (fprintf(stream, "%s\n", orva::kGroupVersion) < 0) return -1;
  if (fprintf(stream, "%s\n", orva::kGroupPlatform) < 0) return -1;
  return f_write(stream);
}

int CLidMGroup::f_write(FILE* stream) const {
  for (const int field : {nb_models, nb_istates, min_for_direct, istates_tsize, istates_chrs_tsize,
                          istates_dnxts_tsize, lstates_tsize, lstates_vals_tsize, def_so_tsize}) {
    if (!orva::write_word(stream, field)) return -1;
  }
  if (models_part.f_write(stream) != 0) return -1;
  for (int i = 0; i < istates_tsize; ++i) {
    const orva::StoredState stored = orva::stored_state(*this, i);
    if (!orva::write_items(stream, &stored, sizeof stored, 1)) return -1;
  }
  const auto count = [](int tsize) { return static_cast<size_t>(tsize); };
  const bool ok = orva::write_items(stream, istates_chrs, 1, count(istates_chrs_tsize)) &&
                  orva::write_items(stream, istates_dnxts, 4, count(istates_dnxts_tsize)) &&
                  orva::write_items(stream, lstates, 4, count(lstates_tsize)) &&
                  orva::write_items(stream, lstates_vals, 2, count(lstates_vals_tsize)) &&
                  orva::write_items(stream, def_so, 2, count(def_so_tsize));
  return ok ? unigram_part.f_write(stream) : -1;
}
