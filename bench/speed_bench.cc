// Speed of the detectors on the same bytes in one process and one run. Only ratios mean anything on
// a shared machine. Needs ORVA_EVAL (see corpus.h); ORVA_MODELS names another model folder.
// bench/measure_speed runs it and makes tables of it.
#include <benchmark/benchmark.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>

#include "bench/corpus.h"
#include "bench/detectors.h"

namespace orva::bench {
namespace {

constexpr size_t kMegabyte = 1 << 20;
constexpr size_t kNbDocuments = 10000;

std::string models_dir() {
  const char* dir = std::getenv("ORVA_MODELS");
  return dir != nullptr ? dir : std::string(ORVA_SOURCE_DIR) + "/models";
}

struct Candidate {
  std::string name;
  std::function<std::unique_ptr<Detector>()> make;
  bool is_ours;  // a wrong answer ends the run
};

std::vector<Candidate> candidates(const char* enca_language) {
  std::vector<Candidate> all = {
      {"sum", make_sum, false},
      {"pemb", [] { return make_pemb(models_dir()); }, true},
      {"pemb_scores_each_1KB", [] { return make_pemb(models_dir(), 1024); }, true},
      {"orva", [] { return make_orva(models_dir(), false); }, true},
      {"orva_all", [] { return make_orva(models_dir(), true); }, true},
      {"uchardet", make_uchardet, false},
      {"icu", make_icu, false},
  };
  if (enca_language != nullptr) {
    all.push_back({"enca", [=] { return make_enca(enca_language); }, false});
  }
  return all;
}

using Texts = std::shared_ptr<const std::vector<std::string>>;

void run_texts(benchmark::State& state, Detector& detector, const Texts& texts) {
  int64_t bytes = 0;
  for (auto _ : state) {
    for (const std::string& text : *texts) {
      benchmark::DoNotOptimize(detector.detect(text));
      bytes += static_cast<int64_t>(text.size());
    }
  }
  state.SetBytesProcessed(bytes);
}

// Checks what a candidate answers, then registers its benchmark under "what/candidate". `kind_of`
// tells the kind of the n-th text. Of short ones ours must get most right.
void add(const std::string& what, const Candidate& candidate, const Texts& texts,
         const std::function<const Kind&(size_t)>& kind_of, bool once) {
  const std::shared_ptr<Detector> detector = candidate.make();
  size_t nb_right = 0;
  std::string answer;
  for (size_t i = 0; i < texts->size(); ++i) {
    answer = detector->detect((*texts)[i]);
    nb_right += is_right(kind_of(i), answer) ? 1 : 0;
  }
  const double percent = 100.0 * static_cast<double>(nb_right) / static_cast<double>(texts->size());
  printf("# %s %s: %.1f%% right, the last answer is %s\n", what.c_str(), candidate.name.c_str(),
         percent, answer.c_str());
  if (candidate.is_ours && percent < (texts->size() == 1 ? 100 : 50)) {
    fprintf(stderr, "speed_bench: wrong answers, nothing to time\n");
    exit(1);
  }
  auto* added = benchmark::RegisterBenchmark((what + "/" + candidate.name).c_str(),
                                             [=](benchmark::State& state) {
                                               run_texts(state, *detector, texts);
                                               state.counters["right"] = percent;
                                             });
  added->Unit(benchmark::kMillisecond)->ReportAggregatesOnly(true);
  if (once) {
    added->Iterations(1)->Repetitions(3);
  } else {
    added->MinTime(0.2)->Repetitions(5);
  }
}

void add_all() {
  for (const Kind& kind : kKinds) {
    const auto texts =
        std::make_shared<std::vector<std::string>>(1, joined_documents(kind, kMegabyte));
    for (const Candidate& candidate : candidates(kind.enca_language)) {
      add(
          kind.name, candidate, texts, [&](size_t) -> const Kind& { return kind; }, false);
    }
  }
  const auto kind_of = [](size_t i) -> const Kind& { return kKinds[i % std::size(kKinds)]; };
  for (const size_t size : {4096, 200}) {
    const auto texts =
        std::make_shared<std::vector<std::string>>(short_documents(kNbDocuments, size));
    const std::string what = size == 200 ? "docs200B" : "docs4KB";
    for (const Candidate& candidate : candidates(nullptr)) {
      add(what, candidate, texts, kind_of, true);
    }
  }
  const auto texts =
      std::make_shared<std::vector<std::string>>(1, joined_documents(kKinds[0], 100 * kMegabyte));
  for (const Candidate& candidate : candidates(nullptr)) {
    add("100MB", candidate, texts, kind_of, true);
  }
}

void add_open() {
  const auto time_to = [](const char* name, const auto& open) {
    benchmark::RegisterBenchmark(name,
                                 [open](benchmark::State& state) {
                                   for (auto _ : state) benchmark::DoNotOptimize(open());
                                 })
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true);
  };
  time_to("open/pemb", [] { return make_pemb(models_dir()); });
  time_to("open/orva", [] { return make_orva(models_dir(), false); });
}

int64_t resident_bytes() {
  FILE* statm = fopen("/proc/self/statm", "r");
  long pages = 0;
  if (statm == nullptr || fscanf(statm, "%*d %ld", &pages) != 1) abort();
  fclose(statm);
  return int64_t{pages} * sysconf(_SC_PAGESIZE);
}

// Notes how many resident bytes a process of its own gains by opening, and by then detecting a text
// of each kind.
void note_memory(const char* name, const std::function<std::unique_ptr<Detector>()>& open) {
  int ends[2];
  if (pipe(ends) != 0) abort();
  const pid_t child = fork();
  if (child == 0) {
    std::vector<std::string> texts;
    for (const Kind& kind : kKinds) texts.push_back(joined_documents(kind, kMegabyte));
    const int64_t before = resident_bytes();
    const std::unique_ptr<Detector> detector = open();
    int64_t gained[2] = {resident_bytes() - before, 0};
    for (const std::string& text : texts) detector->detect(text);
    gained[1] = resident_bytes() - before;
    const bool written = write(ends[1], gained, sizeof gained) == sizeof gained;
    _exit(written ? 0 : 1);
  }
  int64_t gained[2];
  if (child < 0 || read(ends[0], gained, sizeof gained) != sizeof gained) abort();
  waitpid(child, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  benchmark::AddCustomContext(std::string("resident_open_") + name, std::to_string(gained[0]));
  benchmark::AddCustomContext(std::string("resident_used_") + name, std::to_string(gained[1]));
}

void note_memory() {
  struct stat file;
  if (stat((models_dir() + "/Model.grp").c_str(), &file) != 0) abort();
  benchmark::AddCustomContext("group_file", std::to_string(file.st_size));
  note_memory("pemb", [] { return make_pemb(models_dir()); });
  note_memory("orva", [] { return make_orva(models_dir(), false); });
}

}  // namespace
}  // namespace orva::bench

int main(int argc, char** argv) {
  using namespace orva::bench;
  benchmark::Initialize(&argc, argv);
  if (joined_documents(kKinds[0], 1).empty()) {
    fprintf(stderr, "speed_bench: ORVA_EVAL names no folder of labelled documents\n");
    return 1;
  }
  note_memory();
  add_all();
  add_open();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
