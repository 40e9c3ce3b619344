// The texts that the benchmarks run on: real documents of one charset and one language, put one
// after the other, from a folder of labelled documents (manifest.tsv and files/) that ORVA_EVAL
// names. Repeating one short text would make caches look better than they are on real ones; mixing
// languages would spread the text over more trigrams than a document has.
#ifndef ORVA_BENCH_CORPUS_H_
#define ORVA_BENCH_CORPUS_H_

#include <cstddef>
#include <string>
#include <vector>

namespace orva::bench {

// One kind of text.
struct Kind {
  const char* name;
  const char* charset;        // label of the documents
  const char* language;       // label of the documents
  const char* right[3];       // charsets that read such text right; none given: nearly all do
  const char* enca_language;  // what that detector must be told; null where it knows none
};
inline constexpr Kind kKinds[] = {
    {"latin1", "ISO-8859-1", "fr", {"ISO-8859-1", "windows-1252", "ISO-8859-15"}, nullptr},
    {"koi8r", "KOI8-R", "ru", {"KOI8-R"}, "ru"},
    {"cp1251", "windows-1251", "ru", {"windows-1251", "CP1251"}, "ru"},
    {"sjis", "Shift_JIS", "ja", {"Shift_JIS", "CP932", "windows-31J"}, nullptr},
    {"utf8", "UTF-8", "ru", {"UTF-8"}, "ru"},
    {"ascii", "ASCII", "en", {}, nullptr},
};

// Documents of a kind, joined to `size` bytes. Where the folder has fewer, the lines of documents
// of that language in UTF-8 follow as far as the charset can write them; then all is repeated.
// Empty without documents.
std::string joined_documents(const Kind& kind, size_t size);

// `count` pieces of about `size` bytes of each kind in turn, that of the n-th being kKinds[n %
// number of kinds], which start and end with a line.
std::vector<std::string> short_documents(size_t count, size_t size);

// Whether `answer` reads text of that kind right.
bool is_right(const Kind& kind, const std::string& answer);

}  // namespace orva::bench

#endif  // ORVA_BENCH_CORPUS_H_
