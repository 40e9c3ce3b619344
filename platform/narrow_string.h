// nsCString: narrow text that owns its bytes.
//
//   nsCString name;
//   name = "UTF-8";
//   puts(name.GetBuffer());
//
// Results: a copy that cannot be allocated leaves the text empty; nothing is thrown.
#ifndef ORVA_PLATFORM_NARROW_STRING_H_
#define ORVA_PLATFORM_NARROW_STRING_H_

#include "platform/basics.h"

class NS_COM nsCString {
 public:
  nsCString() noexcept = default;
  explicit nsCString(const char* aText) noexcept { Assign(aText); }
  nsCString(const nsCString& aOther) noexcept { Assign(aOther.mText); }
  virtual ~nsCString();

  nsCString& operator=(const nsCString& aOther) noexcept {
    if (this != &aOther) Assign(aOther.mText);
    return *this;
  }
  nsCString& operator=(const char* aText) noexcept {
    Assign(aText);
    return *this;
  }

  // Terminated text owned by the string; empty, never null, when nothing was assigned.
  const char* GetBuffer() const noexcept { return mText != nullptr ? mText : ""; }

 private:
  void Assign(const char* aText) noexcept;

  char* mText = nullptr;
};

#endif  // ORVA_PLATFORM_NARROW_STRING_H_
