// The module and its factories, as the host's component manager meets them.
#include <dlfcn.h>

#include <cstdlib>

#include "tests/host/loaded_component.h"
#include "tests/support/streams.h"
#include "tests/support/temp_dir.h"
#include "tools/orva_host/local_file.h"

namespace orva {
namespace {

using Strings = std::vector<std::string>;

class Module : public LoadedComponent {
 protected:
  void SetUp() override { load(); }
};

TEST_F(Module, AnswersItsInterfaceAndTheRootOnly) {
  for (const nsIID& iid : {nsIModule::GetIID(), nsISupports::GetIID()}) {
    nsCOMPtr<nsISupports> found;
    EXPECT_EQ(module()->QueryInterface(iid, getter_AddRefs(found)), NS_OK);
    EXPECT_EQ(found.get(), module());
  }
  void* none = &none;
  EXPECT_EQ(module()->QueryInterface(nsIFactory::GetIID(), &none), NS_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(module()->QueryInterface(nsIModule::GetIID(), nullptr), NS_ERROR_NULL_POINTER);
}

TEST_F(Module, UnknownClassIsNotRegistered) {
  void* none = &none;
  EXPECT_EQ(class_object(nsISupports::GetIID(), nsIFactory::GetIID(), &none),
            NS_ERROR_FACTORY_NOT_REGISTERED);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(class_object(kStringDetectorCID, nsIFactory::GetIID(), nullptr), NS_ERROR_NULL_POINTER);
  EXPECT_TRUE(can_unload());
}

TEST_F(Module, EveryClassObjectIsAFreshFactory) {
  const nsCOMPtr<nsIFactory> first = factory(kStringDetectorCID);
  const nsCOMPtr<nsIFactory> second = factory(kStringDetectorCID);
  ASSERT_NE(first.get(), nullptr);
  EXPECT_NE(first.get(), second.get());
  EXPECT_EQ(first->AddRef(), 2U);
  EXPECT_EQ(first->Release(), 1U);
}

TEST_F(Module, FactoryAnswersItsInterfaceAndTheRootOnly) {
  const nsCOMPtr<nsIFactory> made = factory(kStreamingDetectorCID);
  nsCOMPtr<nsISupports> root;
  EXPECT_EQ(made->QueryInterface(nsISupports::GetIID(), getter_AddRefs(root)), NS_OK);
  EXPECT_EQ(root.get(), made.get());
  void* none = &none;
  EXPECT_EQ(made->QueryInterface(nsIModule::GetIID(), &none), NS_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(made->QueryInterface(nsIFactory::GetIID(), nullptr), NS_ERROR_NULL_POINTER);
}

TEST_F(Module, AggregationIsRefusedAndCreatesNothing) {
  {
    const nsCOMPtr<nsIFactory> maker = factory(kStreamingDetectorCID);
    void* untouched = &untouched;
    EXPECT_EQ(maker->CreateInstance(module(), nsISupports::GetIID(), &untouched),
              NS_ERROR_NO_AGGREGATION);
    EXPECT_EQ(untouched, &untouched);
    EXPECT_EQ(maker->CreateInstance(nullptr, nsISupports::GetIID(), nullptr),
              NS_ERROR_NULL_POINTER);
    EXPECT_EQ(maker->CreateInstance(module(), nsISupports::GetIID(), nullptr),
              NS_ERROR_NULL_POINTER);
  }
  EXPECT_TRUE(can_unload());
}

TEST_F(Module, DetectorWithoutTheInterfaceIsDeletedAgain) {
  {
    const nsCOMPtr<nsIFactory> maker = factory(kStreamingDetectorCID);
    void* none = &none;
    EXPECT_EQ(maker->CreateInstance(nullptr, nsIStringCharsetDetector::GetIID(), &none),
              NS_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
  }
  EXPECT_TRUE(can_unload());
}

TEST_F(Module, FactoryWithoutTheInterfaceKeepsTheCountRaised) {
  // In a process of its own, since nothing lowers the count again.
  const Ended ended = run_to_end([this] {
    void* none = &none;
    if (class_object(kStringDetectorCID, nsIModule::GetIID(), &none) != NS_NOINTERFACE) exit(1);
    if (none != nullptr) exit(2);
    exit(can_unload() ? 3 : 0);
  });
  EXPECT_EQ(ended.status, 0) << ended.err;
}

TEST_F(Module, CanUnloadOnceFactoryAndDetectorAreGone) {
  PRBool ok = PR_FALSE;
  EXPECT_EQ(module()->CanUnload(nullptr, nullptr), NS_ERROR_NULL_POINTER);
  EXPECT_EQ(module()->CanUnload(nullptr, &ok), NS_OK);
  EXPECT_EQ(ok, PR_TRUE);
  {
    nsCOMPtr<nsIStringCharsetDetector> detector = whole();
    EXPECT_FALSE(can_unload());
    const nsCOMPtr<nsIFactory> maker = factory(kStringDetectorCID);
    answer(detector, "x");
    detector = static_cast<nsIStringCharsetDetector*>(nullptr);
    EXPECT_FALSE(can_unload());
  }
  EXPECT_TRUE(can_unload());
}

TEST_F(Module, FactoryLockKeepsTheLibrary) {
  nsCOMPtr<nsIFactory> maker = factory(kStringDetectorCID);
  EXPECT_EQ(maker->LockFactory(PR_TRUE), NS_OK);
  maker = static_cast<nsIFactory*>(nullptr);
  EXPECT_FALSE(can_unload());
  EXPECT_EQ(factory(kStringDetectorCID)->LockFactory(PR_FALSE), NS_OK);
  EXPECT_TRUE(can_unload());
}

class ModuleWithoutModels : public LoadedComponent {};

TEST_F(ModuleWithoutModels, FirstClassObjectFailsAndTheNextMakesMuteDetectors) {
  const TempDir empty;
  load(empty.path());
  void* none = &none;
  EXPECT_EQ(class_object(kStreamingDetectorCID, nsIFactory::GetIID(), &none),
            NS_ERROR_NOT_AVAILABLE);
  EXPECT_EQ(none, nullptr);
  const nsCOMPtr<nsICharsetDetector> detector = streaming();
  ASSERT_NE(detector.get(), nullptr);
  const nsCOMPtr<Observer> observer = new Observer;
  detector->Init(observer);
  feed(detector, kRussian);
  detector->Done();
  EXPECT_TRUE(observer->told.empty());
  EXPECT_EQ(answer(whole(), kRussian), "-");
}

TEST_F(ModuleWithoutModels, FailuresOfTheHostAreTheResultOfTheFirstClassObject) {
  const auto result_with = [this](bool Faults::*fault) {
    Faults faults;
    faults.*fault = true;
    load(ORVA_SOURCE_DIR "/tests/host/models", faults);
    void* none = nullptr;
    return class_object(kStreamingDetectorCID, nsIFactory::GetIID(), &none);
  };
  EXPECT_EQ(result_with(&Faults::directory_service), NS_ERROR_FACTORY_NOT_REGISTERED);
  EXPECT_EQ(result_with(&Faults::directory), NS_ERROR_FAILURE);
  EXPECT_EQ(result_with(&Faults::path), NS_ERROR_NOT_AVAILABLE);
}

TEST_F(ModuleWithoutModels, NamesWithoutAGroupAreNotReleased) {
  const TempDir models;
  models.file("Model.stc", bytes_of(ORVA_SOURCE_DIR "/tests/host/models/Model.stc"));
  for (int i = 0; i < 2; ++i) {
    load(models.path());
    void* none = nullptr;
    EXPECT_EQ(class_object(kStringDetectorCID, nsIFactory::GetIID(), &none),
              NS_ERROR_NOT_AVAILABLE);
  }
}

class Loading : public LoadedComponent {};

TEST_F(Loading, HundredLoadsUsesAndUnloadsLeaveNothing) {
  for (int i = 0; i < 100; ++i) {
    load();
    const nsCOMPtr<nsIFile> file = new LocalFile(ORVA_COMPONENT_LIBRARY, Faults());
    for (int twice = 0; twice < 2; ++twice) {
      ASSERT_EQ(module()->RegisterSelf(host_->components(), file, "", ""), NS_OK);
    }
    ASSERT_EQ(host_->data().components.size(), 2U);
    ASSERT_EQ(host_->data().values.size(), 2U);
    ASSERT_EQ(answer(whole(), kRussian), "KOI8-R");
    ASSERT_TRUE(can_unload());
    library_->close();
#ifndef __SANITIZE_ADDRESS__  // which keeps libraries mapped
    ASSERT_EQ(dlopen(ORVA_COMPONENT_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << i;
#endif
    library_.reset();
  }
}

TEST_F(Loading, EntryIsTheOneExportedSymbol) {
  ASSERT_EQ(
      system("nm -D --defined-only --format=just-symbols " ORVA_COMPONENT_LIBRARY " >/dev/null"),
      0);
  const Ended listed = run_to_end([] {
    exit(system("nm -D --defined-only --format=just-symbols " ORVA_COMPONENT_LIBRARY) == 0 ? 0 : 1);
  });
  EXPECT_EQ(listed.out, "NSGetModule\n");
}

}  // namespace
}  // namespace orva
