// Interfaces of which the small host needs only a few methods: here every method of its own answers
// NS_ERROR_NOT_IMPLEMENTED, and the classes that derive from these override what they can do.
#ifndef ORVA_TOOLS_ORVA_HOST_UNIMPLEMENTED_H_
#define ORVA_TOOLS_ORVA_HOST_UNIMPLEMENTED_H_

#include "platform/component_manager.h"
#include "platform/file.h"
#include "platform/registry.h"

namespace orva {

class UnimplementedComponentManager : public nsIComponentManager {
 public:
  nsresult FindFactory(const nsCID& /*aClass*/, nsIFactory** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetClassObject(const nsCID& /*aClass*/, const nsIID& /*aIID*/,
                          void** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult ContractIDToClassID(const char* /*aContractID*/, nsCID* /*aClass*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult CLSIDToContractID(const nsCID& /*aClass*/, char** /*aClassName*/,
                             char** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult CreateInstance(const nsCID& /*aClass*/, nsISupports* /*aDelegate*/,
                          const nsIID& /*aIID*/, void** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult CreateInstanceByContractID(const char* /*aContractID*/, nsISupports* /*aDelegate*/,
                                      const nsIID& /*aIID*/, void** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RegistryLocationForSpec(nsIFile* /*aSpec*/, char** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SpecForRegistryLocation(const char* /*aLocation*/, nsIFile** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RegisterFactory(const nsCID& /*aClass*/, const char* /*aClassName*/,
                           const char* /*aContractID*/, nsIFactory* /*aFactory*/,
                           PRBool /*aReplace*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RegisterComponent(const nsCID& /*aClass*/, const char* /*aClassName*/,
                             const char* /*aContractID*/, const char* /*aLocation*/,
                             PRBool /*aReplace*/, PRBool /*aPersist*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RegisterComponentWithType(const nsCID& /*aClass*/, const char* /*aClassName*/,
                                     const char* /*aContractID*/, nsIFile* /*aSpec*/,
                                     const char* /*aLocation*/, PRBool /*aReplace*/,
                                     PRBool /*aPersist*/, const char* /*aType*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RegisterComponentSpec(const nsCID& /*aClass*/, const char* /*aClassName*/,
                                 const char* /*aContractID*/, nsIFile* /*aLibrary*/,
                                 PRBool /*aReplace*/, PRBool /*aPersist*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RegisterComponentLib(const nsCID& /*aClass*/, const char* /*aClassName*/,
                                const char* /*aContractID*/, const char* /*aDllName*/,
                                PRBool /*aReplace*/, PRBool /*aPersist*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult UnregisterFactory(const nsCID& /*aClass*/, nsIFactory* /*aFactory*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult UnregisterComponent(const nsCID& /*aClass*/, const char* /*aLocation*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult UnregisterComponentSpec(const nsCID& /*aClass*/, nsIFile* /*aLibrarySpec*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult FreeLibraries() override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult AutoRegister(PRInt32 /*when*/, nsIFile* /*directory*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult AutoRegisterComponent(PRInt32 /*when*/, nsIFile* /*aFileLocation*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult AutoUnregisterComponent(PRInt32 /*when*/, nsIFile* /*aFileLocation*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult IsRegistered(const nsCID& /*aClass*/, PRBool* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult EnumerateCLSIDs(nsIEnumerator** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult EnumerateContractIDs(nsIEnumerator** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
};

class UnimplementedFile : public nsIFile {
 public:
  nsresult Append(const char* /*node*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult AppendUnicode(const PRUnichar* /*node*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult Normalize() override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult Create(PRUint32 /*type*/, PRUint32 /*permissions*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetLeafName(char** /*aLeafName*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult SetLeafName(const char* /*aLeafName*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetUnicodeLeafName(PRUnichar** /*aLeafName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetUnicodeLeafName(const PRUnichar* /*aLeafName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult CopyTo(nsIFile* /*newParentDir*/, const char* /*newName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult CopyToUnicode(nsIFile* /*newParentDir*/, const PRUnichar* /*newName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult CopyToFollowingLinks(nsIFile* /*newParentDir*/, const char* /*newName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult CopyToFollowingLinksUnicode(nsIFile* /*newParentDir*/,
                                       const PRUnichar* /*newName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult MoveTo(nsIFile* /*newParentDir*/, const char* /*newName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult MoveToUnicode(nsIFile* /*newParentDir*/, const PRUnichar* /*newName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Spawn(const char** /*args*/, PRUint32 /*count*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Delete(PRBool /*recursive*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetPermissions(PRUint32* /*aPermissions*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult SetPermissions(PRUint32 /*aPermissions*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetPermissionsOfLink(PRUint32* /*aPermissionsOfLink*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetPermissionsOfLink(PRUint32 /*aPermissionsOfLink*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetLastModificationDate(PRInt64* /*aDate*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult SetLastModificationDate(PRInt64 /*aDate*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetLastModificationDateOfLink(PRInt64* /*aDate*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetLastModificationDateOfLink(PRInt64 /*aDate*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetFileSize(PRInt64* /*aFileSize*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult SetFileSize(PRInt64 /*aFileSize*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetFileSizeOfLink(PRInt64* /*aFileSize*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetTarget(char** /*aTarget*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetUnicodeTarget(PRUnichar** /*aTarget*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetPath(char** /*aPath*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetUnicodePath(PRUnichar** /*aPath*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult Exists(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsWritable(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsReadable(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsExecutable(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsHidden(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsDirectory(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsFile(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsSymlink(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsSpecial(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult CreateUnique(const char* /*suggestedName*/, PRUint32 /*type*/,
                        PRUint32 /*permissions*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Clone(nsIFile** /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult Equals(nsIFile* /*inFile*/, PRBool* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Contains(nsIFile* /*inFile*/, PRBool /*recur*/, PRBool* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetParent(nsIFile** /*aParent*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult GetDirectoryEntries(nsISimpleEnumerator** /*entries*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
};

class UnimplementedRegistry : public nsIRegistry {
 public:
  nsresult Open(const char* /*regFile*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult OpenWellKnownRegistry(nsWellKnownRegistry /*regid*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Flush() override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult IsOpen(PRBool* /*_retval*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult AddKey(nsRegistryKey /*baseKey*/, const PRUnichar* /*keyname*/,
                  nsRegistryKey* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetKey(nsRegistryKey /*baseKey*/, const PRUnichar* /*keyname*/,
                  nsRegistryKey* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RemoveKey(nsRegistryKey /*baseKey*/, const PRUnichar* /*keyname*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetString(nsRegistryKey /*baseKey*/, const PRUnichar* /*valname*/,
                     PRUnichar** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetString(nsRegistryKey /*baseKey*/, const PRUnichar* /*valname*/,
                     const PRUnichar* /*value*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetStringUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         char** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetStringUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         const char* /*value*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetBytesUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/, PRUint32* /*length*/,
                        PRUint8** /*valueArray*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetBytesUTF8(nsRegistryKey /*baseKey*/, const char* /*path*/, PRUint32 /*length*/,
                        PRUint8* /*valueArray*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetInt(nsRegistryKey /*baseKey*/, const char* /*path*/, PRInt32* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetInt(nsRegistryKey /*baseKey*/, const char* /*path*/, PRInt32 /*value*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetLongLong(nsRegistryKey /*baseKey*/, const char* /*path*/,
                       PRInt64* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetLongLong(nsRegistryKey /*baseKey*/, const char* /*path*/,
                       PRInt64* /*value*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult AddSubtree(nsRegistryKey /*baseKey*/, const char* /*path*/,
                      nsRegistryKey* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RemoveSubtree(nsRegistryKey /*baseKey*/, const char* /*path*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetSubtree(nsRegistryKey /*baseKey*/, const char* /*path*/,
                      nsRegistryKey* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult AddSubtreeRaw(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         nsRegistryKey* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult RemoveSubtreeRaw(nsRegistryKey /*baseKey*/, const char* /*path*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetSubtreeRaw(nsRegistryKey /*baseKey*/, const char* /*path*/,
                         nsRegistryKey* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult EnumerateSubtrees(nsRegistryKey /*baseKey*/, nsIEnumerator** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult EnumerateAllSubtrees(nsRegistryKey /*baseKey*/, nsIEnumerator** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult EnumerateValues(nsRegistryKey /*baseKey*/, nsIEnumerator** /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetValueType(nsRegistryKey /*baseKey*/, const char* /*path*/,
                        PRUint32* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetValueLength(nsRegistryKey /*baseKey*/, const char* /*path*/,
                          PRUint32* /*_retval*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult DeleteValue(nsRegistryKey /*baseKey*/, const char* /*path*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult EscapeKey(PRUint8* /*key*/, PRUint32 /*terminator*/, PRUint32* /*length*/,
                     PRUint8** /*escaped*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult UnescapeKey(PRUint8* /*escaped*/, PRUint32 /*terminator*/, PRUint32* /*length*/,
                       PRUint8** /*key*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult GetCurrentUserName(char** /*aCurrentUserName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult SetCurrentUserName(const char* /*aCurrentUserName*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Pack() override { return NS_ERROR_NOT_IMPLEMENTED; }
};

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_UNIMPLEMENTED_H_
