// Objects whose methods answer the number of their slot in the host platform's tables.
#ifndef ORVA_TESTS_HOST_NUMBERED_INTERFACES_H_
#define ORVA_TESTS_HOST_NUMBERED_INTERFACES_H_

#include "platform/charset_detector.h"
#include "platform/component_manager.h"
#include "platform/directory.h"
#include "platform/file.h"
#include "platform/registry.h"
#include "platform/service_manager.h"
#include "platform/supports.h"

namespace orva {

template <class Interface>
class Numbered : public Interface {
 public:
  virtual ~Numbered() = default;
  nsresult QueryInterface(const nsIID& /*iid*/, void** /*result*/) override { return 0; }
  nsrefcnt AddRef() override { return 1; }
  nsrefcnt Release() override { return 2; }
};

class NumberedFactory : public Numbered<nsIFactory> {
 public:
  static constexpr int kSlots = 5;

  nsresult CreateInstance(nsISupports* /*aOuter*/, const nsIID& /*iid*/,
                          void** /*result*/) override {
    return 3;
  }
  nsresult LockFactory(PRBool /*lock*/) override { return 4; }
};

class NumberedModule : public Numbered<nsIModule> {
 public:
  static constexpr int kSlots = 7;

  nsresult GetClassObject(nsIComponentManager* /*aCompMgr*/, const nsCID& /*aClass*/,
                          const nsIID& /*aIID*/, void** /*result*/) override {
    return 3;
  }
  nsresult RegisterSelf(nsIComponentManager* /*aCompMgr*/, nsIFile* /*location*/,
                        const char* /*registryLocation*/, const char* /*componentType*/) override {
    return 4;
  }
  nsresult UnregisterSelf(nsIComponentManager* /*aCompMgr*/, nsIFile* /*location*/,
                          const char* /*registryLocation*/) override {
    return 5;
  }
  nsresult CanUnload(nsIComponentManager* /*aCompMgr*/, PRBool* /*_retval*/) override { return 6; }
};

class NumberedComponentManager : public Numbered<nsIComponentManager> {
 public:
  static constexpr int kSlots = 26;

