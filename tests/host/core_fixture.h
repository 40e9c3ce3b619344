// The detector core over the stand-in library, with its shared state laid open.
#ifndef ORVA_TESTS_HOST_CORE_FIXTURE_H_
#define ORVA_TESTS_HOST_CORE_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/orva_detector.h"
#include "tests/host/failing_memory.h"
#include "tests/host/fake_pemb.h"
#include "tests/support/temp_dir.h"
#include "tools/orva_host/small_host.h"

namespace orva {

// A detector that writes its reports down.
class Core : public nsOrvaDetector {
 public:
  using nsOrvaDetector::mActive;
  using nsOrvaDetector::mBestModel;
  using nsOrvaDetector::mDone;
  using nsOrvaDetector::mGroupModel;
  using nsOrvaDetector::mInMarkup;
  using nsOrvaDetector::mLock;
  using nsOrvaDetector::mModelEncoding;
  using nsOrvaDetector::mModelNum;

  void Report(const char* aCharset) override { reports.emplace_back(aCharset); }
  void feed(const std::string& text) {
    HandleData(text.data(), static_cast<unsigned>(text.size()));
  }

  std::vector<std::string> reports;
};

// A 32-bit integer as "Model.stc" holds it.
inline std::string word(int32_t value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}
inline std::string record(const std::string& name) {
  return word(static_cast<int32_t>(name.size()) + 2) + "??" + name;
}
inline std::string names_of(const std::vector<std::string>& names) {
  std::string bytes = word(static_cast<int32_t>(names.size()));
  for (const std::string& name : names) bytes += record(name);
  return bytes;
}

class CoreTest : public testing::Test {
 protected:
  CoreTest() { g_library = {}; }
  ~CoreTest() override {
    g_host_memory_fails = false;
    g_nothrow_memory_fails = false;
    nsOrvaDetector::Shutdown();
    delete[] Core::mModelEncoding;
    Core::mModelEncoding = nullptr;
    Core::mModelNum = 0;
    Core::mLock = 0;
  }

  // A host whose resource directory is `dir_`.
  void start_host(const Faults& faults = {}) {
    host_.reset();
    host_ = std::make_unique<SmallHost>(dir_.path(), faults);
  }
  void write_names(const std::string& bytes) { dir_.file("Model.stc", bytes); }
  nsresult read_names(const std::string& bytes) {
    nsFileSpec spec(dir_.file("names", bytes).c_str());
    return nsOrvaDetector::LoadModelStructureFile(spec);
  }
  // Loaded, with these names.
  void load(const std::vector<std::string>& names = {"first", "second"}) {
    start_host();
    write_names(names_of(names));
    ASSERT_EQ(nsOrvaDetector::Initialize(), NS_OK);
  }
  static void let_win(int model, float ratio) {
    g_library.scores = true;
    g_library.best = model;
    g_library.ratio = ratio;
  }
  static std::vector<std::string> table() {
    std::vector<std::string> names;
    for (int i = 0; i < Core::mModelNum; ++i) {
      names.emplace_back(Core::mModelEncoding[i].GetBuffer());
    }
    return names;
  }

  TempDir dir_;
  std::unique_ptr<SmallHost> host_;
};

}  // namespace orva

#endif  // ORVA_TESTS_HOST_CORE_FIXTURE_H_
