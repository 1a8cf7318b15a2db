// slb-tool: builds, inspects and queries sparlane parameter files.
// Exit status: 0 success, 1 failure, 2 usage error.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "commands.h"
#include "exit_status.h"

int main(int argc, char** argv) {
  CLI::App app{"slb-tool: build, inspect and query sparlane parameter files", "slb-tool"};
  app.require_subcommand(1, 1);
  // CLI11 reads "/x" as an option on Windows; paths such as /data/a.slb are
  // file names there too.  Set before the subcommands, which inherit it.
  app.allow_windows_style_options(false);
  int status = slb::kExitOk;
  slb::RegisterInfoCommand(app, status);
  slb::RegisterValidateCommand(app, status);
  slb::RegisterListCommand(app, status);
  slb::RegisterRangeCommand(app, status);
  slb::RegisterQueryCommand(app, status);
  slb::RegisterOptimalCommand(app, status);
  slb::RegisterCalcCommand(app, status);
  slb::RegisterExportCommand(app, status);
  slb::RegisterBuildCommand(app, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    // --help and friends are "errors" with exit code 0.
    if (e.get_exit_code() == 0) return app.exit(e);
    app.exit(e, std::cout, std::cerr);
    return slb::kExitUsage;
  } catch (const std::exception& e) {
    return slb::Fail(e.what());
  }
  return status;
}
