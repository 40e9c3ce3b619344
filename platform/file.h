// A place in the file system, as the host hands it around.
#ifndef ORVA_PLATFORM_FILE_H_
#define ORVA_PLATFORM_FILE_H_

#include "platform/supports.h"

class nsISimpleEnumerator;

// Ownership:  returned strings come from PR_Malloc and are released with PR_Free.
// {c8c0a080-0868-11d3-915f-d9d889d48e3c}
class nsIFile : public nsISupports {
 public:
  enum { NORMAL_FILE_TYPE = 0, DIRECTORY_TYPE = 1 };

  static const nsIID& GetIID() {
    static const nsIID iid = {
        0xc8c0a080, 0x0868, 0x11d3, {0x91, 0x5f, 0xd9, 0xd8, 0x89, 0xd4, 0x8e, 0x3c}};
    return iid;
  }

  virtual nsresult Append(const char* node) = 0;
  virtual nsresult AppendUnicode(const PRUnichar* node) = 0;
  virtual nsresult Normalize() = 0;
  virtual nsresult Create(PRUint32 type, PRUint32 permissions) = 0;
  virtual nsresult GetLeafName(char** aLeafName) = 0;
  virtual nsresult SetLeafName(const char* aLeafName) = 0;
  virtual nsresult GetUnicodeLeafName(PRUnichar** aLeafName) = 0;
  virtual nsresult SetUnicodeLeafName(const PRUnichar* aLeafName) = 0;
  virtual nsresult CopyTo(nsIFile* newParentDir, const char* newName) = 0;
  virtual nsresult CopyToUnicode(nsIFile* newParentDir, const PRUnichar* newName) = 0;
  virtual nsresult CopyToFollowingLinks(nsIFile* newParentDir, const char* newName) = 0;
  virtual nsresult CopyToFollowingLinksUnicode(nsIFile* newParentDir, const PRUnichar* newName) = 0;
  virtual nsresult MoveTo(nsIFile* newParentDir, const char* newName) = 0;
  virtual nsresult MoveToUnicode(nsIFile* newParentDir, const PRUnichar* newName) = 0;
  virtual nsresult Spawn(const char** args, PRUint32 count) = 0;
  virtual nsresult Delete(PRBool recursive) = 0;
  virtual nsresult GetPermissions(PRUint32* aPermissions) = 0;
  virtual nsresult SetPermissions(PRUint32 aPermissions) = 0;
  virtual nsresult GetPermissionsOfLink(PRUint32* aPermissionsOfLink) = 0;
  virtual nsresult SetPermissionsOfLink(PRUint32 aPermissionsOfLink) = 0;
  virtual nsresult GetLastModificationDate(PRInt64* aDate) = 0;
  virtual nsresult SetLastModificationDate(PRInt64 aDate) = 0;
  virtual nsresult GetLastModificationDateOfLink(PRInt64* aDate) = 0;
  virtual nsresult SetLastModificationDateOfLink(PRInt64 aDate) = 0;
  virtual nsresult GetFileSize(PRInt64* aFileSize) = 0;
  virtual nsresult SetFileSize(PRInt64 aFileSize) = 0;
  virtual nsresult GetFileSizeOfLink(PRInt64* aFileSize) = 0;
  virtual nsresult GetTarget(char** aTarget) = 0;
  virtual nsresult GetUnicodeTarget(PRUnichar** aTarget) = 0;
  virtual nsresult GetPath(char** aPath) = 0;
  virtual nsresult GetUnicodePath(PRUnichar** aPath) = 0;
  virtual nsresult Exists(PRBool* _retval) = 0;
  virtual nsresult IsWritable(PRBool* _retval) = 0;
  virtual nsresult IsReadable(PRBool* _retval) = 0;
  virtual nsresult IsExecutable(PRBool* _retval) = 0;
  virtual nsresult IsHidden(PRBool* _retval) = 0;
  virtual nsresult IsDirectory(PRBool* _retval) = 0;
  virtual nsresult IsFile(PRBool* _retval) = 0;
  virtual nsresult IsSymlink(PRBool* _retval) = 0;
  virtual nsresult IsSpecial(PRBool* _retval) = 0;
  virtual nsresult CreateUnique(const char* suggestedName, PRUint32 type, PRUint32 permissions) = 0;
  virtual nsresult Clone(nsIFile** _retval) = 0;
  virtual nsresult Equals(nsIFile* inFile, PRBool* _retval) = 0;
  virtual nsresult Contains(nsIFile* inFile, PRBool recur, PRBool* _retval) = 0;
  virtual nsresult GetParent(nsIFile** aParent) = 0;
  virtual nsresult GetDirectoryEntries(nsISimpleEnumerator** entries) = 0;
};

#endif  // ORVA_PLATFORM_FILE_H_
