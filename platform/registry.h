// The host's registry: a tree of keys below a few root keys, with values of several types. "UTF8"
// methods take narrow text and paths of keys joined by "/".
#ifndef ORVA_PLATFORM_REGISTRY_H_
#define ORVA_PLATFORM_REGISTRY_H_

#include "platform/supports.h"

class nsIEnumerator;

using nsRegistryKey = PRUint32;
using nsWellKnownRegistry = PRInt32;

// {5d41a440-8e37-11d2-8059-00600811a9c3}
class nsIRegistry : public nsISupports {
 public:
  // Root keys.
  enum : nsRegistryKey { None = 0, Users = 1, Common = 2, CurrentUser = 3 };
  enum : nsWellKnownRegistry {
    ApplicationCustomRegistry = -1,
    ApplicationComponentRegistry = 1,
    ApplicationRegistry = 2
  };
  // Value types.
  enum : PRUint32 { String = 1, Int32 = 2, Bytes = 3, File = 4 };

  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x5d41a440, 0x8e37, 0x11d2, {0x80, 0x59, 0x00, 0x60, 0x08, 0x11, 0xa9, 0xc3}};
    return iid;
  }

  virtual nsresult Open(const char* regFile) = 0;
  virtual nsresult OpenWellKnownRegistry(nsWellKnownRegistry regid) = 0;
  virtual nsresult Flush() = 0;
  virtual nsresult IsOpen(PRBool* _retval) = 0;
  virtual nsresult AddKey(nsRegistryKey baseKey, const PRUnichar* keyname,
                          nsRegistryKey* _retval) = 0;
  virtual nsresult GetKey(nsRegistryKey baseKey, const PRUnichar* keyname,
                          nsRegistryKey* _retval) = 0;
  virtual nsresult RemoveKey(nsRegistryKey baseKey, const PRUnichar* keyname) = 0;
  virtual nsresult GetString(nsRegistryKey baseKey, const PRUnichar* valname,
                             PRUnichar** _retval) = 0;
  virtual nsresult SetString(nsRegistryKey baseKey, const PRUnichar* valname,
                             const PRUnichar* value) = 0;
  virtual nsresult GetStringUTF8(nsRegistryKey baseKey, const char* path, char** _retval) = 0;
  virtual nsresult SetStringUTF8(nsRegistryKey baseKey, const char* path, const char* value) = 0;
  virtual nsresult GetBytesUTF8(nsRegistryKey baseKey, const char* path, PRUint32* length,
                                PRUint8** valueArray) = 0;
  virtual nsresult SetBytesUTF8(nsRegistryKey baseKey, const char* path, PRUint32 length,
                                PRUint8* valueArray) = 0;
  virtual nsresult GetInt(nsRegistryKey baseKey, const char* path, PRInt32* _retval) = 0;
  virtual nsresult SetInt(nsRegistryKey baseKey, const char* path, PRInt32 value) = 0;
  virtual nsresult GetLongLong(nsRegistryKey baseKey, const char* path, PRInt64* _retval) = 0;
  virtual nsresult SetLongLong(nsRegistryKey baseKey, const char* path, PRInt64* value) = 0;
  virtual nsresult AddSubtree(nsRegistryKey baseKey, const char* path, nsRegistryKey* _retval) = 0;
  virtual nsresult RemoveSubtree(nsRegistryKey baseKey, const char* path) = 0;
  virtual nsresult GetSubtree(nsRegistryKey baseKey, const char* path, nsRegistryKey* _retval) = 0;
  virtual nsresult AddSubtreeRaw(nsRegistryKey baseKey, const char* path,
                                 nsRegistryKey* _retval) = 0;
  virtual nsresult RemoveSubtreeRaw(nsRegistryKey baseKey, const char* path) = 0;
  virtual nsresult GetSubtreeRaw(nsRegistryKey baseKey, const char* path,
                                 nsRegistryKey* _retval) = 0;
  virtual nsresult EnumerateSubtrees(nsRegistryKey baseKey, nsIEnumerator** _retval) = 0;
  virtual nsresult EnumerateAllSubtrees(nsRegistryKey baseKey, nsIEnumerator** _retval) = 0;
  virtual nsresult EnumerateValues(nsRegistryKey baseKey, nsIEnumerator** _retval) = 0;
  virtual nsresult GetValueType(nsRegistryKey baseKey, const char* path, PRUint32* _retval) = 0;
  virtual nsresult GetValueLength(nsRegistryKey baseKey, const char* path, PRUint32* _retval) = 0;
  virtual nsresult DeleteValue(nsRegistryKey baseKey, const char* path) = 0;
  virtual nsresult EscapeKey(PRUint8* key, PRUint32 terminator, PRUint32* length,
                             PRUint8** escaped) = 0;
  virtual nsresult UnescapeKey(PRUint8* escaped, PRUint32 terminator, PRUint32* length,
                               PRUint8** key) = 0;
  virtual nsresult GetCurrentUserName(char** aCurrentUserName) = 0;
  virtual nsresult SetCurrentUserName(const char* aCurrentUserName) = 0;
  virtual nsresult Pack() = 0;
};

inline constexpr char NS_REGISTRY_CONTRACTID[] = "@mozilla.org/registry;1";
inline constexpr nsCID NS_REGISTRY_CID = {
    0xbe761f00, 0xa3b0, 0x11d2, {0x99, 0x6c, 0x00, 0x80, 0xc7, 0xcb, 0x10, 0x81}};

#endif  // ORVA_PLATFORM_REGISTRY_H_
