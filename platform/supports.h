// The root of every interface of the host platform, and the two interfaces through which a
// component library is asked for its objects.
//
// An interface method is a plain virtual member whose place in the virtual table is part of the
// contract: each interface here lists its methods in table order, those that nothing of ours calls
// included. Slots 0 to 2 are those of nsISupports. Interfaces have no virtual destructor, since
// that would take slots of its own.
//
// Ownership:  a pointer that a method stores through an out parameter carries a reference.
#ifndef ORVA_PLATFORM_SUPPORTS_H_
#define ORVA_PLATFORM_SUPPORTS_H_

#include "platform/basics.h"

class nsIComponentManager;
class nsIFile;

// {00000000-0000-0000-c000-000000000046}
class nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x00000000, 0x0000, 0x0000, {0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    return iid;
  }

  virtual nsresult QueryInterface(const nsIID& aIID, void** aInstancePtr) = 0;
  virtual nsrefcnt AddRef() = 0;
  virtual nsrefcnt Release() = 0;
};

// Makes the objects of one class.
// {00000001-0000-0000-c000-000000000046}
class nsIFactory : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x00000001, 0x0000, 0x0000, {0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    return iid;
  }

  virtual nsresult CreateInstance(nsISupports* aOuter, const nsIID& iid, void** result) = 0;
  virtual nsresult LockFactory(PRBool lock) = 0;
};

// What a component library hands out: it registers its classes and makes their factories.
// {7392d032-5371-11d3-994e-00805fd26fee}
class nsIModule : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x7392d032, 0x5371, 0x11d3, {0x99, 0x4e, 0x00, 0x80, 0x5f, 0xd2, 0x6f, 0xee}};
    return iid;
  }

  virtual nsresult GetClassObject(nsIComponentManager* aCompMgr, const nsCID& aClass,
                                  const nsIID& aIID, void** result) = 0;
  virtual nsresult RegisterSelf(nsIComponentManager* aCompMgr, nsIFile* location,
                                const char* registryLocation, const char* componentType) = 0;
  virtual nsresult UnregisterSelf(nsIComponentManager* aCompMgr, nsIFile* location,
                                  const char* registryLocation) = 0;
  virtual nsresult CanUnload(nsIComponentManager* aCompMgr, PRBool* _retval) = 0;
};

// The one function that a component library exports, under the name below.
using nsGetModuleProc = nsresult (*)(nsIComponentManager* aCompMgr, nsIFile* location,
                                     nsIModule** return_cobj);
inline constexpr char NS_GET_MODULE_SYMBOL[] = "NSGetModule";

#endif  // ORVA_PLATFORM_SUPPORTS_H_
