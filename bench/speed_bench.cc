// Speed of the detectors on the same bytes in one process and one run. Only ratios mean anything on
// a shared machine. Needs ORVA_EVAL (see corpus.h); ORVA_MODELS names another model folder.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <functional>

#include "bench/corpus.h"
#include "bench/detectors.h"

namespace orva::bench {
namespace {

constexpr size_t kMegabyte = 1 << 20;

struct Kind {
  const char* name;
  const char* label;          // charset of the documents it is made of
  const char* enca_language;  // what that detector must be told; null where it knows none
};
constexpr Kind kKinds[] = {
    {"latin1", "ISO-8859-1", nullptr}, {"koi8r", "KOI8-R", "ru"},  {"cp1251", "windows-1251", "ru"},
    {"sjis", "Shift_JIS", nullptr},    {"utf8", "UTF-8", nullptr}, {"ascii", "ASCII", nullptr},
};

struct Candidate {
  std::string name;
  std::function<std::unique_ptr<Detector>()> make;
};

std::string models_dir() {
  const char* dir = std::getenv("ORVA_MODELS");
  return dir != nullptr ? dir : std::string(ORVA_SOURCE_DIR) + "/models";
}

std::vector<Candidate> candidates(const char* enca_language) {
  std::vector<Candidate> all = {
      {"sum", make_sum},
      {"pemb", [] { return make_pemb(models_dir()); }},
      {"pemb_scores_each_1KB", [] { return make_pemb(models_dir(), 1024); }},
      {"uchardet", make_uchardet},
      {"icu", make_icu},
  };
  if (enca_language != nullptr) {
    all.push_back({"enca", [=] { return make_enca(enca_language); }});
  }
  return all;
}

void run_texts(benchmark::State& state, Detector& detector, const std::vector<std::string>& texts) {
  int64_t bytes = 0;
  for (auto _ : state) {
    for (const std::string& text : texts) {
      benchmark::DoNotOptimize(detector.detect(text));
      bytes += static_cast<int64_t>(text.size());
    }
  }
  state.SetBytesProcessed(bytes);
}

void add(const std::string& kind, const std::vector<std::string>& texts,
         const char* enca_language) {
  if (texts.empty() || texts[0].empty()) return;
  for (const Candidate& candidate : candidates(enca_language)) {
    const std::shared_ptr<Detector> detector = candidate.make();
    const std::string answer = detector->detect(texts[0]);
    printf("# %s %s answers %s\n", kind.c_str(), candidate.name.c_str(), answer.c_str());
    benchmark::RegisterBenchmark(
        (kind + "/" + candidate.name).c_str(),
        [detector, texts](benchmark::State& state) { run_texts(state, *detector, texts); })
        ->Unit(benchmark::kMillisecond);
  }
}

void add_open() {
  benchmark::RegisterBenchmark("open/pemb", [](benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(make_pemb(models_dir()));
  })->Unit(benchmark::kMillisecond);
}

}  // namespace
}  // namespace orva::bench

int main(int argc, char** argv) {
  using namespace orva::bench;
  benchmark::Initialize(&argc, argv);
  if (std::getenv("ORVA_EVAL") == nullptr) {
    fprintf(stderr, "speed_bench: ORVA_EVAL names no folder of labelled documents\n");
    return 1;
  }
  for (const Kind& kind : kKinds) {
    add(kind.name, {joined_documents(kind.label, kMegabyte)}, kind.enca_language);
  }
  add("docs4KB", short_documents(10000, 4096), nullptr);
  add("docs200B", short_documents(10000, 200), nullptr);
  add_open();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
