// info FILE: header fields, statistics and load time.
#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "json_writer.h"
#include "load_database.h"
#include "number_format.h"
#include "text_table.h"

namespace slb {
namespace {

struct InfoOptions {
  std::string file;
  bool json = false;
};

// The public API has no header accessor, so the first 1024 bytes are read
// here.  Little-endian hosts only, like the file format itself.
bool ReadHeader(const std::string& path, Sparlane::FileHeader& header) {
  std::ifstream in(path, std::ios::binary);
  char bytes[sizeof(Sparlane::FileHeader)];
  if (!in.read(bytes, sizeof bytes)) return false;
  std::memcpy(&header, bytes, sizeof header);
  return true;
}

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
  std::string path;
  const auto start = std::chrono::steady_clock::now();
  if (!LoadDatabase(db, options.file, &path)) return kExitFailure;
  const double load_ms =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  Sparlane::FileHeader header{};
  if (!ReadHeader(path, header)) return Fail("cannot read the header of " + options.file);
  const auto stats = db.GetStatistics();

  if (options.json) {
    JsonWriter json;
    json.BeginObject();
    json.Key("file").String(options.file);
    json.Key("version").String(std::to_string(header.version_major) + "." +
                               std::to_string(header.version_minor));
    json.Key("created_time").Integer(header.created_time);
    json.Key("created").String(CreationDate(header.created_time));
    json.Key("creator").String(CreatorName(header));
    json.Key("compression").String(CompressionName(header.compression));
    json.Key("header_counts").BeginObject();
    json.Key("parameters").Integer(header.parameter_count);
    json.Key("vendors").Integer(header.vendor_count);
    json.Key("machines").Integer(header.machine_count);
    json.Key("materials").Integer(header.material_count);
    json.EndObject();
    json.Key("statistics").BeginObject();
    json.Key("parameters").Integer(stats.parameter_count);
    json.Key("vendors").Integer(stats.vendor_count);
    json.Key("machines").Integer(stats.machine_count);
    json.Key("materials").Integer(stats.material_count);
    json.Key("consumable_sets").Integer(stats.consumable_set_count);
    json.Key("file_size_bytes").Integer(static_cast<std::int64_t>(stats.file_size_bytes));
    json.Key("uncompressed_size").Integer(static_cast<std::int64_t>(stats.uncompressed_size));
    json.Key("compression_ratio").Float(stats.compression_ratio);
    json.EndObject();
    json.Key("load_time_ms").Double(load_ms);
    json.EndObject();
    std::fputs(json.Text().c_str(), stdout);
    return kExitOk;
  }

  TextTable table({}, 2);
  table.AddRow({"file", options.file});
  table.AddRow({"version", std::to_string(header.version_major) + "." +
                               std::to_string(header.version_minor)});
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
  table.AddRow({"compression ratio", FormatNumber(stats.compression_ratio)});
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
