#include "host/factory.h"

#include <pratom.h>

#include <new>

#include "host/component_ids.h"
#include "host/counters.h"
#include "host/no_exceptions.h"
#include "host/query_interface.h"
#include "host/xpcom_detectors.h"

PRInt32 g_InstanceCount = 0;
PRInt32 g_LockCount = 0;

namespace orva {
namespace {

// Makes a detector and asks it for the interface; one that does not have it is deleted again.
template <class Detector>
nsresult create_detector(const nsIID& iid, void** result) {
  auto* detector = new (std::nothrow) Detector;
  if (detector == nullptr) return NS_ERROR_OUT_OF_MEMORY;
  const nsresult rv = detector->QueryInterface(iid, result);
  if (NS_FAILED(rv)) delete detector;
  return rv;
}

}  // namespace
}  // namespace orva

MyFactory::MyFactory(const nsCID& aClass) : mRefCnt(0), mClassID(aClass) {
  PR_AtomicIncrement(&g_InstanceCount);
}

MyFactory::~MyFactory() { PR_AtomicDecrement(&g_InstanceCount); }

MyFactory* NEW_ORVADETECTOR_FACTORY(const nsID& aClass) {
  return new (std::nothrow) MyFactory(aClass);
}

nsresult MyFactory::QueryInterface(const nsIID& aIID, void** aInstancePtr) {
  return orva::query_interface<nsIFactory>(this, aIID, aInstancePtr);
}

nsrefcnt MyFactory::AddRef() { return ++mRefCnt; }
nsrefcnt MyFactory::Release() { return orva::release(this, &mRefCnt); }

nsresult MyFactory::CreateInstance(nsISupports* aOuter, const nsIID& aIID, void** aInstancePtr) {
  if (aInstancePtr == nullptr) return NS_ERROR_NULL_POINTER;
  // Kept: the result is cleared only after this refusal.
  if (aOuter != nullptr) return NS_ERROR_NO_AGGREGATION;
  *aInstancePtr = nullptr;
  return orva::without_exceptions([&] {
    if (mClassID.Equals(orva::kStreamingDetectorCID)) {
      return orva::create_detector<nsOrvaXPCOMDetector>(aIID, aInstancePtr);
    }
    if (mClassID.Equals(orva::kStringDetectorCID)) {
      return orva::create_detector<nsOrvaXPCOMStringDetector>(aIID, aInstancePtr);
    }
    return NS_ERROR_OUT_OF_MEMORY;
  });
}

nsresult MyFactory::LockFactory(PRBool aLock) {
  if (aLock) {
    PR_AtomicIncrement(&g_LockCount);
  } else {
    PR_AtomicDecrement(&g_LockCount);
  }
  return NS_OK;
}
