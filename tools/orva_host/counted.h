// Reference counting and QueryInterface for an object of one interface.
//
//   class Observer : public Counted<nsICharsetDetectionObserver> { ... };
//   const nsCOMPtr<Observer> observer = new Observer;
//
// Life cycle: made with no reference, deleted with the last one.
#ifndef ORVA_TOOLS_ORVA_HOST_COUNTED_H_
#define ORVA_TOOLS_ORVA_HOST_COUNTED_H_

#include "platform/supports.h"

namespace orva {

// Base is the interface, or a class that implements it in part.
template <class Interface, class Base = Interface>
class Counted : public Base {
 public:
  nsresult QueryInterface(const nsIID& iid, void** result) override {
    if (result == nullptr) return NS_ERROR_NULL_POINTER;
    *result = nullptr;
    if (!iid.Equals(Interface::GetIID()) && !iid.Equals(nsISupports::GetIID())) {
      return NS_NOINTERFACE;
    }
    AddRef();
    *result = static_cast<Interface*>(this);
    return NS_OK;
  }
  nsrefcnt AddRef() override { return ++references_; }
  nsrefcnt Release() override {
    const nsrefcnt left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;
  nsrefcnt references() const { return references_; }

 private:
  nsrefcnt references_ = 0;
};

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_COUNTED_H_