  nsresult FindFactory(const nsCID& /*aClass*/, nsIFactory** /*_retval*/) override { return 3; }
  nsresult GetClassObject(const nsCID& /*aClass*/, const nsIID& /*aIID*/,
                          void** /*_retval*/) override {
    return 4;
  }
  nsresult ContractIDToClassID(const char* /*aContractID*/, nsCID* /*aClass*/) override {
    return 5;
  }
  nsresult CLSIDToContractID(const nsCID& /*aClass*/, char** /*aClassName*/,
                             char** /*_retval*/) override {
    return 6;
  }
  nsresult CreateInstance(const nsCID& /*aClass*/, nsISupports* /*aDelegate*/,
                          const nsIID& /*aIID*/, void** /*_retval*/) override {
    return 7;
  }
  nsresult CreateInstanceByContractID(const char* /*aContractID*/, nsISupports* /*aDelegate*/,
                                      const nsIID& /*aIID*/, void** /*_retval*/) override {
    return 8;
  }
  nsresult RegistryLocationForSpec(nsIFile* /*aSpec*/, char** /*_retval*/) override { return 9; }
  nsresult SpecForRegistryLocation(const char* /*aLocation*/, nsIFile** /*_retval*/) override {
    return 10;
  }
  nsresult RegisterFactory(const nsCID& /*aClass*/, const char* /*aClassName*/,
                           const char* /*aContractID*/, nsIFactory* /*aFactory*/,
                           PRBool /*aReplace*/) override {
    return 11;
  }
  nsresult RegisterComponent(const nsCID& /*aClass*/, const char* /*aClassName*/,
                             const char* /*aContractID*/, const char* /*aLocation*/,
                             PRBool /*aReplace*/, PRBool /*aPersist*/) override {
    return 12;
  }
  nsresult RegisterComponentWithType(const nsCID& /*aClass*/, const char* /*aClassName*/,
                                     const char* /*aContractID*/, nsIFile* /*aSpec*/,
                                     const char* /*aLocation*/, PRBool /*aReplace*/,
                                     PRBool /*aPersist*/, const char* /*aType*/) override {
    return 13;
  }
  nsresult RegisterComponentSpec(const nsCID& /*aClass*/, const char* /*aClassName*/,
                                 const char* /*aContractID*/, nsIFile* /*aLibrary*/,
                                 PRBool /*aReplace*/, PRBool /*aPersist*/) override {
    return 14;
  }
  nsresult RegisterComponentLib(const nsCID& /*aClass*/, const char* /*aClassName*/,
                                const char* /*aContractID*/, const char* /*aDllName*/,
                                PRBool /*aReplace*/, PRBool /*aPersist*/) override {
    return 15;
  }
  nsresult UnregisterFactory(const nsCID& /*aClass*/, nsIFactory* /*aFactory*/) override {
    return 16;
  }
  nsresult UnregisterComponent(const nsCID& /*aClass*/, const char* /*aLocation*/) override {
    return 17;
  }
  nsresult UnregisterComponentSpec(const nsCID& /*aClass*/, nsIFile* /*aLibrarySpec*/) override {
    return 18;
  }
  nsresult FreeLibraries() override { return 19; }
  nsresult AutoRegister(PRInt32 /*when*/, nsIFile* /*directory*/) override { return 20; }
  nsresult AutoRegisterComponent(PRInt32 /*when*/, nsIFile* /*aFileLocation*/) override {
    return 21;
  }
  nsresult AutoUnregisterComponent(PRInt32 /*when*/, nsIFile* /*aFileLocation*/) override {
    return 22;
  }
  nsresult IsRegistered(const nsCID& /*aClass*/, PRBool* /*_retval*/) override { return 23; }
  nsresult EnumerateCLSIDs(nsIEnumerator** /*_retval*/) override { return 24; }
  nsresult EnumerateContractIDs(nsIEnumerator** /*_retval*/) override { return 25; }
};

class NumberedShutdownListener : public Numbered<nsIShutdownListener> {
 public:
  static constexpr int kSlots = 4;

  nsresult OnShutdown(const nsCID& /*aClass*/, nsISupports* /*service*/) override { return 3; }
};

class NumberedServiceManager : public Numbered<nsIServiceManager> {
 public:
  static constexpr int kSlots = 11;

  nsresult RegisterService(const nsCID& /*aClass*/, nsISupports* /*aService*/) override {
    return 3;
  }
  nsresult UnregisterService(const nsCID& /*aClass*/) override { return 4; }
  nsresult GetService(const nsCID& /*aClass*/, const nsIID& /*aIID*/, nsISupports** /*result*/,
                      nsIShutdownListener* /*listener*/) override {
    return 5;
  }
  nsresult ReleaseService(const nsCID& /*aClass*/, nsISupports* /*service*/,
                          nsIShutdownListener* /*listener*/) override {
    return 6;
  }
  nsresult RegisterService(const char* /*aContractID*/, nsISupports* /*aService*/) override {
    return 7;
  }
  nsresult UnregisterService(const char* /*aContractID*/) override { return 8; }
  nsresult GetService(const char* /*aContractID*/, const nsIID& /*aIID*/, nsISupports** /*result*/,
                      nsIShutdownListener* /*listener*/) override {
    return 9;
  }
  nsresult ReleaseService(const char* /*aContractID*/, nsISupports* /*service*/,
                          nsIShutdownListener* /*listener*/) override {
    return 10;
  }
};

class NumberedDirectoryService : public Numbered<nsIDirectoryService> {
 public:
  static constexpr int kSlots = 6;

