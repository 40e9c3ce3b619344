// The directory service: well-known places of the host, by property name.
#ifndef ORVA_PLATFORM_DIRECTORY_H_
#define ORVA_PLATFORM_DIRECTORY_H_

#include "platform/supports.h"

// A set of named objects. Get hands out a reference to the object in the interface asked for.
// {61c1b3c0-b1bf-11d3-93b6-00104ba0fd40}
class nsIProperties : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x61c1b3c0, 0xb1bf, 0x11d3, {0x93, 0xb6, 0x00, 0x10, 0x4b, 0xa0, 0xfd, 0x40}};
    return iid;
  }

  virtual nsresult Define(const char* prop, nsISupports* initialValue) = 0;
  virtual nsresult Undefine(const char* prop) = 0;
  virtual nsresult Get(const char* prop, const nsIID& uuid, void** result) = 0;
  virtual nsresult Set(const char* prop, nsISupports* value) = 0;
  virtual nsresult Has(const char* prop, PRBool* _retval) = 0;
};

// A source of places that the service itself does not know.
// {bbf8cab0-d43a-11d3-8cc2-00609792278c}
class nsIDirectoryServiceProvider : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0xbbf8cab0, 0xd43a, 0x11d3, {0x8c, 0xc2, 0x00, 0x60, 0x97, 0x92, 0x27, 0x8c}};
    return iid;
  }

  virtual nsresult GetFile(const char* prop, PRBool* persistent, nsIFile** _retval) = 0;
};

// The service; the same object answers nsIProperties. Each Get for a file hands out a fresh copy,
// so that the caller may append to it. {57a66a60-d43a-11d3-8cc2-00609792278c}
class nsIDirectoryService : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x57a66a60, 0xd43a, 0x11d3, {0x8c, 0xc2, 0x00, 0x60, 0x97, 0x92, 0x27, 0x8c}};
    return iid;
  }

  virtual nsresult Init() = 0;
  virtual nsresult RegisterProvider(nsIDirectoryServiceProvider* prov) = 0;
  virtual nsresult UnregisterProvider(nsIDirectoryServiceProvider* prov) = 0;
};

inline constexpr char NS_DIRECTORY_SERVICE_CONTRACTID[] = "@mozilla.org/file/directory_service;1";
inline constexpr nsCID NS_DIRECTORY_SERVICE_CID = {
    0xf00152d0, 0xb40b, 0x11d3, {0x8c, 0x9c, 0x00, 0x00, 0x64, 0x65, 0x73, 0x74}};

// The property that names the application's resource directory.
inline constexpr char NS_APP_RES_DIR[] = "ARes";

#endif  // ORVA_PLATFORM_DIRECTORY_H_
