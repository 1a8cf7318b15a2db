// list FILE vendors|machines|materials: one name per line.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "json_output.h"
#include "load_database.h"

namespace slb {
namespace {

struct ListOptions {
  std::string file;
  std::string table;
  bool json = false;
};

int RunList(const ListOptions& options) {
  Sparlane::Database db;
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  const auto names = options.table == "vendors"    ? db.GetVendors()
                     : options.table == "machines" ? db.GetMachines()
                                                   : db.GetMaterials();
  if (options.json) {
    std::fputs(JsonText(Json(names)).c_str(), stdout);
  } else {
    for (const auto& name : names) std::printf("%s\n", name.c_str());
  }
  return kExitOk;
}

}  // namespace

void RegisterListCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<ListOptions>();
  auto* command = app.add_subcommand("list", "List the vendors, machine models or materials");
  command->add_option("file", options->file, "Parameter file (.slb)")->required();
  command->add_option("table", options->table, "vendors, machines or materials")
      ->required()
      ->check(CLI::IsMember({"vendors", "machines", "materials"}));
  command->add_flag("--json", options->json, "Machine-readable output");
  command->callback([options, &status] { status = RunList(*options); });
}

}  // namespace slb
