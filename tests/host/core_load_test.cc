// Loading: the host's resource directory, the table of names, the group.
#include "tests/host/core_fixture.h"

namespace orva {
namespace {

using Names = std::vector<std::string>;

class CoreLoad : public CoreTest {};
class NameTable : public CoreTest {};

TEST_F(CoreLoad, OpensTheGroupOfTheResourceDirectory) {
  load();
  EXPECT_EQ(g_library.opened, Names({dir_.path() + "/Model.grp"}));
  EXPECT_EQ(table(), Names({"first", "second"}));
}

TEST_F(CoreLoad, WhileLoadedASecondLoadDoesNothing) {
  load();
  write_names(names_of({"other"}));
  EXPECT_EQ(nsOrvaDetector::Initialize(), NS_OK);
  EXPECT_EQ(g_library.opened.size(), 1U);
  EXPECT_EQ(table(), Names({"first", "second"}));
}

TEST_F(CoreLoad, MissingNamesStopItBeforeTheGroupIsOpened) {
  start_host();
  EXPECT_EQ(nsOrvaDetector::Initialize(), NS_ERROR_NOT_AVAILABLE);
  EXPECT_TRUE(g_library.opened.empty());
}

TEST_F(CoreLoad, DamagedNamesDoNotStopIt) {
  start_host();
  write_names(word(2) + record("first") + word(40) + "short");
  EXPECT_EQ(nsOrvaDetector::Initialize(), NS_OK);
  EXPECT_EQ(table(), Names({"first", ""}));
}

TEST_F(CoreLoad, GroupThatDoesNotOpenIsNotAvailable) {
  start_host();
  write_names(names_of({"first"}));
  g_library.opens = false;
  EXPECT_EQ(nsOrvaDetector::Initialize(), NS_ERROR_NOT_AVAILABLE);
  EXPECT_EQ(Core::mGroupModel, nullptr);
  EXPECT_EQ(table(), Names({"first"}));
}

TEST_F(CoreLoad, FailuresOfTheHostArePassedOn) {
  write_names(names_of({"first"}));
  const auto result_with = [this](bool Faults::*fault) {
    Faults faults;
    faults.*fault = true;
    start_host(faults);
    return nsOrvaDetector::Initialize();
  };
  EXPECT_EQ(result_with(&Faults::directory_service), NS_ERROR_FACTORY_NOT_REGISTERED);
  EXPECT_EQ(result_with(&Faults::directory), NS_ERROR_FAILURE);
  EXPECT_EQ(result_with(&Faults::path), NS_ERROR_NOT_AVAILABLE);
  EXPECT_TRUE(g_library.opened.empty());
}

TEST_F(CoreLoad, ShutdownWithoutAGroupLeavesTheNames) {
  ASSERT_EQ(read_names(names_of({"first"})), NS_OK);
  nsOrvaDetector::Shutdown();
  EXPECT_EQ(g_library.disposals, 0);
  EXPECT_EQ(table(), Names({"first"}));
}

TEST_F(CoreLoad, ShutdownReleasesGroupAndNames) {
  load();
  nsOrvaDetector::Shutdown();
  EXPECT_EQ(g_library.disposals, 1);
  EXPECT_EQ(Core::mGroupModel, nullptr);
  EXPECT_EQ(Core::mModelEncoding, nullptr);
  nsOrvaDetector::Shutdown();
  EXPECT_EQ(g_library.disposals, 1);
}

TEST_F(CoreLoad, AnInstanceThatOutlivesTheGroupReportsNothing) {
  load();
  Core detector;
  let_win(1, 0.5F);
  detector.feed("text");
  nsOrvaDetector::Shutdown();
  detector.feed("more");
  detector.DataEnd();
  EXPECT_TRUE(detector.reports.empty());
}

TEST_F(NameTable, NameBeginsAtTheThirdByteOfItsRecord) {
  EXPECT_EQ(read_names(word(1) + word(7) + "\xFF\x01UTF-8"), NS_OK);
  EXPECT_EQ(table(), Names({"UTF-8"}));
}

TEST_F(NameTable, RecordOfLengthTwoOrLessGivesAnEmptyName) {
  EXPECT_EQ(read_names(word(4) + word(2) + "ab" + word(1) + "a" + word(0) + record("last")), NS_OK);
  EXPECT_EQ(table(), Names({"", "", "", "last"}));
}

TEST_F(NameTable, LongestRecordIsTakenWhole) {
  const std::string name(253, 'n');
  EXPECT_EQ(read_names(word(1) + record(name)), NS_OK);
  EXPECT_EQ(table(), Names({name}));
}

TEST_F(NameTable, LengthOutsideTheFormatFails) {
  for (const int length : {256, -1, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(read_names(word(2) + record("first") + word(length) + std::string(300, 'n')),
              NS_ERROR_FAILURE);
    EXPECT_EQ(table(), Names({"first", ""})) << length;
    delete[] Core::mModelEncoding;
    Core::mModelEncoding = nullptr;
  }
}

TEST_F(NameTable, NoRecordsGiveAnEmptyTable) {
  EXPECT_EQ(read_names(word(0)), NS_OK);
  EXPECT_EQ(Core::mModelNum, 0);
  EXPECT_NE(Core::mModelEncoding, nullptr);
}

TEST_F(NameTable, FileCutAnywhereKeepsTheNamesReadSoFar) {
  const std::string whole = names_of({"one", "two"});
  const size_t end_of_one = 4 + record("one").size();
  for (size_t size = 4; size < whole.size(); ++size) {
    EXPECT_EQ(read_names(whole.substr(0, size)), NS_ERROR_FAILURE) << size;
    EXPECT_EQ(table(), Names({size >= end_of_one ? "one" : "", ""})) << size;
    delete[] Core::mModelEncoding;
    Core::mModelEncoding = nullptr;
  }
}

TEST_F(NameTable, CutCountKeepsTheFormerOne) {
  EXPECT_EQ(read_names("\x07"), NS_OK);
  EXPECT_EQ(Core::mModelNum, 0);
  delete[] Core::mModelEncoding;
  ASSERT_EQ(read_names(names_of({"one", "two"})), NS_OK);
  delete[] Core::mModelEncoding;
  EXPECT_EQ(read_names(""), NS_ERROR_FAILURE);
  EXPECT_EQ(table(), Names({"", ""}));
}

TEST_F(NameTable, CountThatCannotBeTrueLeavesNoTable) {
  for (const int count : {-1, -2147483647 - 1, 2147483647, 1 << 24}) {
    EXPECT_EQ(read_names(word(count) + record("one")), NS_ERROR_OUT_OF_MEMORY) << count;
    EXPECT_EQ(Core::mModelNum, 0);
  }
}

TEST_F(NameTable, TableThatCannotBeAllocatedIsNeverReadFrom) {
  load();
  nsOrvaDetector::Shutdown();
  g_nothrow_memory_fails = true;
  EXPECT_EQ(nsOrvaDetector::Initialize(), NS_OK);
  g_nothrow_memory_fails = false;
  EXPECT_EQ(Core::mModelNum, 0);
  Core detector;
  let_win(0, 0.5F);
  detector.feed("text");
  detector.DataEnd();
  EXPECT_TRUE(detector.reports.empty());
  EXPECT_EQ(read_names(names_of({"one"})), NS_OK);
}

TEST_F(NameTable, MissingFileFails) {
  nsFileSpec spec((dir_ / "missing").c_str());
  EXPECT_EQ(nsOrvaDetector::LoadModelStructureFile(spec), NS_ERROR_FAILURE);
}

}  // namespace
}  // namespace orva
