// orva-host: command line of the small host. What each command does stands in host_commands.cc.
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/orva_host/host_commands.h"

namespace {

void add_common(CLI::App* command, orva::HostOptions* options, std::vector<std::string>* faults) {
  command->add_option("--registry", options->registry_file, "Registry file")->capture_default_str();
  command->add_option("--fail", *faults, "Make a service fail, to see how a component takes it")
      ->check(CLI::IsMember(orva::fault_names()))
      ->take_all();
}

void add_library(CLI::App* command, orva::HostOptions* options) {
  command->add_option("LIB", options->library, "Component library")->required();
}

void add_detect(CLI::App* command, orva::HostOptions* options) {
  auto* string = command->add_flag("--string", options->string_detector,
                                   "Hand each document over whole to the string detector");
  command->add_flag("--stream")
      ->description("Feed each document to the streaming detector (the default)")
      ->excludes(string);
  command
      ->add_option("--block", options->block,
                   "Bytes fed at a time, 0 for the whole document at once")
      ->check(CLI::Range(0U, 0x7FFFFFFFU))
      ->capture_default_str();
  command->add_option("--models", options->models, "Folder of Model.grp and Model.stc")
      ->capture_default_str();
  command->add_flag("--json", options->json, "Print one JSON object a file");
  add_library(command, options);
  command->add_option("FILE", options->files, "Documents; - is standard input")->required();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("orva-host loads the detector as a component and runs documents through it.",
               "orva-host");
  app.require_subcommand(1);
  orva::HostOptions options;
  options.models = ORVA_MODELS_DIR;
  std::vector<std::string> faults;
  CLI::App* add = app.add_subcommand("register", "Register a component library");
  CLI::App* remove = app.add_subcommand("unregister", "Unregister a component library");
  CLI::App* list = app.add_subcommand("list", "Print what the registry file holds");
  CLI::App* detect = app.add_subcommand("detect", "Run documents through the component");
  for (CLI::App* command : {add, remove, list, detect}) add_common(command, &options, &faults);
  add_library(add, &options);
  add_library(remove, &options);
  add_detect(detect, &options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? orva::kHostOk : orva::kHostError;
  }
  for (const std::string& name : faults) orva::set_fault(name, &options.faults);
  if (*add) return orva::run_register(options);
  if (*remove) return orva::run_unregister(options);
  if (*list) return orva::run_list(options);
  return orva::run_host_detect(options);
}