  nsresult Init() override { return 3; }
  nsresult RegisterProvider(nsIDirectoryServiceProvider* /*prov*/) override { return 4; }
  nsresult UnregisterProvider(nsIDirectoryServiceProvider* /*prov*/) override { return 5; }
};

class NumberedDirectoryServiceProvider : public Numbered<nsIDirectoryServiceProvider> {
 public:
  static constexpr int kSlots = 4;

  nsresult GetFile(const char* /*prop*/, PRBool* /*persistent*/, nsIFile** /*_retval*/) override {
    return 3;
  }
};

class NumberedProperties : public Numbered<nsIProperties> {
 public:
  static constexpr int kSlots = 8;

  nsresult Define(const char* /*prop*/, nsISupports* /*initialValue*/) override { return 3; }
  nsresult Undefine(const char* /*prop*/) override { return 4; }
  nsresult Get(const char* /*prop*/, const nsIID& /*uuid*/, void** /*result*/) override {
    return 5;
  }
  nsresult Set(const char* /*prop*/, nsISupports* /*value*/) override { return 6; }
  nsresult Has(const char* /*prop*/, PRBool* /*_retval*/) override { return 7; }
};

class NumberedFile : public Numbered<nsIFile> {
 public:
  static constexpr int kSlots = 49;

  nsresult Append(const char* /*node*/) override { return 3; }
  nsresult AppendUnicode(const PRUnichar* /*node*/) override { return 4; }
  nsresult Normalize() override { return 5; }
  nsresult Create(PRUint32 /*type*/, PRUint32 /*permissions*/) override { return 6; }
  nsresult GetLeafName(char** /*aLeafName*/) override { return 7; }
  nsresult SetLeafName(const char* /*aLeafName*/) override { return 8; }
  nsresult GetUnicodeLeafName(PRUnichar** /*aLeafName*/) override { return 9; }
  nsresult SetUnicodeLeafName(const PRUnichar* /*aLeafName*/) override { return 10; }
  nsresult CopyTo(nsIFile* /*newParentDir*/, const char* /*newName*/) override { return 11; }
  nsresult CopyToUnicode(nsIFile* /*newParentDir*/, const PRUnichar* /*newName*/) override {
    return 12;
  }
  nsresult CopyToFollowingLinks(nsIFile* /*newParentDir*/, const char* /*newName*/) override {
    return 13;
  }
  nsresult CopyToFollowingLinksUnicode(nsIFile* /*newParentDir*/,
                                       const PRUnichar* /*newName*/) override {
    return 14;
  }
  nsresult MoveTo(nsIFile* /*newParentDir*/, const char* /*newName*/) override { return 15; }
  nsresult MoveToUnicode(nsIFile* /*newParentDir*/, const PRUnichar* /*newName*/) override {
    return 16;
  }
  nsresult Spawn(const char** /*args*/, PRUint32 /*count*/) override { return 17; }
  nsresult Delete(PRBool /*recursive*/) override { return 18; }
  nsresult GetPermissions(PRUint32* /*aPermissions*/) override { return 19; }
  nsresult SetPermissions(PRUint32 /*aPermissions*/) override { return 20; }
  nsresult GetPermissionsOfLink(PRUint32* /*aPermissionsOfLink*/) override { return 21; }
  nsresult SetPermissionsOfLink(PRUint32 /*aPermissionsOfLink*/) override { return 22; }
  nsresult GetLastModificationDate(PRInt64* /*aDate*/) override { return 23; }
  nsresult SetLastModificationDate(PRInt64 /*aDate*/) override { return 24; }
  nsresult GetLastModificationDateOfLink(PRInt64* /*aDate*/) override { return 25; }
  nsresult SetLastModificationDateOfLink(PRInt64 /*aDate*/) override { return 26; }
  nsresult GetFileSize(PRInt64* /*aFileSize*/) override { return 27; }
  nsresult SetFileSize(PRInt64 /*aFileSize*/) override { return 28; }
  nsresult GetFileSizeOfLink(PRInt64* /*aFileSize*/) override { return 29; }
  nsresult GetTarget(char** /*aTarget*/) override { return 30; }
  nsresult GetUnicodeTarget(PRUnichar** /*aTarget*/) override { return 31; }
  nsresult GetPath(char** /*aPath*/) override { return 32; }
  nsresult GetUnicodePath(PRUnichar** /*aPath*/) override { return 33; }
  nsresult Exists(PRBool* /*_retval*/) override { return 34; }
  nsresult IsWritable(PRBool* /*_retval*/) override { return 35; }
  nsresult IsReadable(PRBool* /*_retval*/) override { return 36; }
  nsresult IsExecutable(PRBool* /*_retval*/) override { return 37; }
  nsresult IsHidden(PRBool* /*_retval*/) override { return 38; }
  nsresult IsDirectory(PRBool* /*_retval*/) override { return 39; }
  nsresult IsFile(PRBool* /*_retval*/) override { return 40; }
  nsresult IsSymlink(PRBool* /*_retval*/) override { return 41; }
  nsresult IsSpecial(PRBool* /*_retval*/) override { return 42; }
  nsresult CreateUnique(const char* /*suggestedName*/, PRUint32 /*type*/,
                        PRUint32 /*permissions*/) override {
    return 43;
  }
  nsresult Clone(nsIFile** /*_retval*/) override { return 44; }
  nsresult Equals(nsIFile* /*inFile*/, PRBool* /*_retval*/) override { return 45; }
  nsresult Contains(nsIFile* /*inFile*/, PRBool /*recur*/, PRBool* /*_retval*/) override {
    return 46;
  }
  nsresult GetParent(nsIFile** /*aParent*/) override { return 47; }
  nsresult GetDirectoryEntries(nsISimpleEnumerator** /*entries*/) override { return 48; }
};

class NumberedRegistry : public Numbered<nsIRegistry> {
 public:
  static constexpr int kSlots = 37;

