// The part that every object of the component shares: one interface, and nsISupports.
#ifndef ORVA_HOST_QUERY_INTERFACE_H_
#define ORVA_HOST_QUERY_INTERFACE_H_

#include "platform/supports.h"

namespace orva {

// Answers `iid` with `object`, counted, when it names Interface or nsISupports.
template <class Interface>
nsresult query_interface(Interface* object, const nsIID& iid, void** result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = nullptr;
  if (!iid.Equals(Interface::GetIID()) && !iid.Equals(nsISupports::GetIID())) {
    return NS_NOINTERFACE;
  }
  *result = object;
  object->AddRef();
  return NS_OK;
}

// Gives one reference back and deletes the object with the last. The count stands at 1 meanwhile,
// so that a reference taken and released by the destructor does not delete again.
template <class Object>
nsrefcnt release(Object* object, nsrefcnt* count) {
  if (--*count != 0) return *count;
  *count = 1;
  delete object;
  return 0;
}

}  // namespace orva

#endif  // ORVA_HOST_QUERY_INTERFACE_H_
