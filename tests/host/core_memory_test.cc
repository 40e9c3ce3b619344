// Objects that cannot be allocated, through the entry and the factory.
#include "host/component_ids.h"
#include "host/counters.h"
#include "host/factory.h"
#include "platform/charset_detector.h"
#include "tests/host/core_fixture.h"

extern "C" nsresult NSGetModule(nsIComponentManager* aCompMgr, nsIFile* aLocation,
                                nsIModule** aModule);

namespace orva {
namespace {

class CoreMemory : public CoreTest {
 protected:
  void SetUp() override { load(); }
};

TEST_F(CoreMemory, EntryWithoutMemoryGivesNoModule) {
  nsIModule* module = nullptr;
  g_nothrow_memory_fails = true;
  EXPECT_EQ(NSGetModule(nullptr, nullptr, &module), NS_ERROR_OUT_OF_MEMORY);
  EXPECT_EQ(module, nullptr);
}

TEST_F(CoreMemory, ClassObjectWithoutMemoryGivesNoFactory) {
  nsCOMPtr<nsIModule> module;
  ASSERT_EQ(NSGetModule(nullptr, nullptr, getter_AddRefs(module)), NS_OK);
  void* factory = nullptr;
  g_nothrow_memory_fails = true;
  EXPECT_EQ(module->GetClassObject(nullptr, kStringDetectorCID, nsIFactory::GetIID(), &factory),
            NS_ERROR_OUT_OF_MEMORY);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(g_InstanceCount, 0);
}

TEST_F(CoreMemory, InstanceWithoutMemoryIsNotMade) {
  const nsCOMPtr<nsIFactory> factory = NEW_ORVADETECTOR_FACTORY(kStreamingDetectorCID);
  void* detector = nullptr;
  g_nothrow_memory_fails = true;
  EXPECT_EQ(factory->CreateInstance(nullptr, nsICharsetDetector::GetIID(), &detector),
            NS_ERROR_OUT_OF_MEMORY);
  EXPECT_EQ(detector, nullptr);
  EXPECT_EQ(g_InstanceCount, 1);
}

TEST_F(CoreMemory, FactoryOfAnUnknownClassAnswersOutOfMemory) {
  const nsCOMPtr<nsIFactory> factory = NEW_ORVADETECTOR_FACTORY(nsISupports::GetIID());
  void* made = &made;
  EXPECT_EQ(factory->CreateInstance(nullptr, nsISupports::GetIID(), &made), NS_ERROR_OUT_OF_MEMORY);
  EXPECT_EQ(made, nullptr);
}

TEST_F(CoreMemory, CountersFollowObjectsAndLocks) {
  EXPECT_EQ(g_InstanceCount, 0);
  {
    const nsCOMPtr<nsIFactory> factory = NEW_ORVADETECTOR_FACTORY(kStringDetectorCID);
    EXPECT_EQ(g_InstanceCount, 1);
    nsCOMPtr<nsISupports> detector;
    factory->CreateInstance(nullptr, nsISupports::GetIID(), getter_AddRefs(detector));
    EXPECT_EQ(g_InstanceCount, 2);
    detector = static_cast<nsISupports*>(nullptr);
    EXPECT_EQ(g_InstanceCount, 1);
    factory->LockFactory(PR_TRUE);
    EXPECT_EQ(g_LockCount, 1);
    factory->LockFactory(PR_FALSE);
  }
  EXPECT_EQ(g_InstanceCount, 0);
  EXPECT_EQ(g_LockCount, 0);
}

TEST_F(CoreMemory, EntryWithoutAPlaceForTheModuleReleasesTheModels) {
  EXPECT_EQ(NSGetModule(nullptr, nullptr, nullptr), NS_ERROR_NULL_POINTER);
  EXPECT_EQ(g_library.disposals, 1);
}

}  // namespace
}  // namespace orva
