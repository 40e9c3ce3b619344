// The two detectors that a host creates: one is fed a document block by block and tells an
// observer, the other is handed one buffer and answers at once.
//
//   nsCOMPtr<nsICharsetDetector> detector = ...;  // from the factory, by contract ID
//   detector->Init(observer);
//   while (next_block()) detector->DoIt(block, length, &dontFeedMe);
//   detector->Done();
//
// Life cycle: made by the factory with no reference, deleted with the last one. One of these at a
//             time holds the shared evaluator (see nsOrvaDetector).
// Ownership:  the streaming detector holds a reference to its observer.
// Threads:    one.
#ifndef ORVA_HOST_XPCOM_DETECTORS_H_
#define ORVA_HOST_XPCOM_DETECTORS_H_

#include "host/orva_detector.h"
#include "platform/charset_detector.h"

class nsOrvaXPCOMDetector : public nsOrvaDetector, public nsICharsetDetector {
 public:
  nsOrvaXPCOMDetector();
  ~nsOrvaXPCOMDetector() override;

  nsresult QueryInterface(const nsIID& aIID, void** aInstancePtr) override;
  nsrefcnt AddRef() override;
  nsrefcnt Release() override;

  nsresult Init(nsICharsetDetectionObserver* aObserver) override;
  nsresult DoIt(const char* aBuf, PRUint32 aLen, PRBool* oDontFeedMe) override;
  nsresult Done() override;

  void Report(const char* aCharset) override;

 private:
  nsrefcnt mRefCnt;
  nsICharsetDetectionObserver* mObserver;
};

class nsOrvaXPCOMStringDetector : public nsOrvaDetector, public nsIStringCharsetDetector {
 public:
  nsOrvaXPCOMStringDetector();
  ~nsOrvaXPCOMStringDetector() override;

  nsresult QueryInterface(const nsIID& aIID, void** aInstancePtr) override;
  nsrefcnt AddRef() override;
  nsrefcnt Release() override;

  nsresult DoIt(const char* aBuf, PRUint32 aLen, const char** oCharset,
                nsDetectionConfident& oConf) override;

  void Report(const char* aCharset) override;

 private:
  nsrefcnt mRefCnt;
  const char* mResult;  // into the shared name table
};

#endif  // ORVA_HOST_XPCOM_DETECTORS_H_
