// Database::ExportToJSON: the name tables and every record in one document
// of fixed layout, streamed straight to the file.  Non-finite floats are
// written as the stream spells them, unguarded.
#include <fstream>
#include <string>
#include <vector>

#include "export/export_file.h"
#include "export/export_names.h"
#include "export/text_sink.h"
#include "store/store.h"

namespace Sparlane {
namespace {

// "  \"key\": [\"a\", \"b\"],\n" on one line.
void WriteNameList(TextSink& sink, const char* opening, const std::vector<std::string>& names) {
  sink.Put(opening, std::char_traits<char>::length(opening));
  bool first = true;
  for (const std::string& name : names) {
    if (!first) sink.PutLiteral(", ");
    first = false;
    sink.Put('"');
    sink.Put(JsonEscape(name));
    sink.Put('"');
  }
  sink.PutLiteral("],\n");
}

void WriteNameField(TextSink& sink, const char* key_piece, const std::string& escaped) {
  sink.Put(key_piece, std::char_traits<char>::length(key_piece));
  sink.Put(escaped);
  sink.PutLiteral("\",\n");
}

void WriteFloatField(TextSink& sink, const char* key_piece, float value) {
  sink.Put(key_piece, std::char_traits<char>::length(key_piece));
  sink.PutFloat(value);
  sink.PutLiteral(",\n");
}

void WriteJsonRecord(TextSink& sink, const CuttingParameter& p, const ExportNames& names) {
  sink.PutLiteral("    {\n");
  WriteNameField(sink, "      \"vendor\": \"", names.vendors.ForId(p.vendor_id));
  WriteNameField(sink, "      \"machine\": \"", names.machines.ForId(p.machine_model_id));
  WriteNameField(sink, "      \"material\": \"", names.materials.ForId(p.material_id));
  WriteFloatField(sink, "      \"thickness_mm\": ", p.thickness_mm);
  WriteFloatField(sink, "      \"cut_speed_mm_min\": ", p.cut_speed_mm_min);
  WriteFloatField(sink, "      \"cut_height_mm\": ", p.cut_height_mm);
  WriteFloatField(sink, "      \"pierce_height_mm\": ", p.pierce_height_mm);
  WriteFloatField(sink, "      \"transfer_height_mm\": ", p.transfer_height_mm);
  WriteFloatField(sink, "      \"arc_voltage_v\": ", p.arc_voltage_v);
  WriteFloatField(sink, "      \"pierce_time_s\": ", p.pierce_time_s);
  WriteFloatField(sink, "      \"kerf_width_mm\": ", p.kerf_width_mm);
  sink.PutLiteral("      \"current_amps\": ");
  sink.PutUnsigned(p.current_amps);
  sink.PutLiteral(",\n");
  sink.PutLiteral("      \"flags\": ");
  sink.PutUnsigned(p.flags);
  sink.PutLiteral("\n");
  sink.PutLiteral("    }");
}

void WriteJsonDocument(TextSink& sink, const Store& s, const ExportNames& names) {
  sink.PutLiteral("{\n");
  // Always 1.0, whatever the loaded file's version fields say.
  sink.PutLiteral("  \"version\": \"");
  sink.PutUnsigned(1);
  sink.PutLiteral(".");
  sink.PutUnsigned(0);
  sink.PutLiteral("\",\n");
  WriteNameList(sink, "  \"vendors\": [", s.names(NameKind::kVendor).names);
  WriteNameList(sink, "  \"machines\": [", s.names(NameKind::kMachine).names);
  WriteNameList(sink, "  \"materials\": [", s.names(NameKind::kMaterial).names);
  sink.PutLiteral("  \"parameters\": [\n");
  const std::vector<CuttingParameter>& records = s.records();
  const std::size_t count = records.size();
  for (std::size_t i = 0; i < count; ++i) {
    WriteJsonRecord(sink, records[i], names);
    if (i + 1 < count) sink.Put(',');
    sink.Put('\n');
  }
  sink.PutLiteral("  ]\n");
  sink.PutLiteral("}\n");
}

}  // namespace

ErrorCode Database::ExportToJSON(const std::string& path) {
  const Store& s = *impl_;
  return WriteExportFile(*impl_, path, JsonEscape, [&s](TextSink& sink, const ExportNames& names) {
    WriteJsonDocument(sink, s, names);
  });
}

}  // namespace Sparlane
