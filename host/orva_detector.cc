#include "host/orva_detector.h"

#include <prmem.h>

#include <memory>
#include <new>

#include "host/no_exceptions.h"
#include "lib/api/detection_run.h"
#include "lib/api/markup.h"
#include "lib/api/model_names.h"
#include "platform/directory.h"
#include "platform/file.h"
#include "platform/service_manager.h"

PembHandle* nsOrvaDetector::mGroupModel = nullptr;
int nsOrvaDetector::mLock = 0;
nsCString* nsOrvaDetector::mModelEncoding = nullptr;
int nsOrvaDetector::mModelNum = 0;

namespace orva {
namespace {

constexpr char kNamesFile[] = "Model.stc";
constexpr char kGroupFile[] = "Model.grp";
constexpr PRIntn kAccessMode = 0666;

// A path from the host's allocator.
class HostPath {
 public:
  HostPath() = default;
  HostPath(const HostPath&) = delete;
  HostPath& operator=(const HostPath&) = delete;
  ~HostPath() { PR_Free(text_); }

  char** out() { return &text_; }
  const char* get() const { return text_; }

 private:
  char* text_ = nullptr;
};

// Path of `leaf` in the host's resource directory.
nsresult resource_path(nsIProperties* directory_service, const char* leaf, HostPath* path) {
  nsCOMPtr<nsIFile> file;
  const nsresult rv =
      directory_service->Get(NS_APP_RES_DIR, nsIFile::GetIID(), getter_AddRefs(file));
  if (NS_FAILED(rv)) return rv;
  if (file == nullptr) return NS_ERROR_NOT_AVAILABLE;
  file->Append(leaf);
  file->GetPath(path->out());
  return path->get() != nullptr ? NS_OK : NS_ERROR_NOT_AVAILABLE;
}

// Kept: the table stays allocated when the group does not load, and a later load takes a new one: a
// string detector's result may still point into the former.
nsCString* take_name_table(int count) {
  return new (std::nothrow) nsCString[static_cast<size_t>(count)];
}

void store_name(nsCString* table, int index, const char* name) { table[index] = name; }

nsresult result_of(ModelNamesResult read) {
  switch (read) {
    case kNamesOk:
      return NS_OK;
    case kNamesNoTable:
      return NS_ERROR_OUT_OF_MEMORY;
    case kNamesShort:
      break;
  }
  return NS_ERROR_FAILURE;
}

}  // namespace
}  // namespace orva

nsresult nsOrvaDetector::Initialize() {
  if (mGroupModel != nullptr) return NS_OK;

  nsresult rv = NS_OK;
  const nsCOMPtr<nsIProperties> directory_service =
      do_GetService(NS_DIRECTORY_SERVICE_CONTRACTID, &rv);
  if (NS_FAILED(rv)) return rv;
  if (directory_service == nullptr) return NS_ERROR_NOT_AVAILABLE;

  {
    orva::HostPath path;
    rv = orva::resource_path(directory_service, orva::kNamesFile, &path);
    if (NS_FAILED(rv)) return rv;
    nsFileSpec spec(path.get(), PR_FALSE);
    if (!spec.IsFile()) return NS_ERROR_NOT_AVAILABLE;
    // Kept: a damaged table does not stop the load; models without a name report an empty one.
    LoadModelStructureFile(spec);
  }

  orva::HostPath path;
  rv = orva::resource_path(directory_service, orva::kGroupFile, &path);
  if (NS_FAILED(rv)) return rv;
  mGroupModel = pemb_init(path.get());
  return mGroupModel != nullptr ? NS_OK : NS_ERROR_NOT_AVAILABLE;
}

void nsOrvaDetector::Shutdown() {
  // Kept: without a group the names are not released either.
  if (mGroupModel == nullptr) return;
  pemb_dispose(mGroupModel);
  mGroupModel = nullptr;
  delete[] mModelEncoding;
  mModelEncoding = nullptr;
}

nsresult nsOrvaDetector::LoadModelStructureFile(nsFileSpec& aSpec) {
  nsInputFileStream stream(aSpec, PR_RDONLY, orva::kAccessMode);
  if (!stream.is_open()) return NS_ERROR_FAILURE;

  const nsresult rv = orva::without_exceptions([&stream] {
    orva::ModelNamesReader reader;
    reader.read = [&stream](void* buffer, int size) { return stream.read(buffer, size); };
    reader.allocate = [](int count) {
      mModelEncoding = orva::take_name_table(count);
      return mModelEncoding != nullptr;
    };
    reader.store = [](int index, const char* name) {
      orva::store_name(mModelEncoding, index, name);
    };
    // Whatever was read stays when memory ends.
    return orva::result_of(orva::read_model_names(reader, &mModelNum));
  });
  stream.close();
  return rv;
}

nsOrvaDetector::nsOrvaDetector() : mActive(0), mDone(0), mInMarkup(0), mBestModel(-1) {
  if (mLock == 0 && mGroupModel != nullptr && pemb_load(mGroupModel) == 0) {
    mActive = 1;
    mLock = 1;
  }
}

// Kept: the evaluator is not given back here; only an early decision and DataEnd do that.
nsOrvaDetector::~nsOrvaDetector() = default;

void nsOrvaDetector::HandleData(const char* aBuf, unsigned int aLen) {
  if (mDone == 1 || mActive == 0) return;

  char* text = nullptr;
  unsigned int length = 0;
  if (NS_FAILED(ExtractText(aBuf, aLen, &text, &length))) {
    // The caller's bytes are constant, whereas feeding rewrites what it is given.
    orva::feed_const_text(mGroupModel, aBuf, aLen);
  } else {
    const std::unique_ptr<char, void (*)(void*)> owner(text, PR_Free);
    orva::feed_text(mGroupModel, text, length);
  }

  const orva::RunScores run = orva::read_scores(mGroupModel, &mBestModel);
  if (orva::is_certain(run)) {
    mDone = 1;
    mLock = 0;
  }
}

void nsOrvaDetector::DataEnd() {
  if (const char* charset = BestCharset(); charset != nullptr) Report(charset);
  // Kept: also when another instance owns the evaluator.
  mLock = 0;
}

nsresult nsOrvaDetector::ExtractText(const char* aInBuf, unsigned int aInLen, char** oOutBuf,
                                     unsigned int* oOutLen) {
  *oOutBuf = static_cast<char*>(PR_Malloc(aInLen));
  if (*oOutBuf == nullptr) return NS_ERROR_OUT_OF_MEMORY;
  *oOutLen = static_cast<unsigned int>(orva::strip_markup(aInBuf, aInLen, *oOutBuf, &mInMarkup));
  return NS_OK;
}

const char* nsOrvaDetector::BestCharset() const {
  // The table is missing after Shutdown and when its count could not be believed.
  const bool named = mBestModel >= 0 && mBestModel < mModelNum && mModelEncoding != nullptr;
  return named ? mModelEncoding[mBestModel].GetBuffer() : nullptr;
}
