// quillmere-cli: Quillmere without a window.
#include <exception>
#include <sstream>

#include "cli/command.h"

namespace quillmere::cli {
namespace {

int Run(int argc, char** argv) {
  CLI::App app("Replicates Oracle databases: data sources, jobs and their running.",
               "quillmere-cli");
  CommandLine line;
  app.add_option("--workdir", line.workdir, "working folder (default: the current one)")
      ->type_name("DIR");
  app.add_option("--client", line.client, "client library: oracle, sandbox or a path")
      ->type_name("CLIENT");
  app.add_flag("--debug", line.debug, "more messages; what is mined and executed goes to a log");
  app.require_subcommand(1);
  app.fallthrough();  // these options may stand behind the command, too
  AddSourceCommands(app, line);
  AddJobCommands(app, line);
  AddRunCommand(app, line);
  AddSqlCommand(app, line);
  AddSchemaCommands(app, line);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    if (app.exit(error, out, err) == 0) return Print(out.str());  // it was --help
    // That a command is missing is no answer to one that was mistyped.
    const std::vector<std::string> unknown = app.remaining(true);
    if (error.get_name() == "RequiredError" && !unknown.empty()) {
      err.str("There is no command " + OneLine(unknown.front()) +
              "\nRun with --help for more information.\n");
    }
    Write(Stream::Error, err.str());
    return kWrongUsage;
  }
  return line.action();
}

}  // namespace
}  // namespace quillmere::cli

int main(int argc, char** argv) {
  using namespace quillmere::cli;
  PrepareStreams();
  try {
    return Run(argc, argv);
  } catch (const std::exception& failure) {
    return Fail(std::string("Given up: ") + failure.what());
  }
}
