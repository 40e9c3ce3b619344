// Registration with the component manager and in the registry.
#include <gtest/gtest.h>

#include "platform/service_manager.h"
#include "tests/host/loaded_component.h"
#include "tools/orva_host/host_text.h"
#include "tools/orva_host/local_file.h"
#include "tools/orva_host/registry.h"

namespace orva {
namespace {

using Strings = std::vector<std::string>;

// Writes down what it is asked to register.
class Manager : public Counted<nsIComponentManager, UnimplementedComponentManager> {
 public:
  nsresult RegisterComponentSpec(const nsCID& id, const char* description, const char* contract,
                                 nsIFile* library, PRBool replace, PRBool persist) override {
    calls.push_back("register " + id_text(id) + " " + description + " " + contract + " " +
                    path_text(library) + (replace ? " replace" : "") + (persist ? " persist" : ""));
    return result;
  }
  nsresult UnregisterComponentSpec(const nsCID& id, nsIFile* library) override {
    calls.push_back("unregister " + id_text(id) + " " + path_text(library));
    return result;
  }

  nsresult result = NS_OK;
  Strings calls;
};

// Writes down what is done with it; the step named `failing` fails.
class RecordingRegistry : public Counted<nsIRegistry, UnimplementedRegistry> {
 public:
  nsresult OpenWellKnownRegistry(nsWellKnownRegistry id) override {
    return step("open", "open " + std::to_string(id));
  }
  nsresult AddSubtree(nsRegistryKey base, const char* path, nsRegistryKey* key) override {
    *key = 77;
    return step("subtree", "subtree " + std::to_string(base) + " " + path);
  }
  nsresult SetStringUTF8(nsRegistryKey key, const char* name, const char* value) override {
    return step(name, "set " + std::to_string(key) + " " + name + " " + value);
  }
  using Counted::references;

  std::string failing;
  Strings steps;

 private:
  nsresult step(const std::string& name, const std::string& text) {
    steps.push_back(text);
    return name == failing ? NS_ERROR_UNEXPECTED : NS_OK;
  }
};

const Strings kAllSteps = {
    "open 1", "subtree 2 software/netscape/intl/charsetdetector/orva_charset_detector",
    "set 77 type orva_charset_detector", "set 77 defaultEnglishText OrvaDetector"};
const std::string kFirstEntry =
    "register {f4cc0540-284c-11d4-84ae-003a06000000} Orva Charset Detector "
    "@mozilla.org/intl/charsetdetect;1?type=orva_charset_detector /lib/c.so replace persist";
const std::string kSecondEntry =
    "register {17beda80-29bf-11d4-84af-fef0f0000000} Orva String Charset Detector "
    "@mozilla.org/intl/stringcharsetdetect;1?type=orva_charset_detector /lib/c.so replace persist";

class Registration : public LoadedComponent {
 protected:
  void SetUp() override {
    Faults faults;
    faults.registry_service = true;
    load(ORVA_SOURCE_DIR "/tests/host/models", faults);
    nsServiceManager::RegisterService(NS_REGISTRY_CONTRACTID, registry_);
  }
  nsresult add() { return module()->RegisterSelf(manager_, file_, "rel:c.so", "type"); }

  nsCOMPtr<Manager> manager_ = new Manager;
  nsCOMPtr<RecordingRegistry> registry_ = new RecordingRegistry;
  nsCOMPtr<nsIFile> file_ = new LocalFile("/lib/c.so", Faults());
};

TEST_F(Registration, RegistersBothDetectorsAndWritesBothValues) {
  EXPECT_EQ(add(), NS_OK);
  EXPECT_EQ(manager_->calls, Strings({kFirstEntry, kSecondEntry}));
  EXPECT_EQ(registry_->steps, kAllSteps);
}

TEST_F(Registration, FirstFailureStopsRegisteringButNotTheRegistry) {
  manager_->result = NS_ERROR_OUT_OF_MEMORY;
  EXPECT_EQ(add(), NS_OK);
  EXPECT_EQ(manager_->calls, Strings({kFirstEntry}));
  EXPECT_EQ(registry_->steps, kAllSteps);
}

TEST_F(Registration, WithoutAManagerTheRegistryIsWrittenAllTheSame) {
  EXPECT_EQ(module()->RegisterSelf(nullptr, file_, "", ""), NS_OK);
  EXPECT_EQ(registry_->steps, kAllSteps);
  EXPECT_EQ(module()->UnregisterSelf(nullptr, file_, ""), NS_OK);
}

TEST_F(Registration, MissingRegistryServiceIsTheResult) {
  nsServiceManager::UnregisterService(NS_REGISTRY_CONTRACTID);
  EXPECT_EQ(add(), NS_ERROR_FACTORY_NOT_REGISTERED);
  EXPECT_EQ(manager_->calls.size(), 2U);
}

TEST_F(Registration, ResultIsThatOfTheLastRegistryStep) {
  struct Case {
    const char* failing;
    nsresult result;
    size_t nb_steps;
  };
  for (const Case& c :
       {Case{"open", NS_ERROR_UNEXPECTED, 1}, Case{"subtree", NS_ERROR_UNEXPECTED, 2},
        Case{"type", NS_OK, 4}, Case{"defaultEnglishText", NS_ERROR_UNEXPECTED, 4}}) {
    registry_->failing = c.failing;
    registry_->steps.clear();
    EXPECT_EQ(add(), c.result) << c.failing;
    EXPECT_EQ(registry_->steps,
              Strings(kAllSteps.begin(), kAllSteps.begin() + static_cast<long>(c.nb_steps)));
    // Ours and the service manager's.
    EXPECT_EQ(registry_->references(), 2U) << c.failing;
  }
}

TEST_F(Registration, UnregisteringTriesBothAndLeavesTheRegistry) {
  manager_->result = NS_ERROR_FAILURE;
  EXPECT_EQ(module()->UnregisterSelf(manager_, file_, "rel:c.so"), NS_OK);
  EXPECT_EQ(manager_->calls,
            Strings({"unregister {f4cc0540-284c-11d4-84ae-003a06000000} /lib/c.so",
                     "unregister {17beda80-29bf-11d4-84af-fef0f0000000} /lib/c.so"}));
  EXPECT_TRUE(registry_->steps.empty());
}

}  // namespace
}  // namespace orva
