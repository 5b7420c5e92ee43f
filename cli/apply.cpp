// apply: carries out a plan, perhaps one that was written long ago or elsewhere.

#include <iostream>
#include <memory>
#include <unistd.h>

#include "changes/plan_json.h"
#include "cli/acting.h"
#include "cli/command.h"
#include "platform/descriptor.h"

namespace kestrel {
namespace {

std::string contentsOf(const std::string& path, const FileService& files) {
  if (path == "/dev/stdin") return Descriptor(::dup(STDIN_FILENO)).readAll(path);
  return files.readAll(path);
}

}  // namespace

void addApplyCommand(CLI::App& app, Action& chosen) {
  struct Options {
    std::string plan;
    bool json = false;
    GuardOptions guard{.cloudReplaces = false};
  };
  auto options = std::make_shared<Options>();
  CLI::App* command =
      app.add_subcommand("apply", "Carry out a plan that was written by plan, or by remove --json");
  command->add_option("PLAN", options->plan, "The file with the plan")->required();
  addGuardOptions(*command, options->guard);
  addCloudOption(*command, options->guard);
  command->add_flag("--json", options->json, "Write JSON");
  addFilesOptions(*command);
  setAction(*command, chosen, [options](Session& session) {
    const Plan plan = planFromJson(contentsOf(options->plan, session.files), options->plan);
    OpenedApplication opened(session, addressText(plan.library.uri));
    const ApplyReport report = opened.changes.apply(plan, opened.applyOptions(options->guard));
    Json result;
    const int status = tell(std::cout, report, options->json ? &result : nullptr);
    if (options->json) std::cout << dump(result, 1) << '\n';
    return status;
  });
}

}  // namespace kestrel
