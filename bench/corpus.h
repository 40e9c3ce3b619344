// The texts that the benchmarks run on: real documents of one charset, put one after the other,
// from a folder of labelled documents (manifest.tsv and files/) that ORVA_EVAL names. Repeating one
// short text would make caches look better than they are on real ones.
#ifndef ORVA_BENCH_CORPUS_H_
#define ORVA_BENCH_CORPUS_H_

#include <cstddef>
#include <string>
#include <vector>

namespace orva::bench {

// Documents labelled `charset`, joined and repeated to exactly `size` bytes. Empty without
// documents.
std::string joined_documents(const std::string& charset, size_t size);

// `count` pieces of `size` bytes, cut from documents of several single-byte and multi-byte charsets
// in turn.
std::vector<std::string> short_documents(size_t count, size_t size);

}  // namespace orva::bench

#endif  // ORVA_BENCH_CORPUS_H_
