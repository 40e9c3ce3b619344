#include "platform/file_stream.h"

nsFileSpec::nsFileSpec(const char* inNativePath, PRBool /*inCreateDirs*/) noexcept
    : mPath(inNativePath) {}

nsFileSpec::nsFileSpec(const nsFileSpec& inSpec) noexcept = default;
nsFileSpec& nsFileSpec::operator=(const nsFileSpec& inSpec) noexcept = default;
nsFileSpec::~nsFileSpec() = default;

PRBool nsFileSpec::IsFile() const noexcept {
  PRFileInfo64 info;
  return PR_GetFileInfo64(GetCString(), &info) == PR_SUCCESS && info.type == PR_FILE_FILE
             ? PR_TRUE
             : PR_FALSE;
}

nsFileClient::~nsFileClient() = default;
nsInputStream::~nsInputStream() = default;

PRInt32 nsInputStream::read(void* s, PRInt32 n) noexcept {
  auto* bytes = static_cast<char*>(s);
  PRInt32 count = 0;
  while (count < n) {
    const PRInt32 came = ReadSource(bytes + count, n - count);
    if (came < 0) mResult = NS_ERROR_FAILURE;
    if (came <= 0) {
      set_at_eof(PR_TRUE);
      break;
    }
    count += came;
  }
  return count;
}

nsInputFileStream::nsInputFileStream(const nsFileSpec& inFile, int nsprMode,
                                     PRIntn accessMode) noexcept {
  mFile = PR_Open(inFile.GetCString(), nsprMode, accessMode);
  if (mFile == nullptr) mResult = NS_ERROR_FAILURE;
}

nsInputFileStream::~nsInputFileStream() { nsInputFileStream::CloseSource(); }

PRInt32 nsInputFileStream::ReadSource(void* s, PRInt32 n) noexcept {
  return mFile != nullptr ? PR_Read(mFile, s, n) : -1;
}

nsresult nsInputFileStream::CloseSource() noexcept {
  if (mFile != nullptr && PR_Close(mFile) != PR_SUCCESS) mResult = NS_ERROR_FAILURE;
  mFile = nullptr;
  return mResult;
}
