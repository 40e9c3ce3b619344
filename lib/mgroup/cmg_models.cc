#include "lib/mgroup/cmg_models.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/group_stream.h"
#include "lib/util/accounting.h"

namespace {

struct FreeDeleter {
  void operator()(void* p) const { free(p); }
};

}  // namespace

int CmgModels::init(int n) {
  clean();
  const auto nb_bytes = static_cast<size_t>(n) * sizeof(CmgModel);
  models = static_cast<CmgModel*>(malloc_chk_as(n * orva::kStoredModelSize, nb_bytes));
  if (models == nullptr) return -1;
  memset(models, 0, nb_bytes);
  nb_models = n;
  return 0;
}

void CmgModels::clean() {
  if (models == nullptr) return;
  for (int m = 0; m < nb_models; ++m) free(models[m].name);
  free_chk(models, nb_models * orva::kStoredModelSize);
  models = nullptr;
  nb_models = 0;
}

void CmgModels::model_init(int index, const char* name, float normlp, float lpmin, float grad,
                           int fact_no) {
  models[index] = {strdup(name), normlp, lpmin, grad, fact_no};
}

int CmgModels::f_read(FILE* stream, int nb_models_in, std::string* why) {
  clean();
  if (nb_models_in < 1 || nb_models_in > orva::kMaxIndices) {
    return orva::read_failure(stream, "number of models is not 1 to 256", why);
  }
  if (orva::bytes_left(stream) < int64_t{nb_models_in} * orva::kStoredModelSize) {
    return orva::read_failure(stream, "file ends in the model records", why);
  }
  if (init(nb_models_in) != 0) return orva::read_failure(stream, "out of memory", why);
  int* const fields[] = {&nb_facts, &rm_tridups, &rm_caps, &rm_digits, &rm_blks};
  for (int* field : fields) {
    if (!orva::read_word(stream, field)) {
      return orva::read_failure(stream, "missing word of the models section", why);
    }
  }
  for (int m = 0; m < nb_models; ++m) {
    orva::StoredModel stored;
    if (!orva::read_items(stream, &stored, sizeof stored, 1)) {
      return orva::read_failure(stream, "file ends in the model records", why);
    }
    models[m] = {nullptr, stored.normlp, stored.lpmin, stored.grad, stored.fact_no};
  }
  for (int m = 0; m < nb_models; ++m) {
    int32_t length = 0;
    if (!orva::read_word(stream, &length) || length < 1 || length > orva::bytes_left(stream)) {
      return orva::read_failure(stream, "length of a model name does not fit the file", why);
    }
    std::unique_ptr<char, FreeDeleter> name(
        static_cast<char*>(malloc(static_cast<size_t>(length))));
    if (name == nullptr) return orva::read_failure(stream, "out of memory", why);
    if (!orva::read_items(stream, name.get(), 1, static_cast<size_t>(length))) {
      return orva::read_failure(stream, "file ends in a model name", why);
    }
    if (name.get()[length - 1] != '\0') {
      return orva::read_failure(stream, "model name without terminator", why);
    }
    models[m].name = name.release();
  }
  return 0;
}

int CmgModels::f_write(FILE* stream) const {
  for (const int field : {nb_facts, rm_tridups, rm_caps, rm_digits, rm_blks}) {
    if (!orva::write_word(stream, field)) return -1;
  }
  for (int m = 0; m < nb_models; ++m) {
    const CmgModel& model = models[m];
    const orva::StoredModel stored = {0, model.normlp, model.lpmin, model.grad, model.fact_no};
    if (!orva::write_items(stream, &stored, sizeof stored, 1)) return -1;
  }
  for (int m = 0; m < nb_models; ++m) {
    const char* name = models[m].name != nullptr ? models[m].name : "";
    const size_t length = strlen(name) + 1;
    if (!orva::write_word(stream, static_cast<int32_t>(length))) return -1;
    if (!orva::write_items(stream, name, 1, length)) return -1;
  }
  return 0;
}
