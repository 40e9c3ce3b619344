// No exception crosses a method that the host calls: the host may have been built without them.
//
//   return orva::without_exceptions([&] { HandleData(aBuf, aLen); return NS_OK; });
//
// Results: what the body returns; NS_ERROR_OUT_OF_MEMORY when it threw, since nothing here throws
// but
//          for want of memory.
#ifndef ORVA_HOST_NO_EXCEPTIONS_H_
#define ORVA_HOST_NO_EXCEPTIONS_H_

#include "platform/basics.h"

namespace orva {

template <class Body>
nsresult without_exceptions(const Body& body) noexcept {
  try {
    return body();
  } catch (...) {
    return NS_ERROR_OUT_OF_MEMORY;
  }
}

}  // namespace orva

#endif  // ORVA_HOST_NO_EXCEPTIONS_H_
