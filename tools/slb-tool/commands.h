// The subcommands of slb-tool.  Each Register function adds one subcommand
// whose callback runs it and stores its exit status in status.
#ifndef SLB_TOOL_COMMANDS_H_
#define SLB_TOOL_COMMANDS_H_

namespace CLI {
class App;
}

namespace slb {

void RegisterInfoCommand(CLI::App& app, int& status);
void RegisterValidateCommand(CLI::App& app, int& status);
void RegisterListCommand(CLI::App& app, int& status);
void RegisterRangeCommand(CLI::App& app, int& status);
void RegisterQueryCommand(CLI::App& app, int& status);
void RegisterOptimalCommand(CLI::App& app, int& status);
void RegisterCalcCommand(CLI::App& app, int& status);
void RegisterExportCommand(CLI::App& app, int& status);
void RegisterBuildCommand(CLI::App& app, int& status);

}  // namespace slb

#endif  // SLB_TOOL_COMMANDS_H_
