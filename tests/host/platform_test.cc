#include <gtest/gtest.h>
#include <prmem.h>

#include <string>

#include "platform/com_ptr.h"
#include "platform/directory.h"
#include "platform/file_stream.h"
#include "platform/narrow_string.h"
#include "platform/registry.h"
#include "platform/service_manager.h"
#include "tests/support/temp_dir.h"
#include "tools/orva_host/counted.h"
#include "tools/orva_host/local_file.h"

namespace orva {
namespace {

class Listener : public Counted<nsIShutdownListener> {
 public:
  explicit Listener(bool* gone = nullptr) : gone_(gone) {}
  nsresult OnShutdown(const nsCID& /*id*/, nsISupports* /*service*/) override { return NS_OK; }
  using Counted::references;

 protected:
  ~Listener() override {
    if (gone_ != nullptr) *gone_ = true;
  }

 private:
  bool* gone_;
};

// A manager that is dropped with the test.
class Services : public testing::Test {
 protected:
  ~Services() override { nsServiceManager::ShutdownGlobalServiceManager(nullptr); }
};

TEST(ComPtr, CountsOneReferenceForEachPointer) {
  bool gone = false;
  {
    const nsCOMPtr<Listener> first = new Listener(&gone);
    EXPECT_EQ(first->references(), 1U);
    {
      const nsCOMPtr<Listener> second = first;
      EXPECT_EQ(first->references(), 2U);
    }
    EXPECT_EQ(first->references(), 1U);
    EXPECT_FALSE(gone);
  }
  EXPECT_TRUE(gone);
}

TEST(ComPtr, OutParametersHandTheirReferenceOver) {
  const nsCOMPtr<Listener> object = new Listener;
  {
    nsCOMPtr<nsIShutdownListener> found;
    object->QueryInterface(nsIShutdownListener::GetIID(), getter_AddRefs(found));
    EXPECT_EQ(found.get(), object.get());
    EXPECT_EQ(object->references(), 2U);
  }
  EXPECT_EQ(object->references(), 1U);
}

TEST(NarrowString, NeverAssignedGivesEmptyTextAndNotNull) {
  EXPECT_STREQ(nsCString().GetBuffer(), "");
  EXPECT_STREQ(nsCString(static_cast<const char*>(nullptr)).GetBuffer(), "");
}

TEST(NarrowString, AssignmentCopiesTheText) {
  char text[] = "UTF-8";
  nsCString name;
  name = text;
  text[0] = 'x';
  EXPECT_STREQ(name.GetBuffer(), "UTF-8");
  const nsCString copy = name;
  name = "";
  EXPECT_STREQ(copy.GetBuffer(), "UTF-8");
}

TEST(FileSpec, OnlyAnExistingPlainFileIsAFile) {
  const TempDir folder;
  folder.file("plain", "text");
  EXPECT_TRUE(nsFileSpec((folder.path() + "/plain").c_str()).IsFile());
  EXPECT_FALSE(nsFileSpec((folder.path() + "/missing").c_str()).IsFile());
  EXPECT_FALSE(nsFileSpec(folder.path().c_str()).IsFile());
  EXPECT_FALSE(nsFileSpec("").IsFile());
}

TEST(InputFileStream, ReadsUpToTheEndAndTellsHowMuch) {
  const TempDir folder;
  folder.file("plain", "abcde");
  nsInputFileStream stream(nsFileSpec((folder.path() + "/plain").c_str()), PR_RDONLY, 0666);
  ASSERT_TRUE(stream.is_open());
  char bytes[4] = {};
  EXPECT_EQ(stream.read(bytes, 4), 4);
  EXPECT_FALSE(stream.eof());
  EXPECT_EQ(stream.read(bytes, 4), 1);
  EXPECT_EQ(bytes[0], 'e');
  EXPECT_TRUE(stream.eof());
  EXPECT_EQ(stream.close(), NS_OK);
  EXPECT_FALSE(stream.is_open());
  EXPECT_EQ(stream.read(bytes, 4), 0);
  EXPECT_TRUE(stream.failed());
}

TEST(InputFileStream, MissingFileIsNotOpen) {
  nsInputFileStream stream(nsFileSpec("/nonexistent/file"));
  EXPECT_FALSE(stream.is_open());
  EXPECT_TRUE(stream.failed());
}

TEST_F(Services, UnknownServiceIsNotRegistered) {
  nsISupports* service = reinterpret_cast<nsISupports*>(&service);
  EXPECT_EQ(nsServiceManager::GetService("@x/none;1", nsISupports::GetIID(), &service),
            NS_ERROR_FACTORY_NOT_REGISTERED);
  EXPECT_EQ(service, nullptr);
  nsresult rv = NS_OK;
  const nsCOMPtr<nsIRegistry> none = do_GetService(NS_REGISTRY_CONTRACTID, &rv);
  EXPECT_EQ(none.get(), nullptr);
  EXPECT_EQ(rv, NS_ERROR_FACTORY_NOT_REGISTERED);
}

TEST_F(Services, ServiceIsAskedForTheInterfaceAndCounted) {
  const nsCOMPtr<Listener> listener = new Listener;
  ASSERT_EQ(nsServiceManager::RegisterService("@x/listener;1", listener), NS_OK);
  EXPECT_EQ(listener->references(), 2U);
  nsresult rv = NS_ERROR_FAILURE;
  {
    const nsCOMPtr<nsIShutdownListener> found = do_GetService("@x/listener;1", &rv);
    EXPECT_EQ(found.get(), listener.get());
    EXPECT_EQ(rv, NS_OK);
    EXPECT_EQ(listener->references(), 3U);
  }
  const nsCOMPtr<nsIRegistry> other = do_GetService("@x/listener;1", &rv);
  EXPECT_EQ(other.get(), nullptr);
  EXPECT_EQ(rv, NS_NOINTERFACE);
  EXPECT_EQ(nsServiceManager::UnregisterService("@x/listener;1"), NS_OK);
  EXPECT_EQ(listener->references(), 1U);
}

TEST_F(Services, ReleaseServiceGivesOneReferenceBack) {
  const nsCOMPtr<Listener> listener = new Listener;
  nsServiceManager::RegisterService(NS_REGISTRY_CID, listener);
  nsISupports* service = nullptr;
  ASSERT_EQ(nsServiceManager::GetService(NS_REGISTRY_CID, nsISupports::GetIID(), &service), NS_OK);
  EXPECT_EQ(listener->references(), 3U);
  EXPECT_EQ(nsServiceManager::ReleaseService(NS_REGISTRY_CID, service), NS_OK);
  EXPECT_EQ(listener->references(), 2U);
}

TEST_F(Services, ShutdownDropsEveryService) {
  const nsCOMPtr<Listener> listener = new Listener;
  nsServiceManager::RegisterService(NS_REGISTRY_CID, listener);
  nsServiceManager::RegisterService("@x/listener;1", listener);
  nsIServiceManager* manager = nullptr;
  ASSERT_EQ(nsServiceManager::GetGlobalServiceManager(&manager), NS_OK);
  EXPECT_EQ(nsServiceManager::ShutdownGlobalServiceManager(&manager), NS_OK);
  EXPECT_EQ(manager, nullptr);
  EXPECT_EQ(listener->references(), 1U);
}

TEST(DirectoryServiceOfTheSmallHost, EachFileIsAFreshCopy) {
  const nsCOMPtr<nsIDirectoryService> service = new DirectoryService("/res", Faults());
  nsCOMPtr<nsIProperties> properties;
  service->QueryInterface(nsIProperties::GetIID(), getter_AddRefs(properties));
  ASSERT_NE(properties.get(), nullptr);
  for (int i = 0; i < 2; ++i) {
    nsCOMPtr<nsIFile> file;
    ASSERT_EQ(properties->Get("ARes", nsIFile::GetIID(), getter_AddRefs(file)), NS_OK);
    file->Append("Model.stc");
    char* path = nullptr;
    ASSERT_EQ(file->GetPath(&path), NS_OK);
    EXPECT_STREQ(path, "/res/Model.stc");
    PR_Free(path);
  }
  void* other = nullptr;
  EXPECT_EQ(properties->Get("TmpD", nsIFile::GetIID(), &other), NS_ERROR_FAILURE);
}

}  // namespace
}  // namespace orva
