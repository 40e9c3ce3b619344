// The program: command line only. What each command does stands in a file of its own.
#include <CLI/CLI.hpp>

#include "tools/commands.h"

namespace {

void add_detect(CLI::App* app, orva::DetectOptions* options) {
  CLI::App* command = app->add_subcommand("detect", "Name charset and language of documents");
  command->add_option("--models", options->models, "Folder of Model.grp and Model.stc");
  command
      ->add_option("--block", options->block,
                   "Bytes fed at a time, 0 for the whole document at once; implies --classic")
      ->check(CLI::Range(0U, 0x7FFFFFFFU))
      ->capture_default_str();
  command->add_flag("--classic", options->classic, "Answer as the component does");
  command->add_flag("--json", options->json, "Print one JSON object a line");
  command->add_flag("--recursive,-r", options->recursive, "Go into directories");
  command->add_flag("--all", options->all, "Read whole documents, not only their beginning");
  command->add_option("--charsets", options->charsets, "Answer only these charsets (A,B,...)")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--languages", options->languages, "Answer only these languages (A,B,...)")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--not", options->excluded, "Never answer these charsets (A,B,...)")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--names", options->names, "Name charsets as these readers do")
      ->check(CLI::IsMember({"iana", "iconv", "python", "web"}));
  command->add_flag("--list", options->list, "Print the known charsets and languages");
  command->add_option("FILE", options->files, "Documents; - is standard input");
}

void add_score(CLI::App* app, orva::ScoreOptions* options) {
  CLI::App* command = app->add_subcommand("score", "Print every model's mean cost per byte");
  command->add_option("--group", options->group, "Model group file")->required();
  command->add_flag("--strip-markup", options->strip_markup, "Strip markup first");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
}

// Shares lie in [0, 1] and the trigram weight in [0, 1): at 1 the single bytes would count nothing,
// and a byte that was never seen would have no cost.
const CLI::Validator kWeight(
    [](std::string& text) {
      float value = -1;
      const bool ok = CLI::detail::lexical_cast(text, value) && value >= 0 && value < 1;
      return ok ? std::string() : std::string("must be at least 0 and below 1");
    },
    "in [0, 1)");

void add_train(CLI::App* app, orva::TrainOptions* options) {
  CLI::App* command = app->add_subcommand("train", "Train one model from texts");
  command->add_option("--output,-o", options->output, "Model file to write")->required();
  command->add_option("--max-tri", options->max_tri, "Most trigrams kept")
      ->check(CLI::Range(1, 100000000))
      ->capture_default_str();
  command->add_option("--min-freq", options->min_freq, "Fewest occurrences of a kept trigram")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  command->add_option("--weight", options->weight, "Weight of the trigram against the single byte")
      ->check(kWeight)
      ->capture_default_str();
  command->add_option("--coverage", options->coverage, "Share of the text that kept trigrams cover")
      ->check(CLI::Range(0.0F, 1.0F))
      ->capture_default_str();
  command
      ->add_option("--preprocess", options->preprocess,
                   "D cut runs, C fold capitals, X drop digits, B drop blanks")
      ->capture_default_str();
  command->add_option("--charset", options->charset, "Convert UTF-8 texts to this charset first");
  command->add_option("TEXT", options->texts, "Training texts")->required();
}

void add_group(CLI::App* app, orva::GroupOptions* options) {
  CLI::App* command = app->add_subcommand(
      "group", "Compile models into a group, or change a compiled group (--add, --drop)");
  command->add_option("--output,-o", options->output, "Group file to write, folder when changing")
      ->required();
  command->add_option("--facts", options->facts, "File of the sets of models that share values");
  command->add_option("--stc", options->stc, "Table of charset names to write (Model.stc)");
  command->add_flag("-v,--verbose", options->verbose, "Print the statistics of the build");
  command->add_flag("--force", options->force, "Write a group that exceeds a limit of the format");
  CLI::Option* models =
      command->add_option("MODEL", options->models, "Models, named by language and charset");
  CLI::Option* base = command->add_option("--models", options->base,
                                          "Folder of the group to change; the shipped one if none");
  CLI::Option* add =
      command->add_option("--add", options->added, "Put this model beside the others")
          ->allow_extra_args(false);
  CLI::Option* drop = command->add_option("--drop", options->dropped, "Leave out this model")
                          ->allow_extra_args(false);
  for (CLI::Option* change : {base, add, drop}) {
    for (const char* other : {"MODEL", "--facts", "--stc"})
      change->excludes(command->get_option(other));
  }
  command->callback([=] {
    options->changes = base->count() + add->count() + drop->count() > 0;
    if (!options->changes && models->count() == 0) throw CLI::RequiredError("MODEL");
  });
}

void add_export(CLI::App* app, orva::ExportOptions* options) {
  CLI::App* command = app->add_subcommand("export", "Write a group as C tables");
  command->add_option("GROUP", options->group, "Model group file")->required();
  command->add_option("DIR", options->dir, "Folder for hardcoded_mg.C and hardcoded_mg.H")
      ->required();
}

void add_eval(CLI::App* app, orva::EvalOptions* options) {
  CLI::App* command = app->add_subcommand("eval", "Measure the answers on labelled documents");
  command->add_option("--models", options->models, "Folder of Model.grp and Model.stc");
  command->add_flag("--all", options->all, "Read whole documents, not only their beginning");
  command->add_flag("--json", options->json, "Print one JSON object instead of tables");
  command->add_option("--svg", options->svg, "Picture to write");
  CLI::Option* piece = command->add_option(
      "--piece", options->piece, "Read the pieces that this column gives as OFFSET:LENGTH");
  command
      ->add_option("--window", options->window,
                   "Read this many bytes of each document, from its first non-ASCII text")
      ->check(CLI::Range(1U, 0x1000000U))
      ->excludes(piece);
  command->add_option("MANIFEST", options->manifest, "Table of documents, charsets and languages")
      ->required();
}

void add_info(CLI::App* app, orva::InfoOptions* options) {
  CLI::App* command = app->add_subcommand("info", "Tell what a model file holds");
  command->add_option("FILE", options->file,
                      "Model group, Model.stc, trained model, or a folder; none: built-in models");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Orva names the language and the character set of undeclared bytes.", "orva");
  app.set_version_flag("--version", "orva " ORVA_VERSION);
  app.require_subcommand(1);
  orva::DetectOptions detect;
  orva::ScoreOptions score;
  orva::TrainOptions train;
  orva::GroupOptions group;
  orva::ExportOptions exported;
  orva::EvalOptions eval;
  orva::InfoOptions info;
  add_detect(&app, &detect);
  add_score(&app, &score);
  add_train(&app, &train);
  add_group(&app, &group);
  add_export(&app, &exported);
  add_eval(&app, &eval);
  add_info(&app, &info);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? orva::kExitOk : orva::kExitError;
  }
  if (app.got_subcommand("detect")) {
    // Only the component's path depends on how a document is cut.
    if (app.get_subcommand("detect")->count("--block") > 0) detect.classic = true;
    return orva::run_detect(detect);
  }
  if (app.got_subcommand("score")) return orva::run_score(score);
  if (app.got_subcommand("train")) return orva::run_train(train);
  if (app.got_subcommand("group")) {
    return group.changes ? orva::change_group(group) : orva::run_group(group);
  }
  if (app.got_subcommand("export")) return orva::run_export(exported);
  if (app.got_subcommand("eval")) return orva::run_eval(eval);
  return orva::run_info(info);
}
