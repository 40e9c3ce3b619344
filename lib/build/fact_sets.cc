#include "lib/build/fact_sets.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

constexpr int kLineSize = 1000;

// The first model whose name begins with the `length` bytes at `prefix`; -1 when there is none.
int first_match(char** model_names, int nb_models, const char* prefix, size_t length) {
  for (int m = 0; m < nb_models; ++m) {
    if (strncmp(model_names[m], prefix, length) == 0) return m;
  }
  return -1;
}

// Puts the members that `line` names into set `fact`; false when it names none.
bool add_line(const char* line, char** model_names, int nb_models, int fact, int* fact_of_model) {
  bool any = false;
  for (const char* piece = line;; ++piece) {
    // Kept: an empty piece begins every name, so it stands for the first model.
    const size_t length = strcspn(piece, "\t");
    const int model = first_match(model_names, nb_models, piece, length);
    if (model >= 0) {
      fact_of_model[model] = fact;
      any = true;
    }
    piece += length;
    if (*piece == '\0') return any;
  }
}

}  // namespace

int build_fact_sets(char** model_names, int nb_models, const char* path, int* fact_of_model) {
  std::fill_n(fact_of_model, std::max(nb_models, 0), -1);
  if (path == nullptr) return 0;
  FILE* stream = fopen(path, "r");
  if (stream == nullptr) return -1;
  int nb_facts = 0;
  char line[kLineSize];
  while (fgets(line, sizeof line, stream) != nullptr) {
    const size_t length = strlen(line);
    if (length <= 1) continue;
    // Kept: the last character goes, the newline or not.
    line[length - 1] = '\0';
    if (add_line(line, model_names, nb_models, nb_facts, fact_of_model)) ++nb_facts;
  }
  fclose(stream);
  return 0;
}
