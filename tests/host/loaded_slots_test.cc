// The loaded component's virtual tables and fields, met as raw memory: a host compiled elsewhere
// knows nothing else.
#include <prmem.h>

#include <cstring>

#include "tests/host/loaded_component.h"
#include "tests/host/raw_slots.h"

namespace orva {
namespace {

// Slots of the core's table; the destructor takes the first two.
enum CoreSlot { kHandleData = 2, kDataEnd = 3, kReport = 4, kExtractText = 5 };

class LoadedSlots : public LoadedComponent {
 protected:
  void SetUp() override { load(); }

  // The core stands before the interface: its table, then four integers.
  static void* core_of(nsISupports* interface) {
    return reinterpret_cast<char*>(interface) - sizeof(int[4]) - sizeof(void*);
  }
  template <class Field>
  static Field field(const void* object, size_t offset) {
    Field value;
    memcpy(&value, static_cast<const char*>(object) + offset, sizeof value);
    return value;
  }
  struct CoreFields {
    int active, done, in_markup, best_model;
  };
  static CoreFields core_fields(nsISupports* interface) {
    return field<CoreFields>(core_of(interface), sizeof(void*));
  }

  static std::string extract(nsISupports* interface, const std::string& text) {
    char* out = nullptr;
    unsigned int length = 99;
    EXPECT_EQ((call_slot<nsresult>(core_of(interface), kExtractText, text.data(),
                                   static_cast<unsigned int>(text.size()), &out, &length)),
              NS_OK);
    std::string kept(out, length);
    PR_Free(out);
    return kept;
  }
};

TEST_F(LoadedSlots, ModuleTable) {
  void* module = this->module();
  const nsIID iid = nsIModule::GetIID();
  void* same = nullptr;
  EXPECT_EQ((call_slot<nsresult>(module, 0, &iid, &same)), NS_OK);
  EXPECT_EQ(same, module);
  EXPECT_EQ(call_slot<nsrefcnt>(module, 1), 3U);
  EXPECT_EQ(call_slot<nsrefcnt>(module, 2), 2U);
  EXPECT_EQ(call_slot<nsrefcnt>(module, 2), 1U);
  EXPECT_EQ(field<nsrefcnt>(module, sizeof(void*)), 1U);
  EXPECT_EQ(field<int>(module, sizeof(void*) + 4), 0) << "not initialised before the first use";

  void* null = nullptr;
  void* factory = nullptr;
  const nsCID id = kStringDetectorCID;
  const nsIID wanted = nsIFactory::GetIID();
  EXPECT_EQ((call_slot<nsresult>(module, 3, null, &id, &wanted, &factory)), NS_OK);
  EXPECT_EQ(field<int>(module, sizeof(void*) + 4), 1);
  EXPECT_EQ((call_slot<nsresult>(module, 4, null, null, null, null)), NS_OK);
  EXPECT_EQ(host_->data().values.size(), 2U);
  EXPECT_EQ((call_slot<nsresult>(module, 5, null, null, null)), NS_OK);
  PRBool ok = 7;
  EXPECT_EQ((call_slot<nsresult>(module, 6, null, &ok)), NS_OK);
  EXPECT_EQ(ok, PR_FALSE);
  EXPECT_EQ(call_slot<nsrefcnt>(factory, 2), 0U);
}

TEST_F(LoadedSlots, FactoryTable) {
  const nsCOMPtr<nsIFactory> owner = factory(kStreamingDetectorCID);
  void* factory = owner.get();
  EXPECT_EQ(field<nsrefcnt>(factory, sizeof(void*)), 1U);
  EXPECT_TRUE(field<nsCID>(factory, sizeof(void*) + 4).Equals(kStreamingDetectorCID));
  void* null = nullptr;
  void* detector = nullptr;
  const nsIID iid = nsICharsetDetector::GetIID();
  EXPECT_EQ((call_slot<nsresult>(factory, 3, null, &iid, &detector)), NS_OK);
  EXPECT_EQ((call_slot<nsresult>(factory, 4, PR_TRUE)), NS_OK);
  EXPECT_EQ((call_slot<nsresult>(factory, 4, PR_FALSE)), NS_OK);
  EXPECT_EQ((call_slot<nsresult>(detector, 5)), NS_OK);
  EXPECT_EQ(call_slot<nsrefcnt>(detector, 2), 0U);
}

TEST_F(LoadedSlots, StreamingTable) {
  const nsCOMPtr<nsICharsetDetector> owner = streaming();
  const nsCOMPtr<Observer> observer = new Observer;
  void* detector = owner.get();
  void* told = static_cast<nsICharsetDetectionObserver*>(observer.get());
  const nsIID iid = nsISupports::GetIID();
  void* same = nullptr;
  EXPECT_EQ((call_slot<nsresult>(detector, 0, &iid, &same)), NS_OK);
  EXPECT_EQ(same, detector);
  EXPECT_EQ(call_slot<nsrefcnt>(detector, 2), 1U);
  EXPECT_EQ((call_slot<nsresult>(detector, 3, told)), NS_OK);
  PRBool dont_feed_me = PR_TRUE;
  EXPECT_EQ((call_slot<nsresult>(detector, 4, &kRussian[0],
                                 static_cast<PRUint32>(sizeof kRussian - 1), &dont_feed_me)),
            NS_OK);
  EXPECT_EQ(dont_feed_me, PR_FALSE);
  EXPECT_EQ((call_slot<nsresult>(detector, 5)), NS_OK);
  EXPECT_EQ(observer->told.size(), 2U);
}

TEST_F(LoadedSlots, StringTable) {
  const nsCOMPtr<nsIStringCharsetDetector> owner = whole();
  void* detector = owner.get();
  const char* charset = nullptr;
  nsDetectionConfident level = eNoAnswerYet;
  EXPECT_EQ((call_slot<nsresult>(detector, 3, &kRussian[0],
                                 static_cast<PRUint32>(sizeof kRussian - 1), &charset, &level)),
            NS_OK);
  EXPECT_STREQ(charset, "KOI8-R");
  EXPECT_EQ(level, eBestAnswer);
  EXPECT_EQ(field<nsrefcnt>(detector, sizeof(void*)), 1U);
  EXPECT_EQ(field<const char*>(detector, 2 * sizeof(void*)), charset);
}

TEST_F(LoadedSlots, StreamingFieldsFollowTheirOrder) {
  const nsCOMPtr<nsICharsetDetector> detector = streaming();
  const nsCOMPtr<nsICharsetDetector> inactive = streaming();
  const nsCOMPtr<Observer> observer = new Observer;
  CoreFields fields = core_fields(detector);
  EXPECT_EQ(fields.active, 1);
  EXPECT_EQ(fields.done, 0);
  EXPECT_EQ(fields.in_markup, 0);
  EXPECT_EQ(fields.best_model, -1);
  EXPECT_EQ(core_fields(inactive).active, 0);
  EXPECT_EQ(field<void*>(detector.get(), 2 * sizeof(void*)), nullptr);
  detector->Init(observer);
  feed(detector, std::string(kRussian) + "<a");
  fields = core_fields(detector);
  EXPECT_EQ(fields.done, 1);
  EXPECT_EQ(fields.in_markup, 1);
  EXPECT_GE(fields.best_model, 0);
  EXPECT_EQ(field<nsrefcnt>(detector.get(), sizeof(void*)), 1U);
  EXPECT_EQ(field<nsICharsetDetectionObserver*>(detector.get(), 2 * sizeof(void*)), observer.get());
}

TEST_F(LoadedSlots, CoreTable) {
  const nsCOMPtr<nsICharsetDetector> detector = streaming();
  const nsCOMPtr<Observer> observer = new Observer;
  void* core = core_of(detector);
  call_slot<void>(core, kReport, "before");
  detector->Init(observer);
  call_slot<void>(core, kReport, "made up");
  EXPECT_EQ(observer->told, std::vector<std::string>({"made up"}));
  call_slot<void>(core, kHandleData, &kRussian[0], static_cast<unsigned int>(sizeof kRussian - 1));
  EXPECT_EQ(core_fields(detector).done, 1);
  call_slot<void>(core, kDataEnd);
  EXPECT_EQ(observer->told, std::vector<std::string>({"made up", "KOI8-R"}));
}

TEST_F(LoadedSlots, ExtractionDropsTagsAndRunsOfWhiteSpace) {
  const nsCOMPtr<nsIStringCharsetDetector> detector = whole();
  EXPECT_EQ(extract(detector, "<p>word</p>"), "word");
  EXPECT_EQ(extract(detector, "a  \t b"), "a b");
  EXPECT_EQ(extract(detector, "a\n\r b"), "a\nb");
  EXPECT_EQ(extract(detector, "one > two"), "one > two");
  EXPECT_EQ(extract(detector, ""), "");
  EXPECT_EQ(extract(detector, std::string("\0\xFF", 2)), std::string("\0\xFF", 2));
}

TEST_F(LoadedSlots, ExtractionKeepsAnOpenTagButNotAWhiteSpaceRunAcrossCalls) {
  const nsCOMPtr<nsIStringCharsetDetector> detector = whole();
  EXPECT_EQ(extract(detector, "kept<b attr"), "kept");
  EXPECT_EQ(extract(detector, "ibute < 'x'>text "), "text ");
  EXPECT_EQ(extract(detector, " more"), " more");
}

}  // namespace
}  // namespace orva
