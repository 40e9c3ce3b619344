// nsCOMPtr: a pointer that owns one reference to an object of the host platform.
//
//   nsCOMPtr<nsIFile> file;
//   rv = properties->Get(NS_APP_RES_DIR, nsIFile::GetIID(), getter_AddRefs(file));
//   if (NS_SUCCEEDED(rv) && file) file->Append("Model.stc");
//
// Ownership:  assignment from a plain pointer adds a reference; getter_AddRefs and a helper such as
//             do_GetService hand over the reference that the call returned.
#ifndef ORVA_PLATFORM_COM_PTR_H_
#define ORVA_PLATFORM_COM_PTR_H_

#include "platform/basics.h"

// Something that can produce a pointer once it is told the interface wanted.
class nsCOMPtr_helper {
 public:
  virtual nsresult operator()(const nsIID& aIID, void** aInstancePtr) const = 0;

 protected:
  ~nsCOMPtr_helper() = default;
};

template <class T>
class nsCOMPtr {
 public:
  nsCOMPtr() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): platform code assigns plain pointers.
  nsCOMPtr(T* aPointer) : mPointer(aPointer) { Acquire(); }
  // NOLINTNEXTLINE(google-explicit-constructor): platform code assigns do_GetService(...).
  nsCOMPtr(const nsCOMPtr_helper& aHelper) { TakeFrom(aHelper); }
  nsCOMPtr(const nsCOMPtr& aOther) : mPointer(aOther.mPointer) { Acquire(); }
  ~nsCOMPtr() { Drop(); }

  nsCOMPtr& operator=(const nsCOMPtr& aOther) { return *this = aOther.mPointer; }
  nsCOMPtr& operator=(T* aPointer) {
    if (aPointer != nullptr) aPointer->AddRef();
    Drop();
    mPointer = aPointer;
    return *this;
  }
  nsCOMPtr& operator=(const nsCOMPtr_helper& aHelper) {
    Drop();
    TakeFrom(aHelper);
    return *this;
  }

  T* get() const { return mPointer; }
  T* operator->() const { return mPointer; }
  // NOLINTNEXTLINE(google-explicit-constructor): passes where a plain pointer is wanted.
  operator T*() const { return mPointer; }

  // Releases what is held and gives the place for a new pointer that carries a reference.
  T** StartAssignment() {
    Drop();
    return &mPointer;
  }

 private:
  void Acquire() {
    if (mPointer != nullptr) mPointer->AddRef();
  }
  void Drop() {
    T* former = mPointer;
    mPointer = nullptr;
    if (former != nullptr) former->Release();
  }
  void TakeFrom(const nsCOMPtr_helper& aHelper) {
    void* found = nullptr;
    mPointer = NS_SUCCEEDED(aHelper(T::GetIID(), &found)) ? static_cast<T*>(found) : nullptr;
  }

  T* mPointer = nullptr;
};

// Passes an nsCOMPtr as an out parameter of type T** or void**.
template <class T>
class nsGetterAddRefs {
 public:
  explicit nsGetterAddRefs(nsCOMPtr<T>& aTarget) : mTarget(aTarget) {}
  ~nsGetterAddRefs() {
    if (mUntyped != nullptr) *mTarget.StartAssignment() = static_cast<T*>(mUntyped);
  }
  nsGetterAddRefs(const nsGetterAddRefs&) = delete;
  nsGetterAddRefs& operator=(const nsGetterAddRefs&) = delete;

  // NOLINTNEXTLINE(google-explicit-constructor): stands for an out parameter.
  operator T**() { return mTarget.StartAssignment(); }
  // NOLINTNEXTLINE(google-explicit-constructor): stands for an untyped out parameter.
  operator void**() {
    mTarget.StartAssignment();
    return &mUntyped;
  }

 private:
  nsCOMPtr<T>& mTarget;
  void* mUntyped = nullptr;
};

template <class T>
nsGetterAddRefs<T> getter_AddRefs(nsCOMPtr<T>& aTarget) {
  return nsGetterAddRefs<T>(aTarget);
}

#endif  // ORVA_PLATFORM_COM_PTR_H_
