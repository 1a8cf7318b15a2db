// Database::Validate: header checksum, record count, every record, then the
// two record indexes.  The first finding wins; nothing is repaired.
#include <cstddef>
#include <cstdint>
#include <string>

#include "file/header_checksum.h"
#include "store/store.h"

namespace Sparlane {
namespace {

// first + count <= record_count, without wrapping.
bool SpanFits(std::uint64_t first, std::uint64_t count, std::uint64_t record_count) {
  return count <= record_count && first <= record_count - count;
}

ErrorCode CheckRecords(Store& s) {
  const NameTableSizes names = s.name_table_sizes();
  const std::vector<CuttingParameter>& records = s.records();
  for (std::size_t i = 0; i < records.size(); ++i) {
    const CuttingParameter& p = records[i];
    const RecordRule* broken = FirstBrokenRule(RecordCheck::kValidate, p, names);
    if (broken == nullptr) continue;
    std::string message = broken->failure;
    if (broken->faulted_id != nullptr) message += " " + std::to_string(p.*broken->faulted_id);
    return s.Fail(ErrorCode::InvalidData, message + " in parameter " + std::to_string(i));
  }
  return ErrorCode::Success;
}

ErrorCode CheckIndexes(Store& s) {
  const std::uint64_t record_count = s.records().size();
  const RecordIndexes& indexes = s.record_indexes();
  bool materials_fit = true;
  indexes.material_ranges.ForEach([&](std::uint16_t, const std::vector<ThicknessBucket>& list) {
    for (const ThicknessBucket& bucket : list) {
      materials_fit = materials_fit && SpanFits(bucket.first, bucket.count, record_count);
    }
  });
  if (!materials_fit) {
    return s.Fail(ErrorCode::InvalidData, "Thickness index points beyond parameter array");
  }
  bool machines_fit = true;
  indexes.machine_records.ForEach([&](std::uint16_t, const MachineSpan& span) {
    machines_fit = machines_fit && SpanFits(span.first, span.count, record_count);
  });
  if (!machines_fit) {
    return s.Fail(ErrorCode::InvalidData, "Machine index points beyond parameter array");
  }
  return ErrorCode::Success;
}

}  // namespace

ErrorCode Database::Validate() const {
  // The last-error text is the only thing written; it is mutable state of the
  // body by design.
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, "Database not loaded");

  const bool from_file = s.file() != nullptr && s.file()->view() != nullptr;
  if (from_file && HeaderChecksum(s.header()) != s.header().header_crc32) {
    return s.Fail(ErrorCode::ChecksumMismatch, "Header checksum mismatch");
  }

  const std::uint32_t header_count = s.header().parameter_count;
  if (s.records().size() != header_count) {
    return s.Fail(ErrorCode::InvalidData,
                  "Parameter count mismatch: header says " + std::to_string(header_count) +
                      ", actual is " + std::to_string(s.records().size()));
  }

  const ErrorCode records = CheckRecords(s);
  if (records != ErrorCode::Success) return records;
  return CheckIndexes(s);
}

}  // namespace Sparlane
