/* Prints the release, then how many charsets can be named. */
#include <orva.h>
#include <stdio.h>

int main(void) {
  printf("%s\n%d\n", orva_version(), orva_nb_charsets());
  return orva_nb_charsets() > 0 ? 0 : 1;
}