  nsresult Open(const char* /*regFile*/) override { return 3; }
  nsresult OpenWellKnownRegistry(nsWellKnownRegistry /*regid*/) override { return 4; }
  nsresult Flush() override { return 5; }
  nsresult IsOpen(PRBool* /*_retval*/) override { return 6; }
  nsresult AddKey(nsRegistryKey /*baseKey*/, const PRUnichar* /*keyname*/,
                  nsRegistryKey* /*_retval*/) override {
    return 7;
  }
  nsresult GetKey(nsRegistryKey /*baseKey*/, const PRUnichar* /*keyname*/,
                  nsRegistryKey* /*_retval*/) override {
    return 8;
  }
  nsresult RemoveKey(nsRegistryKey /*baseKey*/, const PRUnichar* /*keyname*/) override { return 9; }
  nsresult GetString(nsRegistryKey /*baseKey*/, const PRUnichar* /*valname*/,
                     PRUnichar** /*_retval*/) override {
    return 10;
  }
  nsresult SetString(nsRegistryKey /*baseKey*/, const PRUnichar* /*valname*/,
                     const PRUnichar* /*value*/) override {
    return 11;
  }
  nsresult GetStringUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         char** /*_retval*/) override {
    return 12;
  }
  nsresult SetStringUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         const char* /*value*/) override {
    return 13;
  }
  nsresult GetBytesUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/, PRUint32* /*length*/,
                        PRUint8** /*valueArray*/) override {
    return 14;
  }
  nsresult SetBytesUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/, PRUint32 /*length*/,
                        PRUint8* /*valueArray*/) override {
    return 15;
  }
  nsresult GetInt(nsRegistryKey /*baseKey*/, const char* /*path*/, PRInt32* /*_retval*/) override {
    return 16;
  }
  nsresult SetInt(nsRegistryKey /*baseKey*/, const char* /*path*/, PRInt32 /*value*/) override {
    return 17;
  }
  nsresult GetLongLong(nsRegistryKey /*baseKey*/, const char* /*path*/,
                       PRInt64* /*_retval*/) override {
    return 18;
  }
  nsresult SetLongLong(nsRegistryKey /*baseKey*/, const char* /*path*/,
                       PRInt64* /*value*/) override {
    return 19;
  }
  nsresult AddSubtree(nsRegistryKey /*baseKey*/, const char* /*path*/,
                      nsRegistryKey* /*_retval*/) override {
    return 20;
  }
  nsresult RemoveSubtree(nsRegistryKey /*baseKey*/, const char* /*path*/) override { return 21; }
  nsresult GetSubtree(nsRegistryKey /*baseKey*/, const char* /*path*/,
                      nsRegistryKey* /*_retval*/) override {
    return 22;
  }
  nsresult AddSubtreeRaw(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         nsRegistryKey* /*_retval*/) override {
    return 23;
  }
  nsresult RemoveSubtreeRaw(nsRegistryKey /*baseKey*/, const char* /*path*/) override { return 24; }
  nsresult GetSubtreeRaw(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         nsRegistryKey* /*_retval*/) override {
    return 25;
  }
  nsresult EnumerateSubtrees(nsRegistryKey /*baseKey*/, nsIEnumerator** /*_retval*/) override {
    return 26;
  }
  nsresult EnumerateAllSubtrees(nsRegistryKey /*baseKey*/, nsIEnumerator** /*_retval*/) override {
    return 27;
  }
  nsresult EnumerateValues(nsRegistryKey /*baseKey*/, nsIEnumerator** /*_retval*/) override {
    return 28;
  }
  nsresult GetValueType(nsRegistryKey /*baseKey*/, const char* /*path*/,
                        PRUint32* /*_retval*/) override {
    return 29;
  }
  nsresult GetValueLength(nsRegistryKey /*baseKey*/, const char* /*path*/,
                          PRUint32* /*_retval*/) override {
    return 30;
  }
  nsresult DeleteValue(nsRegistryKey /*baseKey*/, const char* /*path*/) override { return 31; }
  nsresult EscapeKey(PRUint8* /*key*/, PRUint32 /*terminator*/, PRUint32* /*length*/,
                     PRUint8** /*escaped*/) override {
    return 32;
  }
  nsresult UnescapeKey(PRUint8* /*escaped*/, PRUint32 /*terminator*/, PRUint32* /*length*/,
                       PRUint8** /*key*/) override {
    return 33;
  }
  nsresult GetCurrentUserName(char** /*aCurrentUserName*/) override { return 34; }
  nsresult SetCurrentUserName(const char* /*aCurrentUserName*/) override { return 35; }
  nsresult Pack() override { return 36; }
};

class NumberedCharsetDetector : public Numbered<nsICharsetDetector> {
 public:
  static constexpr int kSlots = 6;

  nsresult Init(nsICharsetDetectionObserver* /*observer*/) override { return 3; }
  nsresult DoIt(const char* /*aBytesArray*/, PRUint32 /*aLen*/, PRBool* /*oDontFeedMe*/) override {
    return 4;
  }
  nsresult Done() override { return 5; }
};

class NumberedStringCharsetDetector : public Numbered<nsIStringCharsetDetector> {
 public:
  static constexpr int kSlots = 4;

  nsresult DoIt(const char* /*aBytesArray*/, PRUint32 /*aLen*/, const char** /*oCharset*/,
                nsDetectionConfident& /*oConfident*/) override {
    return 3;
  }
};

class NumberedCharsetDetectionObserver : public Numbered<nsICharsetDetectionObserver> {
 public:
  static constexpr int kSlots = 4;

  nsresult Notify(const char* /*aCharset*/, nsDetectionConfident /*aConf*/) override { return 3; }
};

}  // namespace orva

#endif  // ORVA_TESTS_HOST_NUMBERED_INTERFACES_H_
