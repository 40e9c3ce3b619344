// nsOrvaCharDetModule: the library as its host sees it. It registers the two detectors, makes their
// factories, loads the models on first use and says when the library may go.
//
// Life cycle: made by NSGetModule; initialised for good by the first GetClassObject, even when the
//             models do not load; its destructor releases the models.
// Results:    platform result codes.
// Threads:    one, that of the host's component manager.
#ifndef ORVA_HOST_MODULE_H_
#define ORVA_HOST_MODULE_H_

#include "platform/supports.h"

class nsOrvaCharDetModule : public nsIModule {
 public:
  nsOrvaCharDetModule();

  nsresult QueryInterface(const nsIID& aIID, void** aInstancePtr) override;
  nsrefcnt AddRef() override;
  nsrefcnt Release() override;

  nsresult GetClassObject(nsIComponentManager* aCompMgr, const nsCID& aClass, const nsIID& aIID,
                          void** aInstancePtr) override;
  nsresult RegisterSelf(nsIComponentManager* aCompMgr, nsIFile* aPath, const char* aLoaderStr,
                        const char* aType) override;
  nsresult UnregisterSelf(nsIComponentManager* aCompMgr, nsIFile* aPath,
                          const char* aLoaderStr) override;
  nsresult CanUnload(nsIComponentManager* aCompMgr, PRBool* aOkToUnload) override;

  // After the interface's slots.
  virtual ~nsOrvaCharDetModule();

 private:
  nsresult Initialize();
  void Shutdown();

  nsrefcnt mRefCnt;
  int mInitialized;
};

#endif  // ORVA_HOST_MODULE_H_
