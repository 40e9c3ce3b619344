// The built component, loaded as a host loads it.
#ifndef ORVA_TESTS_HOST_LOADED_COMPONENT_H_
#define ORVA_TESTS_HOST_LOADED_COMPONENT_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/component_ids.h"
#include "platform/charset_detector.h"
#include "tools/orva_host/component_library.h"
#include "tools/orva_host/counted.h"
#include "tools/orva_host/small_host.h"

namespace orva {

// A Cyrillic sentence in KOI8-R, certain after its first words.
inline constexpr char kRussian[] =
    "\xF7\xD3\xC5 \xCC\xC0\xC4\xC9 \xD2\xCF\xD6\xC4\xC1\xC0\xD4\xD3\xD1 "
    "\xD3\xD7\xCF\xC2\xCF\xC4\xCE\xD9\xCD\xC9, \xC9 \xCB\xC1\xD6\xC4\xD9\xCA \xC9\xDA "
    "\xCE\xC9\xC8 \xCD\xCF\xD6\xC5\xD4 \xD7\xD9\xC2\xC9\xD2\xC1\xD4\xD8, \xCB\xD5\xC4\xC1 "
    "\xC9\xC4\xD4\xC9 \xD3\xC5\xC7\xCF\xC4\xCE\xD1 \xC9 \xDA\xC1\xD7\xD4\xD2\xC1.\n";

// Writes down what it is told.
class Observer : public Counted<nsICharsetDetectionObserver> {
 public:
  nsresult Notify(const char* charset, nsDetectionConfident level) override {
    told.emplace_back(charset);
    levels.push_back(level);
    return NS_OK;
  }
  using Counted::references;

  std::vector<std::string> told;
  std::vector<nsDetectionConfident> levels;
};

class LoadedComponent : public testing::Test {
 protected:
  ~LoadedComponent() override {
    if (library_ == nullptr || module() == nullptr) return;
    // A library that stays mapped keeps its lock; the next test begins without.
    if (const nsCOMPtr<nsICharsetDetector> detector = streaming()) detector->Done();
    library_.reset();
  }

  // A host with these models, and the library in it.
  void load(const std::string& models = ORVA_SOURCE_DIR "/tests/host/models",
            const Faults& faults = {}) {
    library_.reset();
    host_.reset();
    host_ = std::make_unique<SmallHost>(models, faults);
    library_ = std::make_unique<ComponentLibrary>();
    ASSERT_EQ(library_->open(ORVA_COMPONENT_LIBRARY, host_->components(), nullptr), NS_OK)
        << library_->error();
  }

  nsIModule* module() const { return library_->module(); }
  nsresult class_object(const nsCID& id, const nsIID& iid, void** result) const {
    return module()->GetClassObject(host_->components(), id, iid, result);
  }
  nsCOMPtr<nsIFactory> factory(const nsCID& id) const {
    nsCOMPtr<nsIFactory> made;
    class_object(id, nsIFactory::GetIID(), getter_AddRefs(made));
    return made;
  }
  template <class Interface>
  nsCOMPtr<Interface> create(const nsCID& id) const {
    nsCOMPtr<Interface> made;
    if (const nsCOMPtr<nsIFactory> maker = factory(id)) {
      maker->CreateInstance(nullptr, Interface::GetIID(), getter_AddRefs(made));
    }
    return made;
  }
  nsCOMPtr<nsICharsetDetector> streaming() const {
    return create<nsICharsetDetector>(kStreamingDetectorCID);
  }
  nsCOMPtr<nsIStringCharsetDetector> whole() const {
    return create<nsIStringCharsetDetector>(kStringDetectorCID);
  }
  bool can_unload() const { return library_->can_unload(host_->components()); }

  // One block; whether the detector asked for no more.
  static bool feed(nsICharsetDetector* detector, const std::string& block) {
    PRBool dont_feed_me = PR_TRUE;
    EXPECT_EQ(detector->DoIt(block.data(), static_cast<PRUint32>(block.size()), &dont_feed_me),
              NS_OK);
    return dont_feed_me != PR_FALSE;
  }
  // The string detector's answer, "-" for none.
  static std::string answer(nsIStringCharsetDetector* detector, const std::string& text) {
    const char* charset = "untouched";
    nsDetectionConfident level = eNoAnswerYet;
    EXPECT_EQ(detector->DoIt(text.data(), static_cast<PRUint32>(text.size()), &charset, level),
              NS_OK);
    EXPECT_EQ(level, eBestAnswer);
    return charset != nullptr ? charset : "-";
  }

  std::unique_ptr<SmallHost> host_;
  std::unique_ptr<ComponentLibrary> library_;
};

}  // namespace orva

#endif  // ORVA_TESTS_HOST_LOADED_COMPONENT_H_
