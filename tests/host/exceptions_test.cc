// An exception that is thrown below a method stays there: the host gets the result code for want of
// memory, and the component goes on.
#include "host/component_ids.h"
#include "host/counters.h"
#include "host/factory.h"
#include "platform/charset_detector.h"
#include "tests/host/core_fixture.h"

extern "C" nsresult NSGetModule(nsIComponentManager* aCompMgr, nsIFile* aLocation,
                                nsIModule** aModule);

namespace orva {
namespace {

// An observer without memory for what it is told.
class FullObserver : public nsICharsetDetectionObserver {
 public:
  nsresult QueryInterface(const nsIID& /*aIID*/, void** /*aInstancePtr*/) override {
    return NS_NOINTERFACE;
  }
  nsrefcnt AddRef() override { return 2; }
  nsrefcnt Release() override { return 1; }
  nsresult Notify(const char* /*aCharset*/, nsDetectionConfident /*aConf*/) override {
    throw std::bad_alloc();
  }
};

class Exceptions : public CoreTest {
 protected:
  static void make(const nsCID& class_id, const nsIID& interface, void** made) {
    const nsCOMPtr<nsIFactory> factory = NEW_ORVADETECTOR_FACTORY(class_id);
    ASSERT_EQ(factory->CreateInstance(nullptr, interface, made), NS_OK);
  }
  static nsCOMPtr<nsICharsetDetector> streaming() {
    nsCOMPtr<nsICharsetDetector> detector;
    make(kStreamingDetectorCID, nsICharsetDetector::GetIID(), getter_AddRefs(detector));
    return detector;
  }

  static constexpr char kText[] = "some text";
  static constexpr PRUint32 kLength = sizeof kText - 1;
};

TEST_F(Exceptions, AClassObjectIsNotHadWhenTheModelsThrow) {
  start_host();
  write_names(names_of({"first"}));
  nsCOMPtr<nsIModule> module;
  ASSERT_EQ(NSGetModule(nullptr, nullptr, getter_AddRefs(module)), NS_OK);
  g_library.throws_in = "pemb_init";
  void* factory = nullptr;
  EXPECT_EQ(module->GetClassObject(nullptr, kStringDetectorCID, nsIFactory::GetIID(), &factory),
            NS_ERROR_OUT_OF_MEMORY);
  EXPECT_EQ(factory, nullptr);
}

TEST_F(Exceptions, AnInstanceIsNotMadeWhenTheEvaluatorThrows) {
  load();
  for (const nsCID& class_id : {kStringDetectorCID, kStreamingDetectorCID}) {
    const nsCOMPtr<nsIFactory> factory = NEW_ORVADETECTOR_FACTORY(class_id);
    const PRInt32 before = g_InstanceCount;
    g_library.throws_in = "pemb_load";
    void* made = &made;
    EXPECT_EQ(factory->CreateInstance(nullptr, nsISupports::GetIID(), &made),
              NS_ERROR_OUT_OF_MEMORY);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(g_InstanceCount, before);
    EXPECT_EQ(Core::mLock, 0);
  }
}

TEST_F(Exceptions, ABlockThatThrowsIsAResultCode) {
  load();
  for (const char* function : {"pemb_nexts", "pemb_get_scores"}) {
    Core::mLock = 0;
    g_library.throws_in = "";
    const nsCOMPtr<nsICharsetDetector> detector = streaming();
    g_library.throws_in = function;
    PRBool stop = PR_TRUE;
    EXPECT_EQ(detector->DoIt(kText, kLength, &stop), NS_ERROR_OUT_OF_MEMORY) << function;
    EXPECT_EQ(stop, PR_FALSE);
    g_library.throws_in = "";
    EXPECT_EQ(detector->DoIt(kText, kLength, &stop), NS_OK);
    EXPECT_EQ(detector->Done(), NS_OK);
  }
}

TEST_F(Exceptions, AStringThatThrowsIsAResultCodeAndGivesTheEvaluatorBack) {
  load();
  for (const char* function : {"pemb_nexts", "pemb_get_scores"}) {
    g_library.throws_in = "";
    nsCOMPtr<nsIStringCharsetDetector> detector;
    make(kStringDetectorCID, nsIStringCharsetDetector::GetIID(), getter_AddRefs(detector));
    g_library.throws_in = function;
    const char* charset = "before";
    nsDetectionConfident confidence = eSureAnswer;
    EXPECT_EQ(detector->DoIt(kText, kLength, &charset, confidence), NS_ERROR_OUT_OF_MEMORY);
    EXPECT_EQ(charset, nullptr);
    EXPECT_EQ(Core::mLock, 0) << function;
  }
}

TEST_F(Exceptions, AnObserverThatThrowsDoesNotKeepTheEvaluator) {
  load();
  let_win(0, 0.5F);
  FullObserver observer;
  const nsCOMPtr<nsICharsetDetector> detector = streaming();
  ASSERT_EQ(detector->Init(&observer), NS_OK);
  PRBool stop = PR_FALSE;
  ASSERT_EQ(detector->DoIt(kText, kLength, &stop), NS_OK);
  EXPECT_EQ(detector->Done(), NS_ERROR_OUT_OF_MEMORY);
  EXPECT_EQ(Core::mLock, 0);
}

TEST_F(Exceptions, UnloadingSurvivesALibraryThatThrows) {
  load();
  {
    nsCOMPtr<nsIModule> module;
    ASSERT_EQ(NSGetModule(nullptr, nullptr, getter_AddRefs(module)), NS_OK);
    g_library.throws_in = "pemb_dispose";
  }
  EXPECT_EQ(g_library.disposals, 1);
  g_library.throws_in = "";
}

}  // namespace
}  // namespace orva
