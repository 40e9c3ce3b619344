// A path as an nsIFile, and the directory service that hands out the resource directory.
#ifndef ORVA_TOOLS_ORVA_HOST_LOCAL_FILE_H_
#define ORVA_TOOLS_ORVA_HOST_LOCAL_FILE_H_

#include <string>
#include <utility>

#include "platform/directory.h"
#include "tools/orva_host/counted.h"
#include "tools/orva_host/faults.h"
#include "tools/orva_host/unimplemented.h"

namespace orva {

// Append, GetPath and Clone.
class LocalFile : public Counted<nsIFile, UnimplementedFile> {
 public:
  LocalFile(std::string path, const Faults& faults) : path_(std::move(path)), faults_(faults) {}

  nsresult Append(const char* node) override;
  nsresult GetPath(char** path) override;
  nsresult Clone(nsIFile** copy) override;

 private:
  std::string path_;
  Faults faults_;
};

// Knows one place, NS_APP_RES_DIR, and hands out a fresh file each time.
class DirectoryService : public nsIDirectoryService, public nsIProperties {
 public:
  DirectoryService(std::string resources, const Faults& faults)
      : resources_(std::move(resources)), faults_(faults) {}

  nsresult QueryInterface(const nsIID& iid, void** result) override;
  nsrefcnt AddRef() override { return ++references_; }
  nsrefcnt Release() override;

  nsresult Init() override { return NS_OK; }
  nsresult RegisterProvider(nsIDirectoryServiceProvider* /*provider*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult UnregisterProvider(nsIDirectoryServiceProvider* /*provider*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }

  nsresult Define(const char* /*prop*/, nsISupports* /*value*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Undefine(const char* /*prop*/) override { return NS_ERROR_NOT_IMPLEMENTED; }
  nsresult Get(const char* prop, const nsIID& iid, void** result) override;
  nsresult Set(const char* /*prop*/, nsISupports* /*value*/) override {
    return NS_ERROR_NOT_IMPLEMENTED;
  }
  nsresult Has(const char* prop, PRBool* result) override;

 private:
  virtual ~DirectoryService() = default;

  nsrefcnt references_ = 0;
  std::string resources_;
  Faults faults_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_LOCAL_FILE_H_
