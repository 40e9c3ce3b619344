// Services: objects that exist once for the whole process, by class ID or contract ID.
//
//   nsresult rv = NS_OK;
//   nsCOMPtr<nsIRegistry> registry = do_GetService(NS_REGISTRY_CONTRACTID, &rv);
//   if (NS_FAILED(rv)) return rv;
//
// Life cycle: the host registers its services before it loads components and drops them with
//             nsServiceManager::ShutdownGlobalServiceManager.
// Ownership:  the manager holds one reference to each service; GetService adds one for the caller.
// Results:    a service that is not there gives NS_ERROR_FACTORY_NOT_REGISTERED.
#ifndef ORVA_PLATFORM_SERVICE_MANAGER_H_
#define ORVA_PLATFORM_SERVICE_MANAGER_H_

#include "platform/com_ptr.h"
#include "platform/supports.h"

// Was told of the end of a service; no service of ours calls it.
// {56decae0-3406-11d2-8163-006008119d7a}
class nsIShutdownListener : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0x56decae0, 0x3406, 0x11d2, {0x81, 0x63, 0x00, 0x60, 0x08, 0x11, 0x9d, 0x7a}};
    return iid;
  }

  virtual nsresult OnShutdown(const nsCID& aClass, nsISupports* service) = 0;
};

// {cf0df3b0-3401-11d2-8163-006008119d7a}
class nsIServiceManager : public nsISupports {
 public:
  static const nsIID& GetIID() {
    static const nsIID iid = {
        0xcf0df3b0, 0x3401, 0x11d2, {0x81, 0x63, 0x00, 0x60, 0x08, 0x11, 0x9d, 0x7a}};
    return iid;
  }

  virtual nsresult RegisterService(const nsCID& aClass, nsISupports* aService) = 0;
  virtual nsresult UnregisterService(const nsCID& aClass) = 0;
  virtual nsresult GetService(const nsCID& aClass, const nsIID& aIID, nsISupports** result,
                              nsIShutdownListener* listener = nullptr) = 0;
  virtual nsresult ReleaseService(const nsCID& aClass, nsISupports* service,
                                  nsIShutdownListener* listener = nullptr) = 0;
  virtual nsresult RegisterService(const char* aContractID, nsISupports* aService) = 0;
  virtual nsresult UnregisterService(const char* aContractID) = 0;
  virtual nsresult GetService(const char* aContractID, const nsIID& aIID, nsISupports** result,
                              nsIShutdownListener* listener = nullptr) = 0;
  virtual nsresult ReleaseService(const char* aContractID, nsISupports* service,
                                  nsIShutdownListener* listener = nullptr) = 0;
};

// The same as static calls on the manager of the process.
class NS_COM nsServiceManager {
 public:
  static nsresult RegisterService(const nsCID& aClass, nsISupports* aService);
  static nsresult UnregisterService(const nsCID& aClass);
  static nsresult GetService(const nsCID& aClass, const nsIID& aIID, nsISupports** result,
                             nsIShutdownListener* shutdownListener = nullptr);
  static nsresult ReleaseService(const nsCID& aClass, nsISupports* service,
                                 nsIShutdownListener* shutdownListener = nullptr);

  static nsresult RegisterService(const char* aContractID, nsISupports* aService);
  static nsresult UnregisterService(const char* aContractID);
  static nsresult GetService(const char* aContractID, const nsIID& aIID, nsISupports** result,
                             nsIShutdownListener* shutdownListener = nullptr);
  static nsresult ReleaseService(const char* aContractID, nsISupports* service,
                                 nsIShutdownListener* shutdownListener = nullptr);

  // Makes the manager when there is none.
  static nsresult GetGlobalServiceManager(nsIServiceManager** result);
  // Releases the caller's pointer, which becomes null, and drops every service.
  static nsresult ShutdownGlobalServiceManager(nsIServiceManager** result);
};

// What do_GetService returns: asks for the service once the pointer's interface is known.
class nsGetServiceByContractID : public nsCOMPtr_helper {
 public:
  nsGetServiceByContractID(const char* aContractID, nsIServiceManager* aServiceManager,
                           nsresult* aError)
      : mContractID(aContractID), mServiceManager(aServiceManager), mErrorPtr(aError) {}

  nsresult operator()(const nsIID& aIID, void** aInstancePtr) const override {
    nsISupports* service = nullptr;
    nsresult rv = mServiceManager != nullptr
                      ? mServiceManager->GetService(mContractID, aIID, &service, nullptr)
                      : nsServiceManager::GetService(mContractID, aIID, &service, nullptr);
    *aInstancePtr = NS_SUCCEEDED(rv) ? service : nullptr;
    if (mErrorPtr != nullptr) *mErrorPtr = rv;
    return rv;
  }

 private:
  const char* mContractID;
  nsIServiceManager* mServiceManager;
  nsresult* mErrorPtr;
};

inline const nsGetServiceByContractID do_GetService(const char* aContractID,
                                                    nsresult* error = nullptr) {
  return nsGetServiceByContractID(aContractID, nullptr, error);
}

inline const nsGetServiceByContractID do_GetService(const char* aContractID,
                                                    nsIServiceManager* aServiceManager,
                                                    nsresult* error) {
  return nsGetServiceByContractID(aContractID, aServiceManager, error);
}

#endif  // ORVA_PLATFORM_SERVICE_MANAGER_H_
