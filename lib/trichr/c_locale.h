// CLocaleScope: numbers are read and written as the C locale does, whatever the process's locale.
//
//   const orva::CLocaleScope c_locale;
//   fprintf(stream, "%6.4f\n", cost);      // a point, never a comma
#ifndef ORVA_LIB_TRICHR_C_LOCALE_H_
#define ORVA_LIB_TRICHR_C_LOCALE_H_

#include <locale.h>

namespace orva {

class CLocaleScope {
 public:
  CLocaleScope()
      : c_locale_(newlocale(LC_ALL_MASK, "C", nullptr)),
        before_(c_locale_ != nullptr ? uselocale(c_locale_) : nullptr) {}
  ~CLocaleScope() {
    if (c_locale_ == nullptr) return;
    uselocale(before_);
    freelocale(c_locale_);
  }
  CLocaleScope(const CLocaleScope&) = delete;
  CLocaleScope& operator=(const CLocaleScope&) = delete;

 private:
  locale_t c_locale_;
  locale_t before_;
};

}  // namespace orva

#endif  // ORVA_LIB_TRICHR_C_LOCALE_H_
