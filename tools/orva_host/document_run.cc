#include "tools/orva_host/document_run.h"

#include "platform/charset_detector.h"
#include "platform/com_ptr.h"
#include "tools/documents.h"
#include "tools/orva_host/counted.h"
#include "tools/orva_host/host_text.h"

namespace orva {
namespace {

constexpr char kDetectorName[] = "orva_charset_detector";

// Writes down what it is told.
class Observer : public Counted<nsICharsetDetectionObserver> {
 public:
  explicit Observer(DocumentRun* run) : run_(run) {}

  nsresult Notify(const char* charset, nsDetectionConfident /*level*/) override {
    run_->notifications.push_back({block, charset});
    run_->answered = true;
    run_->answer = charset;
    return NS_OK;
  }

  size_t block = 0;  // that is being fed, 0 for none

 private:
  DocumentRun* run_;
};

// Makes the detector `contract_base` + name.
template <class Interface>
bool create(nsIComponentManager* components, const char* contract_base,
            nsCOMPtr<Interface>* detector, std::string* error) {
  const std::string contract = std::string(contract_base) + kDetectorName;
  const nsresult rv = components->CreateInstanceByContractID(
      contract.c_str(), nullptr, Interface::GetIID(), getter_AddRefs(*detector));
  if (NS_SUCCEEDED(rv) && *detector != nullptr) return true;
  *error = "no detector " + contract + ": " + result_text(rv);
  return false;
}

}  // namespace

bool run_streaming(nsIComponentManager* components, const std::string& path, size_t block,
                   DocumentRun* run, std::string* error) {
  *run = {};
  nsCOMPtr<nsICharsetDetector> detector;
  if (!create(components, NS_CHARSET_DETECTOR_CONTRACTID_BASE, &detector, error)) return false;
  const nsCOMPtr<Observer> observer = new Observer(run);
  detector->Init(observer);
  nsresult rv = NS_OK;
  const bool read = read_document(
      path, block,
      [&](const char* bytes, size_t length) {
        observer->block = ++run->blocks;
        PRBool dont_feed_me = PR_FALSE;
        rv = detector->DoIt(bytes, static_cast<PRUint32>(length), &dont_feed_me);
        return NS_SUCCEEDED(rv) && dont_feed_me == PR_FALSE;
      },
      error);
  observer->block = 0;
  // Also after a failure: it is what gives the evaluator back.
  detector->Done();
  if (NS_FAILED(rv)) *error = result_text(rv);
  return read && NS_SUCCEEDED(rv);
}

bool run_string(nsIComponentManager* components, const std::string& path, DocumentRun* run,
                std::string* error) {
  *run = {};
  std::string text;
  const auto keep = [&](const char* bytes, size_t length) {
    text.assign(bytes, length);
    return true;
  };
  if (!read_document(path, 0, keep, error)) return false;
  nsCOMPtr<nsIStringCharsetDetector> detector;
  if (!create(components, NS_STRCDETECTOR_CONTRACTID_BASE, &detector, error)) return false;
  const char* charset = nullptr;
  nsDetectionConfident level = eNoAnswerYet;
  const nsresult rv =
      detector->DoIt(text.data(), static_cast<PRUint32>(text.size()), &charset, level);
  if (NS_FAILED(rv)) {
    *error = result_text(rv);
    return false;
  }
  run->blocks = 1;
  run->answered = charset != nullptr;
  if (charset != nullptr) run->answer = charset;
  return true;
}

}  // namespace orva
