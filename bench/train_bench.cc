// Speed of training and of building a group, and how training's memory follows the text.
//
// The text is made, not found: words of 1 to 9 letters, drawn with falling likelihood from a
// vocabulary of 20000, so that trigrams repeat about as they do in a language while their number
// stays bounded. Every benchmark checks its answer before it is timed.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "lib/api/pemb.h"
#include "lib/facs/lid_facs.h"
#include "lib/trichr/trichr_model.h"
#include "lib/trichr/trigram_counter.h"
#include "lib/util/accounting.h"

namespace {

constexpr int kNbModels = 26;

std::string made_text(size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::string> words(20000);
  for (std::string& word : words) {
    const size_t length = 1 + random() % 9;
    for (size_t i = 0; i < length; ++i) {
      word.push_back(static_cast<char>('a' + std::min(random() % 26, random() % 26)));
    }
  }
  std::string text;
  while (text.size() < size) {
    text += words[random() % (1 + random() % words.size())];
    text.push_back(' ');
  }
  text.resize(size);
  return text;
}

std::string written(const std::string& name, const std::string& bytes) {
  FILE* file = fopen(name.c_str(), "wb");
  if (file == nullptr || fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) abort();
  fclose(file);
  return name;
}

void train(CTrichrModel& model, const std::string& path) {
  CLidFacs facs;
  if (facs.init(path.c_str(), 0, 0, -1, 1, 1, 1, 0) == 0) abort();
  model.build(facs, 4000, 0, 0.9f, 0.0f, 1, 1, 1, 0);
}

// Accounted bytes while a text is counted: what training needs beyond the model that it leaves.
int counting_bytes(const std::string& text) {
  const int before = _MallocChkNbBytes;
  orva::TrigramCounter counter;
  counter.add(reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
  return _MallocChkNbBytes - before;
}

void Train(benchmark::State& state) {
  const auto size = static_cast<size_t>(state.range(0)) * 1000000;
  const std::string text = made_text(size, 1);
  const std::string path = written("train_bench.txt", text);
  state.counters["counting_bytes"] = counting_bytes(text);
  CTrichrModel model;
  train(model, path);
  if (model.nb_tri != 4000) return state.SkipWithError("not every trigram was kept");
  for (auto _ : state) train(model, path);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(size));
  remove(path.c_str());
}
BENCHMARK(Train)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

void BuildGroup(benchmark::State& state) {
  std::vector<std::string> files;
  for (unsigned m = 0; m < kNbModels; ++m) {
    CTrichrModel model;
    const std::string text = written("train_bench.txt", made_text(300000, m));
    train(model, text);
    files.push_back("./train_bench_" + std::to_string(m) + ".tri");
    if (model.save(files.back().c_str(), 0.9f) != 0) abort();
  }
  std::vector<char*> names;
  for (std::string& file : files) names.push_back(file.data());
  const char out[] = "train_bench.grp";
  if (pemb_group(nullptr, names.data(), kNbModels, nullptr, out) != 0) {
    return state.SkipWithError("the group was not built");
  }
  for (auto _ : state) pemb_group(nullptr, names.data(), kNbModels, nullptr, out);
  for (const std::string& file : files) remove(file.c_str());
  remove("train_bench.txt");
  remove(out);
}
BENCHMARK(BuildGroup)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
