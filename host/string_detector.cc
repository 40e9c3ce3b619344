#include <pratom.h>

#include "host/counters.h"
#include "host/no_exceptions.h"
#include "host/query_interface.h"
#include "host/xpcom_detectors.h"

nsOrvaXPCOMStringDetector::nsOrvaXPCOMStringDetector() : mRefCnt(0), mResult(nullptr) {
  PR_AtomicIncrement(&g_InstanceCount);
}

nsOrvaXPCOMStringDetector::~nsOrvaXPCOMStringDetector() { PR_AtomicDecrement(&g_InstanceCount); }

nsresult nsOrvaXPCOMStringDetector::QueryInterface(const nsIID& aIID, void** aInstancePtr) {
  return orva::query_interface<nsIStringCharsetDetector>(this, aIID, aInstancePtr);
}

nsrefcnt nsOrvaXPCOMStringDetector::AddRef() { return ++mRefCnt; }
nsrefcnt nsOrvaXPCOMStringDetector::Release() { return orva::release(this, &mRefCnt); }

nsresult nsOrvaXPCOMStringDetector::DoIt(const char* aBuf, PRUint32 aLen, const char** oCharset,
                                         nsDetectionConfident& oConf) {
  // An answer without a place, and bytes that are not there, cannot be served.
  if (oCharset == nullptr || (aBuf == nullptr && aLen != 0)) return NS_ERROR_INVALID_ARG;
  mResult = nullptr;
  const nsresult rv = orva::without_exceptions([&] {
    HandleData(aBuf, aLen);
    DataEnd();
    return NS_OK;
  });
  *oCharset = mResult;
  // Kept: the level is the same when there is no answer.
  oConf = eBestAnswer;
  if (NS_FAILED(rv)) mLock = 0;
  return rv;
}

void nsOrvaXPCOMStringDetector::Report(const char* aCharset) { mResult = aCharset; }
