// The program orva-host, seen from outside.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/temp_dir.h"

namespace orva {
namespace {

using nlohmann::json;

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

// Cyrillic sentences in KOI8-R, which no other charset of the models can be taken for.
constexpr char kRussian[] =
    "\xF7\xD3\xC5 \xCC\xC0\xC4\xC9 \xD2\xCF\xD6\xC4\xC1\xC0\xD4\xD3\xD1 "
    "\xD3\xD7\xCF\xC2\xCF\xC4\xCE\xD9\xCD\xC9, \xC9 \xCB\xC1\xD6\xC4\xD9\xCA \xC9\xDA "
    "\xCE\xC9\xC8 \xCD\xCF\xD6\xC5\xD4 \xD7\xD9\xC2\xC9\xD2\xC1\xD4\xD8, \xCB\xD5\xC4\xC1 "
    "\xC9\xC4\xD4\xC9 \xD3\xC5\xC7\xCF\xC4\xCE\xD1 \xC9 \xDA\xC1\xD7\xD4\xD2\xC1.\n";

class HostProgram : public testing::Test {
 protected:
  // Runs the program with `arguments`, a shell text.
  Outcome run(const std::string& arguments) const {
    const std::string command = std::string(ORVA_HOST_PROGRAM) + " " + arguments + " >" +
                                folder_.path() + "/out 2>" + folder_.path() + "/err";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, bytes_of(folder_ / "out"),
            bytes_of(folder_ / "err")};
  }
  Outcome detect(const std::string& arguments) const {
    return run("detect --models " + models_ + " " + arguments);
  }
  Outcome with_registry(const std::string& command, const std::string& rest) const {
    return run(command + " --registry " + registry_ + " " + rest);
  }

  static std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  const std::string lib_ = ORVA_COMPONENT_LIBRARY;
  std::string models_ = ORVA_SOURCE_DIR "/tests/host/models";
  TempDir folder_;
  std::string registry_ = folder_.path() + "/registry.txt";
  std::string russian_ = folder_.file("russian.txt", kRussian);
};

TEST_F(HostProgram, RegistersListsAndUnregisters) {
  const Outcome added = with_registry("register", lib_);
  EXPECT_EQ(added.status, 0) << added.err;
  const std::string library = std::filesystem::canonical(lib_).string();
  const std::string values =
      "value\t1\t2\tsoftware/netscape/intl/charsetdetector/orva_charset_detector\ttype\t"
      "orva_charset_detector\n"
      "value\t1\t2\tsoftware/netscape/intl/charsetdetector/orva_charset_detector\t"
      "defaultEnglishText\tOrvaDetector\n";
  const std::string heading = "# Components and registry values known to orva-host.\n";
  EXPECT_EQ(with_registry("list", "").out,
            heading +
                "component\t{f4cc0540-284c-11d4-84ae-003a06000000}\tOrva Charset Detector\t"
                "@mozilla.org/intl/charsetdetect;1?type=orva_charset_detector\t" +
                library +
                "\ncomponent\t{17beda80-29bf-11d4-84af-fef0f0000000}\t"
                "Orva String Charset Detector\t"
                "@mozilla.org/intl/stringcharsetdetect;1?type=orva_charset_detector\t" +
                library + "\n" + values);
  EXPECT_EQ(with_registry("unregister", lib_).status, 0);
  EXPECT_EQ(with_registry("list", "").out, heading + values);
}

TEST_F(HostProgram, RegisteringTwiceChangesNothing) {
  ASSERT_EQ(with_registry("register", lib_).status, 0);
  const std::string once = bytes_of(folder_ / "registry.txt");
  ASSERT_EQ(with_registry("register", lib_).status, 0);
  EXPECT_EQ(bytes_of(folder_ / "registry.txt"), once);
}

TEST_F(HostProgram, RegistryValuesAreWrittenEvenWhenNoComponentRegistered) {
  EXPECT_EQ(with_registry("register", "--fail component " + lib_).status, 0);
  const std::string text = with_registry("list", "").out;
  EXPECT_EQ(text.find("component\t"), std::string::npos);
  EXPECT_NE(text.find("\ttype\torva_charset_detector\n"), std::string::npos);
  EXPECT_NE(text.find("\tdefaultEnglishText\tOrvaDetector\n"), std::string::npos);
}

TEST_F(HostProgram, ComponentsAreRegisteredEvenWhenTheRegistryFails) {
  for (const char* fault :
       {"registry-service", "registry-open", "registry-subtree", "registry-value"}) {
    std::filesystem::remove(registry_);
    const Outcome added = with_registry("register", std::string("--fail ") + fault + " " + lib_);
    EXPECT_EQ(added.status, 2) << fault;
    EXPECT_EQ(added.err,
              "orva-host: " + lib_ + ": it did not register: " +
                  (fault == std::string("registry-service") ? "NS_ERROR_FACTORY_NOT_REGISTERED\n"
                                                            : "NS_ERROR_FAILURE\n"));
    const std::string text = with_registry("list", "").out;
    EXPECT_NE(text.find("component\t"), std::string::npos) << fault;
    EXPECT_EQ(text.find("value\t"), std::string::npos) << fault;
  }
}

TEST_F(HostProgram, DamagedRegistryFileIsRefusedAndKept) {
  folder_.file("registry.txt", "# ours\ncomponent\tnonsense\n");
  const Outcome listed = with_registry("list", "");
  EXPECT_EQ(listed.status, 2);
  EXPECT_EQ(listed.err,
            "orva-host: " + registry_ + ": line 2 is neither a component nor a value\n");
  EXPECT_EQ(with_registry("register", lib_).status, 2);
  EXPECT_EQ(bytes_of(folder_ / "registry.txt"), "# ours\ncomponent\tnonsense\n");
}

TEST_F(HostProgram, StreamingPrintsEveryNotificationAndWhetherItCanGo) {
  const Outcome outcome = detect("--block 60 " + lib_ + " " + russian_);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, russian_ +
                             "\n  block 1: KOI8-R\n  block 2: KOI8-R\n  Done: KOI8-R\n"
                             "  answer after 2 blocks: KOI8-R\nlibrary can be unloaded: yes\n");
}

