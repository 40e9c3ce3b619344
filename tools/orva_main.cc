// The program: command line only. What each command does stands in a file of its own.
#include <CLI/CLI.hpp>

#include "tools/commands.h"

namespace {

void add_detect(CLI::App* app, orva::DetectOptions* options) {
  CLI::App* command = app->add_subcommand("detect", "Name charset and language of documents");
  command->add_option("--models", options->models, "Folder of Model.grp and Model.stc");
  command->add_option("--block", options->block,
                      "Bytes fed at a time, 0 for the whole document at once")
      ->check(CLI::Range(0U, 0x7FFFFFFFU))
      ->capture_default_str();
  command->add_flag("--json", options->json, "Print one JSON object a line");
  command->add_flag("--recursive,-r", options->recursive, "Go into directories");
  command->add_option("FILE", options->files, "Documents; - is standard input");
}

void add_score(CLI::App* app, orva::ScoreOptions* options) {
  CLI::App* command = app->add_subcommand("score", "Print every model's mean cost per byte");
  command->add_option("--group", options->group, "Model group file")->required();
  command->add_flag("--strip-markup", options->strip_markup, "Strip markup first");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
}

void add_info(CLI::App* app, orva::InfoOptions* options) {
  CLI::App* command = app->add_subcommand("info", "Tell what a model file holds");
  command->add_option("FILE", options->file, "Model group or Model.stc")->required();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Orva names the language and the character set of undeclared bytes.", "orva");
  app.set_version_flag("--version", "orva " ORVA_VERSION);
  app.require_subcommand(1);
  orva::DetectOptions detect;
  orva::ScoreOptions score;
  orva::InfoOptions info;
  add_detect(&app, &detect);
  add_score(&app, &score);
  add_info(&app, &info);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? orva::kExitOk : orva::kExitError;
  }
  if (app.got_subcommand("detect")) return orva::run_detect(detect);
  if (app.got_subcommand("score")) return orva::run_score(score);
  return orva::run_info(info);
}
