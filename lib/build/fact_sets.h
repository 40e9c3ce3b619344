// build_fact_sets: which models of a group share stored values, from a fact-set file.
//
// A text file, one set per line, its members separated by TABs; a member is the beginning of a
// model name and stands for the first model that begins with it. A line that matches nothing uses
// no set number. Lines are read in pieces of at most 999 bytes, whose last character is dropped
// unseen.
#ifndef ORVA_LIB_BUILD_FACT_SETS_H_
#define ORVA_LIB_BUILD_FACT_SETS_H_

// Stores the set of each model in `fact_of_model`, -1 for none; a null `path` leaves every model
// without one. 0, or -1 when the file cannot be opened.
int build_fact_sets(char** model_names, int nb_models, const char* path, int* fact_of_model);

#endif  // ORVA_LIB_BUILD_FACT_SETS_H_
