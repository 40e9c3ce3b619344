// MyFactory: makes detectors of one class.
//
// Life cycle: made with no reference by NEW_ORVADETECTOR_FACTORY, deleted with the last one. A
//             factory counts as a live object of the library.
#ifndef ORVA_HOST_FACTORY_H_
#define ORVA_HOST_FACTORY_H_

#include "platform/supports.h"

class MyFactory : public nsIFactory {
 public:
  explicit MyFactory(const nsCID& aClass);

  nsresult QueryInterface(const nsIID& aIID, void** aInstancePtr) override;
  nsrefcnt AddRef() override;
  nsrefcnt Release() override;

  // NS_ERROR_OUT_OF_MEMORY also stands for a class that is neither detector.
  nsresult CreateInstance(nsISupports* aOuter, const nsIID& aIID, void** aInstancePtr) override;
  nsresult LockFactory(PRBool aLock) override;

  // After the interface's slots.
  virtual ~MyFactory();

 private:
  nsrefcnt mRefCnt;
  nsCID mClassID;
};

// A new factory for the class; null when it cannot be allocated.
MyFactory* NEW_ORVADETECTOR_FACTORY(const nsID& aClass);

#endif  // ORVA_HOST_FACTORY_H_
