/* Prints the model that fits a text best: model GROUP TEXT. */
#include <pemb.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
  PembHandle* handle = argc == 3 ? pemb_init(argv[1]) : NULL;
  int best = -1;
  float ratio = 0;
  if (handle == NULL || pemb_load(handle) != 0) return 2;
  if (pemb_nexts(handle, (unsigned char*)argv[2], (unsigned int)strlen(argv[2])) != 0) return 2;
  if (pemb_get_scores(handle, &best, &ratio) == NULL) return 1;
  printf("%s\n", pemb_model_name(handle, best));
  pemb_dispose(handle);
  return 0;
}
