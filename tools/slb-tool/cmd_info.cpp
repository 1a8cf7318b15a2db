// info FILE: header fields, statistics and load time.
#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "json_output.h"
#include "load_database.h"
#include "number_format.h"
#include "text_table.h"

namespace slb {
namespace {

struct InfoOptions {
  std::string file;
  bool json = false;
};

std::string CreationDate(std::int64_t seconds) {
  const std::time_t t = static_cast<std::time_t>(seconds);
  std::tm utc{};
#if defined(_WIN32)
  if (gmtime_s(&utc, &t) != 0) return std::to_string(seconds) + " s";
#else
  if (gmtime_r(&t, &utc) == nullptr) return std::to_string(seconds) + " s";
#endif
  char text[64];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &utc);
  return text;
}

std::string CreatorName(const Sparlane::FileHeader& header) {
  return std::string(header.creator, strnlen(header.creator, sizeof header.creator));
}

const char* CompressionName(std::uint8_t compression) {
  switch (compression) {
    case 0: return "none";
    case 1: return "lz4";
    case 2: return "reserved";
  }
  return "unknown";
}

int RunInfo(const InfoOptions& options) {
  Sparlane::Database db;
  const auto start = std::chrono::steady_clock::now();
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  const double load_ms =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  const Sparlane::FileHeader header = db.GetFileHeader();
  const auto stats = db.GetStatistics();
  const std::string version =
      std::to_string(header.version_major) + "." + std::to_string(header.version_minor);

  if (options.json) {
    const Json json = {
        {"file", options.file},
        {"version", version},
        {"created_time", header.created_time},
        {"created", CreationDate(header.created_time)},
        {"creator", CreatorName(header)},
        {"compression", CompressionName(header.compression)},
        {"header_counts",
         {{"parameters", header.parameter_count},
          {"vendors", header.vendor_count},
          {"machines", header.machine_count},
          {"materials", header.material_count}}},
        {"statistics",
         {{"parameters", stats.parameter_count},
          {"vendors", stats.vendor_count},
          {"machines", stats.machine_count},
          {"materials", stats.material_count},
          {"consumable_sets", stats.consumable_set_count},
          {"file_size_bytes", stats.file_size_bytes},
          {"uncompressed_size", stats.uncompressed_size},
          {"compression_ratio", JsonFloat(stats.compression_ratio)}}},
        {"load_time_ms", JsonFloat(static_cast<float>(load_ms))}};
    std::fputs(JsonText(json).c_str(), stdout);
    return kExitOk;
  }

  TextTable table({}, 2);
  table.AddRow({"file", options.file});
  table.AddRow({"version", version});
  table.AddRow({"created", CreationDate(header.created_time)});
  table.AddRow({"creator", CreatorName(header)});
  table.AddRow({"compression", CompressionName(header.compression)});
  table.AddRow({"parameters", std::to_string(stats.parameter_count)});
  table.AddRow({"vendors", std::to_string(stats.vendor_count)});
  table.AddRow({"machine models", std::to_string(stats.machine_count)});
  table.AddRow({"materials", std::to_string(stats.material_count)});
  table.AddRow({"consumable sets", std::to_string(stats.consumable_set_count)});
  table.AddRow({"file size", std::to_string(stats.file_size_bytes) + " bytes"});
  table.AddRow({"uncompressed size", std::to_string(stats.uncompressed_size) + " bytes"});
  table.AddRow({"compression ratio", ShopNumber(stats.compression_ratio, Unit::kFactor)});
  char load_text[32];
  std::snprintf(load_text, sizeof load_text, "%.3f ms", load_ms);
  table.AddRow({"load time", load_text});
  std::fputs(table.Render("").c_str(), stdout);
  if (header.parameter_count != stats.parameter_count) {
    Warn("the header counts " + std::to_string(header.parameter_count) +
         " parameters, the file holds " + std::to_string(stats.parameter_count));
  }
  return kExitOk;
}

}  // namespace

void RegisterInfoCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<InfoOptions>();
  auto* command = app.add_subcommand("info", "Header fields, counts and load time of a file");
  command->add_option("file", options->file, "Parameter file (.slb)")->required();
  command->add_flag("--json", options->json, "Machine-readable output");
  command->callback([options, &status] { status = RunInfo(*options); });
}

}  // namespace slb
