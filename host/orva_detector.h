// nsOrvaDetector: what both detectors share. It owns the one loaded model group of the process,
// turns blocks of a document into text, feeds them, and says which charset won.
//
//   class Mine : public nsOrvaDetector {
//     void Report(const char* aCharset) override { puts(aCharset); }
//   };
//   nsOrvaDetector::Initialize();
//   { Mine detector; detector.HandleData(bytes, length); detector.DataEnd(); }
//   nsOrvaDetector::Shutdown();
//
// Life cycle: shared state: empty, loaded by Initialize, released by Shutdown. An instance takes
// the
//             shared evaluator in its constructor if it is free, else stays inactive for ever; an
//             early decision or DataEnd gives it back. Destroying the instance does not.
// Ownership:  names handed to Report belong to the shared table and live until Shutdown.
// Results:    platform result codes; nothing is printed and nothing is thrown.
// Threads:    one; mLock is a plain flag.
#ifndef ORVA_HOST_ORVA_DETECTOR_H_
#define ORVA_HOST_ORVA_DETECTOR_H_

#include "lib/api/pemb.h"
#include "platform/file_stream.h"
#include "platform/narrow_string.h"

class nsOrvaDetector {
 public:
  // Finds and loads "Model.stc" and "Model.grp" in the host's resource directory. A missing name
  // table stops it before the group is opened; a damaged one does not.
  static nsresult Initialize();

  // Releases group and names. Does nothing at all when no group is loaded.
  static void Shutdown();

  // Reads the charset names.
  static nsresult LoadModelStructureFile(nsFileSpec& aSpec);

  nsOrvaDetector();
  nsOrvaDetector(const nsOrvaDetector&) = delete;
  nsOrvaDetector& operator=(const nsOrvaDetector&) = delete;

  // The order of these five is the order of the virtual table.
  virtual ~nsOrvaDetector();
  // Feeds one block. Ignored by an inactive instance and after an early decision.
  virtual void HandleData(const char* aBuf, unsigned int aLen);
  // Reports the winner if there is one, and gives the evaluator back.
  virtual void DataEnd();
  virtual void Report(const char* aCharset) = 0;
  // Copies the block without its tags to a buffer that the caller releases with PR_Free.
  virtual nsresult ExtractText(const char* aInBuf, unsigned int aInLen, char** oOutBuf,
                               unsigned int* oOutLen);

 protected:
  // Charset of the best model so far; null when there is none with a name.
  const char* BestCharset() const;

  static PembHandle* mGroupModel;    // the loaded group, null before Initialize and after Shutdown
  static int mLock;                  // 1 while an instance owns the shared evaluator
  static nsCString* mModelEncoding;  // charset of each model of the group
  static int mModelNum;              // entries of mModelEncoding

  int mActive;     // 1 when this instance took the evaluator
  int mDone;       // 1 once it has decided early
  int mInMarkup;   // 1 while a tag is open; kept across calls
  int mBestModel;  // -1 for none
};

#endif  // ORVA_HOST_ORVA_DETECTOR_H_
