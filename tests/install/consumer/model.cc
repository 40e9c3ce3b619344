// Prints the model that fits a text best: model GROUP TEXT.
#include <pemb.h>

#include <iostream>
#include <string>

int main(int argc, char** argv) {
  PembHandle* handle = argc == 3 ? pemb_init(argv[1]) : nullptr;
  if (handle == nullptr || pemb_load(handle) != 0) return 2;
  std::string text = argv[2];
  auto* bytes = reinterpret_cast<unsigned char*>(&text[0]);
  if (pemb_nexts(handle, bytes, static_cast<unsigned int>(text.size())) != 0) return 2;
  int best = -1;
  float ratio = 0;
  if (pemb_get_scores(handle, &best, &ratio) == nullptr) return 1;
  std::cout << pemb_model_name(handle, best) << "\n";
  pemb_dispose(handle);
}
