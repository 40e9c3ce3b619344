// The host's table of classes: which library makes the objects of a class or contract.
#ifndef ORVA_PLATFORM_COMPONENT_MANAGER_H_
#define ORVA_PLATFORM_COMPONENT_MANAGER_H_

#include "platform/supports.h"

class nsIEnumerator;

// Ownership:  returned strings are the caller's to free.
// {8458a740-d5dc-11d2-92fb-00e09805570f}
class nsIComponentManager : public nsISupports {
 public:
  enum { NS_Startup = 0, NS_Script = 1, NS_Timer = 2, NS_Shutdown = 3 };

  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x8458a740, 0xd5dc, 0x11d2, {0x92, 0xfb, 0x00, 0xe0, 0x98, 0x05, 0x57, 0x0f}};
    return iid;
  }

  virtual nsresult FindFactory(const nsCID& aClass, nsIFactory** _retval) = 0;
  virtual nsresult GetClassObject(const nsCID& aClass, const nsIID& aIID, void** _retval) = 0;
  virtual nsresult ContractIDToClassID(const char* aContractID, nsCID* aClass) = 0;
  virtual nsresult CLSIDToContractID(const nsCID& aClass, char** aClassName, char** _retval) = 0;
  virtual nsresult CreateInstance(const nsCID& aClass, nsISupports* aDelegate, const nsIID& aIID,
                                  void** _retval) = 0;
  virtual nsresult CreateInstanceByContractID(const char* aContractID, nsISupports* aDelegate,
                                              const nsIID& aIID, void** _retval) = 0;
  virtual nsresult RegistryLocationForSpec(nsIFile* aSpec, char** _retval) = 0;
  virtual nsresult SpecForRegistryLocation(const char* aLocation, nsIFile** _retval) = 0;
  virtual nsresult RegisterFactory(const nsCID& aClass, const char* aClassName,
                                   const char* aContractID, nsIFactory* aFactory,
                                   PRBool aReplace) = 0;
  virtual nsresult RegisterComponent(const nsCID& aClass, const char* aClassName,
                                     const char* aContractID, const char* aLocation,
                                     PRBool aReplace, PRBool aPersist) = 0;
  virtual nsresult RegisterComponentWithType(const nsCID& aClass, const char* aClassName,
                                             const char* aContractID, nsIFile* aSpec,
                                             const char* aLocation, PRBool aReplace,
                                             PRBool aPersist, const char* aType) = 0;
  virtual nsresult RegisterComponentSpec(const nsCID& aClass, const char* aClassName,
                                         const char* aContractID, nsIFile* aLibrary,
                                         PRBool aReplace, PRBool aPersist) = 0;
  virtual nsresult RegisterComponentLib(const nsCID& aClass, const char* aClassName,
                                        const char* aContractID, const char* aDllName,
                                        PRBool aReplace, PRBool aPersist) = 0;
  virtual nsresult UnregisterFactory(const nsCID& aClass, nsIFactory* aFactory) = 0;
  virtual nsresult UnregisterComponent(const nsCID& aClass, const char* aLocation) = 0;
  virtual nsresult UnregisterComponentSpec(const nsCID& aClass, nsIFile* aLibrarySpec) = 0;
  virtual nsresult FreeLibraries() = 0;
  virtual nsresult AutoRegister(PRInt32 when, nsIFile* directory) = 0;
  virtual nsresult AutoRegisterComponent(PRInt32 when, nsIFile* aFileLocation) = 0;
  virtual nsresult AutoUnregisterComponent(PRInt32 when, nsIFile* aFileLocation) = 0;
  virtual nsresult IsRegistered(const nsCID& aClass, PRBool* _retval) = 0;
  virtual nsresult EnumerateCLSIDs(nsIEnumerator** _retval) = 0;
  virtual nsresult EnumerateContractIDs(nsIEnumerator** _retval) = 0;
};

#endif  // ORVA_PLATFORM_COMPONENT_MANAGER_H_
