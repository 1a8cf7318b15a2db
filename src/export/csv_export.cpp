// Database::ExportToCSV: a header line, then one line per record with names
// in place of ids, streamed straight to the file.
#include <fstream>
#include <string>

#include "export/export_file.h"
#include "export/export_names.h"
#include "export/text_sink.h"
#include "store/store.h"

namespace Sparlane {
namespace {

void WriteCsvHeader(TextSink& sink) {
  sink.PutLiteral("vendor,machine_model,material,thickness_mm,cut_speed_mm_min,");
  sink.PutLiteral("cut_height_mm,pierce_height_mm,transfer_height_mm,arc_voltage_v,");
  sink.PutLiteral("pierce_time_s,kerf_width_mm,current_amps,flags\n");
}

void WriteCsvRecord(TextSink& sink, const CuttingParameter& p, const ExportNames& names) {
  sink.Put(names.vendors.ForId(p.vendor_id));
  sink.Put(',');
  sink.Put(names.machines.ForId(p.machine_model_id));
  sink.Put(',');
  sink.Put(names.materials.ForId(p.material_id));
  const float numbers[] = {p.thickness_mm,       p.cut_speed_mm_min, p.cut_height_mm,
                           p.pierce_height_mm,   p.transfer_height_mm, p.arc_voltage_v,
                           p.pierce_time_s,      p.kerf_width_mm};
  for (float value : numbers) {
    sink.Put(',');
    sink.PutFloat(value);
  }
  sink.Put(',');
  sink.PutUnsigned(p.current_amps);
  sink.Put(',');
  sink.PutUnsigned(p.flags);
  sink.Put('\n');
}

}  // namespace

ErrorCode Database::ExportToCSV(const std::string& path) {
  const Store& s = *impl_;
  return WriteExportFile(*impl_, path, CsvField, [&s](TextSink& sink, const ExportNames& names) {
    WriteCsvHeader(sink);
    for (const CuttingParameter& p : s.records()) WriteCsvRecord(sink, p, names);
  });
}

}  // namespace Sparlane
