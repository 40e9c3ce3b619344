// Basic types of the host platform: result codes, identifiers, integers (those of NSPR).
#ifndef ORVA_PLATFORM_BASICS_H_
#define ORVA_PLATFORM_BASICS_H_

#include <prtypes.h>

#include <cstring>

// Marks what the platform's support library exports.
#define NS_COM __attribute__((visibility("default")))

using nsresult = PRUint32;
using nsrefcnt = PRUint32;
using PRUnichar = PRUint16;

inline constexpr nsresult NS_OK = 0x00000000;
inline constexpr nsresult NS_ERROR_NOT_IMPLEMENTED = 0x80004001;
inline constexpr nsresult NS_NOINTERFACE = 0x80004002;
inline constexpr nsresult NS_ERROR_NULL_POINTER = 0x80004003;
inline constexpr nsresult NS_ERROR_FAILURE = 0x80004005;
inline constexpr nsresult NS_ERROR_UNEXPECTED = 0x8000FFFF;
inline constexpr nsresult NS_ERROR_OUT_OF_MEMORY = 0x8007000E;
inline constexpr nsresult NS_ERROR_INVALID_ARG = 0x80070057;
inline constexpr nsresult NS_ERROR_NO_AGGREGATION = 0x80040110;
inline constexpr nsresult NS_ERROR_NOT_AVAILABLE = 0x80040111;
inline constexpr nsresult NS_ERROR_FACTORY_NOT_REGISTERED = 0x80040154;
inline constexpr nsresult NS_ERROR_FACTORY_NOT_LOADED = 0x800401F8;
inline constexpr nsresult NS_ERROR_REG_NOT_FOUND = 0x80510003;

// Bit 31 tells failure; a code such as 1 counts as success.
constexpr bool NS_FAILED(nsresult aResult) { return (aResult & 0x80000000U) != 0; }
constexpr bool NS_SUCCEEDED(nsresult aResult) { return !NS_FAILED(aResult); }

// Names an interface or a class: {m0-m1-m2-m3[0..1]-m3[2..7]}.
struct nsID {
  PRUint32 m0;
  PRUint16 m1;
  PRUint16 m2;
  PRUint8 m3[8];

  // Word by word.
  bool Equals(const nsID& aOther) const {
    PRUint32 mine[4];
    PRUint32 others[4];
    std::memcpy(mine, this, sizeof mine);
    std::memcpy(others, &aOther, sizeof others);
    return mine[0] == others[0] && mine[1] == others[1] && mine[2] == others[2] &&
           mine[3] == others[3];
  }
};
static_assert(sizeof(nsID) == 16, "an identifier is 128 bits without padding");

using nsIID = nsID;
using nsCID = nsID;

#endif  // ORVA_PLATFORM_BASICS_H_
