// The parser trusts no count or offset from the file: a running cursor and
// the file size bound every read, and reservations are capped by what the
// remaining bytes could hold.
#include "file/file_parser.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "file/byte_order.h"
#include "file/header_check.h"
#include "file/header_codec.h"
#include "file/lz4_blocks.h"
#include "file/mapped_file.h"
#include "file/record_bytes_iterator.h"
#include "store/index_builder.h"
#include "store/large_pages.h"

namespace Sparlane {
namespace {

// Records are copied (or decoded) and indexed a slice at a time, while the
// slice is in cache; every so many bytes read, the file's pages behind the
// cursor go back to the system, so a load holds the records and about one
// window of the file, not the whole file besides.
constexpr std::size_t kSliceRecords = 1024;
constexpr std::uint64_t kReleaseWindow = std::uint64_t{1} << 20;

// Position in the mapped bytes.  pos may run past size after an unchecked
// skip; Left() is then 0 and every further read fails.
struct Cursor {
  const std::uint8_t* data;
  std::uint64_t size;
  std::uint64_t pos;
  MappedFile* file;  // whose pages are given back behind the cursor; may be null
  std::uint64_t released = 0;

  std::uint64_t Left() const { return pos < size ? size - pos : 0; }
  bool Has(std::uint64_t n) const { return pos <= size && n <= size - pos; }
  const std::uint8_t* Here() const { return data + pos; }