TEST_F(HostProgram, StringDetectorAnswersAtOnce) {
  const std::string empty = folder_.file("empty", "");
  const Outcome outcome = detect("--string --block 7 " + lib_ + " " + russian_ + " " + empty);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, russian_ + "\n  answer after 1 block: KOI8-R\n" + empty +
                             "\n  answer after 1 block: none\nlibrary can be unloaded: yes\n");
}

TEST_F(HostProgram, JsonPrintsOneObjectAFileAndNothingElse) {
  const std::string two = folder_.file("two", "ab");
  const Outcome outcome = detect("--json --block 60 " + lib_ + " " + russian_ + " " + two);
  EXPECT_EQ(outcome.status, 0);
  const std::vector<std::string> lines = lines_of(outcome.out);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(json::parse(lines[0]), json({{"path", russian_},
                                         {"notifications", {"KOI8-R", "KOI8-R", "KOI8-R"}},
                                         {"result", "KOI8-R"}}));
  EXPECT_EQ(json::parse(lines[1]),
            json({{"path", two}, {"notifications", json::array()}, {"result", nullptr}}));
  EXPECT_EQ(outcome.err, "library can be unloaded: yes\n");
  const Outcome whole = detect("--json --string " + lib_ + " " + russian_);
  EXPECT_EQ(json::parse(whole.out),
            json({{"path", russian_}, {"notifications", json::array()}, {"result", "KOI8-R"}}));
}

TEST_F(HostProgram, FailingServicesShowInTheirResultCodes) {
  const auto reason = [&](const std::string& fault) {
    const Outcome outcome = detect("--fail " + fault + " " + lib_ + " " + russian_);
    EXPECT_EQ(outcome.status, 2);
    return outcome.err;
  };
  const std::string start = "orva-host: " + russian_ +
                            ": no detector @mozilla.org/intl/charsetdetect;1?type="
                            "orva_charset_detector: ";
  EXPECT_EQ(reason("directory-service"), start + "NS_ERROR_FACTORY_NOT_REGISTERED\n");
  EXPECT_EQ(reason("directory"), start + "NS_ERROR_FAILURE\n");
  EXPECT_EQ(reason("component"), start + "NS_ERROR_FACTORY_NOT_REGISTERED\n");
}

TEST_F(HostProgram, MissingModelsFailTheFirstDocumentOnlyAndTheNextHaveNoAnswer) {
  models_ = folder_.path();
  const Outcome outcome = detect(lib_ + " " + russian_ + " " + russian_);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "orva-host: " + russian_ +
                             ": no detector @mozilla.org/intl/charsetdetect;1?type="
                             "orva_charset_detector: NS_ERROR_NOT_AVAILABLE\n");
  EXPECT_EQ(outcome.out,
            russian_ + "\n  answer after 1 block: none\nlibrary can be unloaded: yes\n");
}

TEST_F(HostProgram, WhatIsNoComponentIsRefused) {
  const Outcome outcome = detect(folder_.file("lib.so", "not a library") + " " + russian_);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(detect(ORVA_PLATFORM_LIBRARY " " + russian_).err,
            "orva-host: " ORVA_PLATFORM_LIBRARY ": it does not export NSGetModule\n");
}

TEST_F(HostProgram, UnreadableDocumentDoesNotStopTheOthers) {
  const Outcome outcome = detect(lib_ + " /nonexistent " + russian_);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "orva-host: /nonexistent: No such file or directory\n");
  EXPECT_NE(outcome.out.find("answer after 1 block: KOI8-R"), std::string::npos);
}

// `text` with every `from` replaced.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

TEST_F(HostProgram, ExamplesOfTheComponentsPageAreWhatTheProgramPrints) {
  const std::string page = bytes_of(ORVA_SOURCE_DIR "/doc/COMPONENT.md");
  const std::string fence = "```console\n";
  const size_t start = page.find(fence);
  ASSERT_NE(start, std::string::npos);
  const size_t from = start + fence.size();
  const std::string block = page.substr(from, page.find("```", from) - from);
  std::string script = "cd " ORVA_SOURCE_DIR "\n";
  std::string expected;
  for (const std::string& line : lines_of(block)) {
    if (line.starts_with("$ ")) {
      script += line.substr(2) + "\n";
    } else {
      expected += line + "\n";
    }
  }
  script = replaced(script, "build/bin/orva-host", ORVA_HOST_PROGRAM);
  script = replaced(script, "build/lib/liborvacharset.so", ORVA_COMPONENT_LIBRARY);
  const std::string path = folder_.file("examples.sh", script);
  ASSERT_EQ(std::system(("sh " + path + " >" + folder_.path() + "/out 2>/dev/null").c_str()), 0);
  EXPECT_EQ(bytes_of(folder_ / "out"), expected);
}

}  // namespace
}  // namespace orva
