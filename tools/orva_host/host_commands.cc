#include "tools/orva_host/host_commands.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/orva_host/document_run.h"
#include "tools/orva_host/small_host.h"

namespace orva {
namespace {

using Json = nlohmann::ordered_json;

constexpr char kMsgError[] = "orva-host: %s: %s\n";
constexpr char kMsgUnload[] = "library can be unloaded: %s\n";

void report(const std::string& name, const std::string& reason) {
  fprintf(stderr, kMsgError, name.c_str(), reason.c_str());
}

// Registers or unregisters. The file is written even when the component failed, with what it did.
int change_registry(const HostOptions& options,
                    bool (SmallHost::*change)(const std::string&, std::string*)) {
  std::string error;
  SmallHost host(options.models, options.faults);
  if (!load_registry(options.registry_file, &host.data(), &error)) {
    report(options.registry_file, error);
    return kHostError;
  }
  const bool changed = (host.*change)(options.library, &error);
  if (!changed) report(options.library, error);
  if (!save_registry(options.registry_file, host.data(), &error)) {
    report(options.registry_file, error);
    return kHostError;
  }
  return changed ? kHostOk : kHostError;
}

void print_json(const std::string& path, const DocumentRun& run) {
  Json object;
  object["path"] = path;
  object["notifications"] = Json::array();
  for (const Notification& told : run.notifications) {
    object["notifications"].push_back(told.charset);
  }
  object["result"] = run.answered ? Json(run.answer) : Json();
  printf("%s\n", object.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

void print_text(const std::string& path, const DocumentRun& run) {
  printf("%s\n", path.c_str());
  for (const Notification& told : run.notifications) {
    if (told.block == 0) {
      printf("  Done: %s\n", told.charset.c_str());
    } else {
      printf("  block %zu: %s\n", told.block, told.charset.c_str());
    }
  }
  printf("  answer after %zu block%s: %s\n", run.blocks, run.blocks == 1 ? "" : "s",
         run.answered ? run.answer.c_str() : "none");
}

bool detect_file(const HostOptions& options, ComponentManager* components,
                 const std::string& path) {
  DocumentRun run;
  std::string error;
  const bool ok = options.string_detector
                      ? run_string(components, path, &run, &error)
                      : run_streaming(components, path, options.block, &run, &error);
  if (!ok) {
    report(path, error);
    return false;
  }
  if (options.json) {
    print_json(path, run);
  } else {
    print_text(path, run);
  }
  return true;
}

}  // namespace

int run_register(const HostOptions& options) {
  return change_registry(options, &SmallHost::register_library);
}

int run_unregister(const HostOptions& options) {
  return change_registry(options, &SmallHost::unregister_library);
}

int run_list(const HostOptions& options) {
  RegistryData data;
  std::string error;
  if (!load_registry(options.registry_file, &data, &error)) {
    report(options.registry_file, error);
    return kHostError;
  }
  printf("%s", registry_text(data).c_str());
  return kHostOk;
}

int run_host_detect(const HostOptions& options) {
  SmallHost host(options.models, options.faults);
  std::string error;
  if (!host.register_library(options.library, &error)) {
    report(options.library, error);
    return kHostError;
  }
  bool ok = true;
  for (const std::string& path : options.files) {
    if (!detect_file(options, host.components(), path)) ok = false;
  }
  const bool free = host.can_unload(options.library);
  // With --json, standard output holds one object a line and nothing else.
  fprintf(options.json ? stderr : stdout, kMsgUnload, free ? "yes" : "no");
  return ok ? kHostOk : kHostError;
}

}  // namespace orva
