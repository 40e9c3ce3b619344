// The places of methods in virtual tables are the contract between host and component: here the
// tables are called by slot number through a raw pointer.
#include <gtest/gtest.h>

#include "tests/host/numbered_interfaces.h"
#include "tests/host/raw_slots.h"
#include "tools/orva_host/host_text.h"

namespace orva {
namespace {

// Calls every slot with zeros, which no numbered method looks at.
template <class Interface>
void expect_slots_in_order() {
  Interface numbered;
  for (int slot = 0; slot < Interface::kSlots; ++slot) {
    void* null = nullptr;
    const nsresult answer =
        call_slot<nsresult>(&numbered, slot, null, null, null, null, null, null, null, null);
    EXPECT_EQ(answer, static_cast<nsresult>(slot));
  }
}

TEST(Slots, FactoryMethodsStandInTheirPlaces) { expect_slots_in_order<NumberedFactory>(); }
TEST(Slots, ModuleMethodsStandInTheirPlaces) { expect_slots_in_order<NumberedModule>(); }
TEST(Slots, ComponentManagerMethodsStandInTheirPlaces) {
  expect_slots_in_order<NumberedComponentManager>();
  EXPECT_EQ(NumberedComponentManager::kSlots, 26);
}
TEST(Slots, ServiceManagerMethodsStandInTheirPlaces) {
  expect_slots_in_order<NumberedServiceManager>();
  expect_slots_in_order<NumberedShutdownListener>();
}
TEST(Slots, DirectoryServiceMethodsStandInTheirPlaces) {
  expect_slots_in_order<NumberedDirectoryService>();
  expect_slots_in_order<NumberedDirectoryServiceProvider>();
  expect_slots_in_order<NumberedProperties>();
}
TEST(Slots, FileMethodsStandInTheirPlaces) {
  expect_slots_in_order<NumberedFile>();
  EXPECT_EQ(NumberedFile::kSlots, 49);
}
TEST(Slots, RegistryMethodsStandInTheirPlaces) {
  expect_slots_in_order<NumberedRegistry>();
  EXPECT_EQ(NumberedRegistry::kSlots, 37);
}
TEST(Slots, DetectorMethodsStandInTheirPlaces) {
  expect_slots_in_order<NumberedCharsetDetector>();
  expect_slots_in_order<NumberedStringCharsetDetector>();
  expect_slots_in_order<NumberedCharsetDetectionObserver>();
}

TEST(Slots, InterfacesHaveTheirIdentifiers) {
  EXPECT_EQ(id_text(nsISupports::GetIID()), "{00000000-0000-0000-c000-000000000046}");
  EXPECT_EQ(id_text(nsIFactory::GetIID()), "{00000001-0000-0000-c000-000000000046}");
  EXPECT_EQ(id_text(nsIModule::GetIID()), "{7392d032-5371-11d3-994e-00805fd26fee}");
  EXPECT_EQ(id_text(nsIComponentManager::GetIID()), "{8458a740-d5dc-11d2-92fb-00e09805570f}");
  EXPECT_EQ(id_text(nsIShutdownListener::GetIID()), "{56decae0-3406-11d2-8163-006008119d7a}");
  EXPECT_EQ(id_text(nsIServiceManager::GetIID()), "{cf0df3b0-3401-11d2-8163-006008119d7a}");
  EXPECT_EQ(id_text(nsIDirectoryService::GetIID()), "{57a66a60-d43a-11d3-8cc2-00609792278c}");
  EXPECT_EQ(id_text(nsIDirectoryServiceProvider::GetIID()),
            "{bbf8cab0-d43a-11d3-8cc2-00609792278c}");
  EXPECT_EQ(id_text(nsIProperties::GetIID()), "{61c1b3c0-b1bf-11d3-93b6-00104ba0fd40}");
  EXPECT_EQ(id_text(nsIFile::GetIID()), "{c8c0a080-0868-11d3-915f-d9d889d48e3c}");
  EXPECT_EQ(id_text(nsIRegistry::GetIID()), "{5d41a440-8e37-11d2-8059-00600811a9c3}");
  EXPECT_EQ(id_text(nsICharsetDetector::GetIID()), "{12bb8f14-2389-11d3-b3bf-00805f8a6670}");
  EXPECT_EQ(id_text(nsIStringCharsetDetector::GetIID()), "{12bb8f15-2389-11d3-b3bf-00805f8a6670}");
  EXPECT_EQ(id_text(nsICharsetDetectionObserver::GetIID()),
            "{12bb8f12-2389-11d3-b3bf-00805f8a6670}");
  EXPECT_EQ(id_text(NS_DIRECTORY_SERVICE_CID), "{f00152d0-b40b-11d3-8c9c-000064657374}");
  EXPECT_EQ(id_text(NS_REGISTRY_CID), "{be761f00-a3b0-11d2-996c-0080c7cb1081}");
}

TEST(Slots, ResultCodesAndLevelsHaveTheirValues) {
  EXPECT_EQ(NS_NOINTERFACE, 0x80004002U);
  EXPECT_EQ(NS_ERROR_NULL_POINTER, 0x80004003U);
  EXPECT_EQ(NS_ERROR_FAILURE, 0x80004005U);
  EXPECT_EQ(NS_ERROR_OUT_OF_MEMORY, 0x8007000EU);
  EXPECT_EQ(NS_ERROR_INVALID_ARG, 0x80070057U);
  EXPECT_EQ(NS_ERROR_NO_AGGREGATION, 0x80040110U);
  EXPECT_EQ(NS_ERROR_NOT_AVAILABLE, 0x80040111U);
  EXPECT_EQ(NS_ERROR_FACTORY_NOT_REGISTERED, 0x80040154U);
  EXPECT_TRUE(NS_SUCCEEDED(1));
  EXPECT_TRUE(NS_FAILED(NS_ERROR_FAILURE));
  EXPECT_EQ(static_cast<int>(eBestAnswer), 1);
  EXPECT_EQ(sizeof(nsDetectionConfident), 4U);
}

}  // namespace
}  // namespace orva
