// The commands of the program, one function each. They print their results to standard output and
// their errors, prefixed with "orva: ", to standard error.
//
// Results: 0 when every file got an answer, 1 when some got none, 2 for what could not be read,
//          loaded or written.
#ifndef ORVA_TOOLS_COMMANDS_H_
#define ORVA_TOOLS_COMMANDS_H_

#include <string>
#include <vector>

namespace orva {

enum ExitStatus { kExitOk = 0, kExitNoAnswer = 1, kExitError = 2 };

struct DetectOptions {
  std::string models;                  // folder of Model.grp and Model.stc; empty: the usual places
  unsigned block = 4096;               // bytes fed at a time on the classic path, 0 for all at once
  bool json = false;                   // one JSON object a line
  bool recursive = false;              // go into directories
  bool classic = false;                // what the component answers, instead of the modern detector
  bool all = false;                    // read whole documents instead of their beginning
  bool list = false;                   // print the known charsets and languages, and nothing else
  std::vector<std::string> charsets;   // answer only these, empty for any
  std::vector<std::string> languages;  // likewise
  std::vector<std::string> excluded;   // charsets never to be answered
  std::string names;                   // whose charset names to give: iana, iconv, python or web
  std::vector<std::string> files;      // "-" is standard input
};
int run_detect(const DetectOptions& options);

struct ScoreOptions {
  std::string group;
  bool strip_markup = false;
  std::string file;
};
int run_score(const ScoreOptions& options);

struct TrainOptions {
  std::string output;
  int max_tri = 4000;   // most trigrams kept
  int min_freq = 0;     // fewest occurrences of a kept trigram, 0 for any
  float weight = 0.9F;  // of the trigram against the single byte, in [0, 1)
  float coverage = 0;   // share of the text that kept trigrams cover, 0 for no such rule
  std::string preprocess = "DCX";
  std::string charset;  // convert from UTF-8 to it first; empty: texts are taken as they are
  std::vector<std::string> texts;
};
int run_train(const TrainOptions& options);

struct GroupOptions {
  std::string output;  // group file; of change_group the folder of the pair
  std::string facts;   // fact-set file, empty for none
  std::string stc;     // charset names to write beside, empty for none
  bool verbose = false;
  bool force = false;  // write a group that exceeds a limit of the format
  std::vector<std::string> models;
  bool changes = false;              // whether a compiled pair is to be changed
  std::string base;                  // folder of the pair to change; empty: the usual places
  std::vector<std::string> added;    // models to put beside those of the pair
  std::vector<std::string> dropped;  // names of models to leave out
};
int run_group(const GroupOptions& options);
// Makes a new pair of a compiled one.
int change_group(const GroupOptions& options);

struct ExportOptions {
  std::string group;
  std::string dir;
};
int run_export(const ExportOptions& options);

struct EvalOptions {
  std::string models;   // as for detect
  bool all = false;     // read whole documents instead of their beginning
  bool json = false;    // print one JSON object instead of tables
  std::string svg;      // picture to write, empty for none
  std::string piece;    // column of the manifest that gives the piece of each document to read
  unsigned window = 0;  // bytes of each document to read, from its first non-ASCII text; 0: all
  std::string manifest;
};
int run_eval(const EvalOptions& options);

struct InfoOptions {
  std::string file;
};
int run_info(const InfoOptions& options);

}  // namespace orva

#endif  // ORVA_TOOLS_COMMANDS_H_
