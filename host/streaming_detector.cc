#include <pratom.h>

#include "host/counters.h"
#include "host/no_exceptions.h"
#include "host/query_interface.h"
#include "host/xpcom_detectors.h"

nsOrvaXPCOMDetector::nsOrvaXPCOMDetector() : mRefCnt(0), mObserver(nullptr) {
  PR_AtomicIncrement(&g_InstanceCount);
}

nsOrvaXPCOMDetector::~nsOrvaXPCOMDetector() {
  if (mObserver != nullptr) mObserver->Release();
  PR_AtomicDecrement(&g_InstanceCount);
}

nsresult nsOrvaXPCOMDetector::QueryInterface(const nsIID& aIID, void** aInstancePtr) {
  return orva::query_interface<nsICharsetDetector>(this, aIID, aInstancePtr);
}

nsrefcnt nsOrvaXPCOMDetector::AddRef() { return ++mRefCnt; }
nsrefcnt nsOrvaXPCOMDetector::Release() { return orva::release(this, &mRefCnt); }

nsresult nsOrvaXPCOMDetector::Init(nsICharsetDetectionObserver* aObserver) {
  if (aObserver == nullptr) return NS_ERROR_INVALID_ARG;
  aObserver->AddRef();
  // Kept: a former observer keeps the reference that it was given.
  mObserver = aObserver;
  return NS_OK;
}

nsresult nsOrvaXPCOMDetector::DoIt(const char* aBuf, PRUint32 aLen, PRBool* oDontFeedMe) {
  if (aBuf == nullptr || oDontFeedMe == nullptr) return NS_ERROR_INVALID_ARG;
  *oDontFeedMe = PR_FALSE;
  return orva::without_exceptions([&] {
    HandleData(aBuf, aLen);
    // Kept: told again with every block after the decision, and the host is never asked to stop.
    if (mDone == 1) {
      if (const char* charset = BestCharset(); charset != nullptr) Report(charset);
    }
    return NS_OK;
  });
}

nsresult nsOrvaXPCOMDetector::Done() {
  const nsresult rv = orva::without_exceptions([this] {
    DataEnd();
    return NS_OK;
  });
  // An observer that cannot take the answer must not keep the evaluator from the next document.
  if (NS_FAILED(rv)) mLock = 0;
  return rv;
}

void nsOrvaXPCOMDetector::Report(const char* aCharset) {
  if (mObserver != nullptr) mObserver->Notify(aCharset, eBestAnswer);
}
