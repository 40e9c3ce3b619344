// Charset detection as the host asks for it: a streaming detector with an observer, and a detector
// of one whole buffer.
#ifndef ORVA_PLATFORM_CHARSET_DETECTOR_H_
#define ORVA_PLATFORM_CHARSET_DETECTOR_H_

#include "platform/supports.h"

enum nsDetectionConfident {
  eNoAnswerYet = 0,
  eBestAnswer = 1,
  eSureAnswer = 2,
  eNoAnswerMatch = 3
};

// Is told the charset.
// {12bb8f12-2389-11d3-b3bf-00805f8a6670}
class nsICharsetDetectionObserver : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x12bb8f12, 0x2389, 0x11d3, {0xb3, 0xbf, 0x00, 0x80, 0x5f, 0x8a, 0x66, 0x70}};
    return iid;
  }

  virtual nsresult Notify(const char* aCharset, nsDetectionConfident aConf) = 0;
};

// Init once, DoIt for each block of a document, Done at its end.
// {12bb8f14-2389-11d3-b3bf-00805f8a6670}
class nsICharsetDetector : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x12bb8f14, 0x2389, 0x11d3, {0xb3, 0xbf, 0x00, 0x80, 0x5f, 0x8a, 0x66, 0x70}};
    return iid;
  }

  virtual nsresult Init(nsICharsetDetectionObserver* observer) = 0;
  virtual nsresult DoIt(const char* aBytesArray, PRUint32 aLen, PRBool* oDontFeedMe) = 0;
  virtual nsresult Done() = 0;
};

// {12bb8f15-2389-11d3-b3bf-00805f8a6670}
class nsIStringCharsetDetector : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x12bb8f15, 0x2389, 0x11d3, {0xb3, 0xbf, 0x00, 0x80, 0x5f, 0x8a, 0x66, 0x70}};
    return iid;
  }

  virtual nsresult DoIt(const char* aBytesArray, PRUint32 aLen, const char** oCharset,
                        nsDetectionConfident& oConfident) = 0;
};

// A detector's contract ID is one of the first two bases and its name; its registry key the third
// and its name.
inline constexpr char NS_CHARSET_DETECTOR_CONTRACTID_BASE[] =
    "@mozilla.org/intl/charsetdetect;1?type=";
inline constexpr char NS_STRCDETECTOR_CONTRACTID_BASE[] =
    "@mozilla.org/intl/stringcharsetdetect;1?type=";
inline constexpr char NS_CHARSET_DETECTOR_REG_BASE[] = "software/netscape/intl/charsetdetector/";

#endif  // ORVA_PLATFORM_CHARSET_DETECTOR_H_
