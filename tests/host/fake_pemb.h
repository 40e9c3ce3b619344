// Stands in for the identification library, so that tests see exactly what the component asks of
// it.
#ifndef ORVA_TESTS_HOST_FAKE_PEMB_H_
#define ORVA_TESTS_HOST_FAKE_PEMB_H_

#include <string>
#include <vector>

namespace orva {

struct FakeLibrary {
  // What it answers.
  bool opens = true;
  int load_result = 0;
  bool scores = false;  // whether pemb_get_scores gives an array
  int best = -1;        // written by pemb_get_scores when `names_best`
  bool names_best = true;
  float ratio = 0;
  const char* throws_in = "";  // the function that finds no memory, and throws

  // What it was asked.
  std::vector<std::string> opened;
  int loads = 0;
  int disposals = 0;
  std::vector<std::string> pieces;  // as they came; pemb_nexts overwrites them, as the library may
};

extern FakeLibrary g_library;

}  // namespace orva

#endif  // ORVA_TESTS_HOST_FAKE_PEMB_H_
