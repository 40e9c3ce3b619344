/* The header as a C99 program sees it. */
#include "lib/detect/orva.h"

int orva_c99_use(void);

int orva_c99_use(void) {
  OrvaResult result;
  return orva_detect(0, "", 0, &result) == ORVA_BAD_ARGUMENT && orva_nb_charsets() > 0;
}