  // Gives back what lies behind the cursor once a window's worth has built up.
  void Release() {
    if (file == nullptr || pos < released + kReleaseWindow) return;
    file->ReleaseBefore(pos);
    released = pos;
  }
};

enum class TableForm { kPlain, kMachine };

// Entry bytes before the name: id, plus vendor_id for machines.
std::uint64_t FixedBytesBeforeName(TableForm form) { return form == TableForm::kMachine ? 4 : 2; }
std::uint64_t SmallestEntry(TableForm form) { return form == TableForm::kMachine ? 6 : 3; }

ErrorCode ReadNameTable(Cursor& c, TableForm form,
                        std::optional<std::vector<std::string>>& table) {
  if (!c.Has(8)) return ErrorCode::InvalidData;
  const std::uint64_t table_start = c.pos;
  const std::uint32_t entry_count = LoadLE32(c.Here());
  const std::uint32_t table_size = LoadLE32(c.Here() + 4);
  c.pos += 8;
  // table_size is only a bounds test; the entries are walked one by one.
  if (table_start + table_size > c.size) return ErrorCode::InvalidData;

  std::vector<std::string>& names = table.emplace();
  names.reserve(std::min<std::uint64_t>(entry_count, c.Left() / SmallestEntry(form)));
  for (std::uint32_t i = 0; i < entry_count; ++i) {
    const std::uint64_t skip = FixedBytesBeforeName(form);
    if (!c.Has(skip + 1)) return ErrorCode::InvalidData;
    const std::uint8_t name_length = c.Here()[skip];
    c.pos += skip + 1;
    if (!c.Has(name_length)) return ErrorCode::InvalidData;
    names.emplace_back(reinterpret_cast<const char*>(c.Here()), name_length);
    c.pos += name_length;
    if (form == TableForm::kMachine) {
      if (!c.Has(1)) return ErrorCode::InvalidData;
      const std::uint8_t extra_length = c.Here()[0];
      // Skipped unchecked: a run past the end fails at the next read.
      c.pos += 1 + static_cast<std::uint64_t>(extra_length);
    }
  }
  return ErrorCode::Success;
}

using RecordsPart = std::optional<std::vector<CuttingParameter>>;

ErrorCode ReadRawRecords(Cursor& c, std::uint32_t count, RecordsPart& part, IndexBuilder& index) {
  const std::uint64_t bytes = static_cast<std::uint64_t>(count) * sizeof(CuttingParameter);
  if (!c.Has(bytes)) return ErrorCode::InvalidData;
  std::vector<CuttingParameter>& out = part.emplace();
  ReserveLargeArray(out, count);
  index.Reserve(count);
  PrefaultAhead<CuttingParameter> room;
  for (std::size_t done = 0; done < count;) {
    const std::size_t n = std::min<std::size_t>(kSliceRecords, count - done);
    room.Before(out, n);
    RecordBytesIterator first(c.Here());
    out.insert(out.end(), first, first + static_cast<std::ptrdiff_t>(n));
    index.Add(out.data() + done, n);
    done += n;
    c.pos += n * sizeof(CuttingParameter);
    c.Release();
  }
  return ErrorCode::Success;
}

ErrorCode ReadLz4Records(Cursor& c, std::uint32_t count, RecordsPart& part, IndexBuilder& index) {
  std::vector<CuttingParameter>& out = part.emplace();
  // No more than the remaining bytes could decode to.
  const std::uint64_t reachable = MaxLz4Expansion(c.Left()) / sizeof(CuttingParameter);
  const auto expected = static_cast<std::size_t>(std::min<std::uint64_t>(count, reachable));
  ReserveLargeArray(out, expected);
  index.Reserve(expected);
  PrefaultAhead<CuttingParameter> room;
  while (out.size() < count) {
    if (!c.Has(kBlockHeadSize)) return ErrorCode::InvalidParameter;
    const std::uint32_t raw_size = LoadLE32(c.Here());
    const std::uint32_t compressed_size = LoadLE32(c.Here() + 4);
    if (compressed_size == 0 || raw_size == 0 || !c.Has(kBlockHeadSize + compressed_size) ||
        raw_size % sizeof(CuttingParameter) != 0) {
      return ErrorCode::InvalidData;
    }
    const std::size_t before = out.size();
    room.Before(out, raw_size / sizeof(CuttingParameter));
    const ErrorCode code = DecodeLz4Block(c.Here() + kBlockHeadSize, compressed_size, raw_size, out);
    if (code != ErrorCode::Success) return code;
    index.Add(out.data() + before, out.size() - before);
    c.pos += kBlockHeadSize + compressed_size;
    c.Release();
  }
  return ErrorCode::Success;
}

ErrorCode ReadParameterData(Cursor& c, const FileHeader& header, RecordsPart& out,
                            IndexBuilder& index) {
  switch (static_cast<CompressionType>(header.compression)) {
    case CompressionType::None:
      return ReadRawRecords(c, header.parameter_count, out, index);
    case CompressionType::LZ4:
      return ReadLz4Records(c, header.parameter_count, out, index);
    case CompressionType::Reserved:
      // No data is stored; the loaded table is empty whatever the count says.
      out.emplace();
      return ErrorCode::Success;
  }
  return ErrorCode::CorruptedFile;  // unreachable: the header check refuses > 2
}

ErrorCode Parse(const std::uint8_t* data, std::uint64_t size, MappedFile* file,
                StoreParts& parts) {
  if (size < kHeaderSize) return ErrorCode::CorruptedFile;
  const FileHeader header = DecodeHeader(data);
  const ErrorCode header_code = CheckHeaderForLoad(header, data, size);
  if (header_code != ErrorCode::Success) return header_code;
  parts.header = header;

  // The section offsets were only tested; reading goes back to back.
  Cursor c{data, size, kHeaderSize, file};
  ErrorCode code = ReadNameTable(c, TableForm::kPlain, parts.vendors);
  if (code == ErrorCode::Success) code = ReadNameTable(c, TableForm::kMachine, parts.machines);
  if (code == ErrorCode::Success) code = ReadNameTable(c, TableForm::kPlain, parts.materials);
  if (code != ErrorCode::Success) return code;
  IndexBuilder index;
  code = ReadParameterData(c, header, parts.records, index);
  if (code != ErrorCode::Success) return code;
  StoreIndexes& built = parts.indexes.emplace();
  index.Finish(*parts.records, built.records, built.positions);
  if (file != nullptr) file->ReleaseBefore(c.pos);
  return ErrorCode::Success;
}

}  // namespace

ErrorCode ParseParameterFile(const std::uint8_t* data, std::uint64_t size, StoreParts& parts) {
  return Parse(data, size, nullptr, parts);
}

ErrorCode ParseParameterFile(MappedFile& file, StoreParts& parts) {
  return Parse(file.view(), file.size(), &file, parts);
}

}  // namespace Sparlane
