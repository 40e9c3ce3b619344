#include "platform/narrow_string.h"

#include <prmem.h>

#include <cstring>

nsCString::~nsCString() { PR_Free(mText); }

void nsCString::Assign(const char* aText) noexcept {
  char* copy = nullptr;
  if (aText != nullptr && aText[0] != '\0') {
    const size_t size = std::strlen(aText) + 1;
    copy = static_cast<char*>(PR_Malloc(static_cast<PRUint32>(size)));
    if (copy != nullptr) std::memcpy(copy, aText, size);
  }
  PR_Free(mText);
  mText = copy;
}
