// nsFileSpec, a native path, and nsInputFileStream, a file opened for reading.
//
//   nsFileSpec spec("/usr/share/app/res/Model.stc");
//   if (spec.IsFile()) {
//     nsInputFileStream stream(spec, PR_RDONLY, 0666);
//     if (stream.is_open()) count = stream.read(buffer, sizeof buffer);
//   }
//
// Life cycle: a stream is opened by its constructor and closed by close or its destructor.
// Results:    nothing is thrown; what cannot be allocated or opened behaves as a missing file.
#ifndef ORVA_PLATFORM_FILE_STREAM_H_
#define ORVA_PLATFORM_FILE_STREAM_H_

#include <prio.h>

#include "platform/narrow_string.h"

class NS_COM nsFileSpec {
 public:
  // The second argument asks to create missing folders of the path; it is not needed here, and
  // nothing is created.
  explicit nsFileSpec(const char* inNativePath, PRBool inCreateDirs = PR_FALSE) noexcept;
  nsFileSpec(const nsFileSpec& inSpec) noexcept;
  nsFileSpec& operator=(const nsFileSpec& inSpec) noexcept;
  virtual ~nsFileSpec();

  // Whether an existing plain file is there.
  PRBool IsFile() const noexcept;
  // Owned by the object.
  const char* GetCString() const noexcept { return mPath.GetBuffer(); }

 private:
  nsCString mPath;
};

// The last error of a stream.
class NS_COM nsErrorProne {
 public:
  PRBool failed() const noexcept { return NS_FAILED(mResult) ? PR_TRUE : PR_FALSE; }
  nsresult error() const noexcept { return mResult; }

 protected:
  nsresult mResult = NS_OK;
};

// What has a file behind it.
class NS_COM nsFileClient : public virtual nsErrorProne {
 public:
  virtual ~nsFileClient();
  PRBool is_open() const noexcept { return mFile != nullptr ? PR_TRUE : PR_FALSE; }

 protected:
  PRFileDesc* mFile = nullptr;
};

// What can be read from.
class NS_COM nsInputStream : public virtual nsErrorProne {
 public:
  virtual ~nsInputStream();

  PRBool eof() const noexcept { return get_at_eof(); }
  // Reads up to `n` bytes and returns how many came: fewer at the end of the data, 0 on an error.
  PRInt32 read(void* s, PRInt32 n) noexcept;
  nsresult close() noexcept { return CloseSource(); }

 protected:
  virtual void set_at_eof(PRBool atEnd) noexcept { mEOF = atEnd; }
  virtual PRBool get_at_eof() const noexcept { return mEOF; }
  // One read of the source: the bytes that came, 0 at the end, negative for an error.
  virtual PRInt32 ReadSource(void* s, PRInt32 n) noexcept = 0;
  virtual nsresult CloseSource() noexcept = 0;

 private:
  PRBool mEOF = PR_FALSE;
};

class NS_COM nsInputFileStream : public nsInputStream, public nsFileClient {
 public:
  enum { kDefaultMode = PR_RDONLY };

  explicit nsInputFileStream(const nsFileSpec& inFile, int nsprMode = kDefaultMode,
                             PRIntn accessMode = 00666) noexcept;
  nsInputFileStream(const nsInputFileStream&) = delete;
  nsInputFileStream& operator=(const nsInputFileStream&) = delete;
  ~nsInputFileStream() override;

 protected:
  PRInt32 ReadSource(void* s, PRInt32 n) noexcept override;
  nsresult CloseSource() noexcept override;
};

#endif  // ORVA_PLATFORM_FILE_STREAM_H_
