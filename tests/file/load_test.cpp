#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "file/file_parser.h"
#include "file_bytes.h"
#include "reference_parser.h"
#include "sparlane/sparlane.h"
#include "../support/store_seam.h"

using namespace Sparlane;
using namespace filetest;

namespace {

const char kParseMessage[] = "Failed to read binary format";

std::vector<CuttingParameter> SampleRecords(int n) {
  std::vector<CuttingParameter> r;
  for (int i = 0; i < n; ++i) r.push_back(SampleRecord(static_cast<std::uint16_t>(1 + i % 2),
                                                       1.0f + static_cast<float>(i), i % 200));
  return r;
}

class LoadTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = ScratchDir(::testing::UnitTest::GetInstance()->current_test_info()->name());
    ASSERT_FALSE(dir_.empty());
  }
  std::string Path(const std::string& name) const { return dir_ + "/" + name; }
  ErrorCode LoadBytes(Database& db, const Bytes& bytes, const std::string& name = "f.bin") {
    db.Close();  // a mapped file cannot be replaced everywhere; loading closes first anyway
    EXPECT_TRUE(WriteFile(Path(name), bytes));
    return db.LoadFromBinary(Path(name));
  }
  std::string dir_;
};

void ExpectStoreMatches(const Database& db, const FileContents& contents) {
  EXPECT_EQ(db.GetVendors(), contents.vendors);
  EXPECT_EQ(db.GetMachines(), contents.machines);
  EXPECT_EQ(db.GetMaterials(), contents.materials);
  const std::vector<CuttingParameter> records = db.GetParameters();
  ASSERT_EQ(records.size(), contents.records.size());
  for (std::size_t i = 0; i < contents.records.size(); ++i) {
    const CuttingParameter& a = records[i];
    const CuttingParameter& b = contents.records[i];
    EXPECT_EQ(a.vendor_id, b.vendor_id);
    EXPECT_EQ(a.machine_model_id, b.machine_model_id);
    EXPECT_EQ(a.material_id, b.material_id);
    EXPECT_EQ(a.aux_id, b.aux_id);
    EXPECT_EQ(a.thickness_mm, b.thickness_mm);
    EXPECT_EQ(a.cut_speed_mm_min, b.cut_speed_mm_min);
    EXPECT_EQ(a.cut_height_mm, b.cut_height_mm);
    EXPECT_EQ(a.pierce_height_mm, b.pierce_height_mm);
    EXPECT_EQ(a.transfer_height_mm, b.transfer_height_mm);
    EXPECT_EQ(a.arc_voltage_v, b.arc_voltage_v);
    EXPECT_EQ(a.pierce_time_s, b.pierce_time_s);
    EXPECT_EQ(a.kerf_width_mm, b.kerf_width_mm);
    EXPECT_EQ(a.current_amps, b.current_amps);
    EXPECT_EQ(0, std::memcmp(a.reserved_42, b.reserved_42, 6));
    EXPECT_EQ(a.flags, b.flags);
    EXPECT_EQ(0, std::memcmp(a.reserved_52, b.reserved_52, 12));
  }
}

FileContents GoldenContents(std::uint8_t compression, int records = 130) {
  FileContents s;
  s.vendors = {"Acme", "Borealis", "acme"};
  s.machines = {"Cutter 1", "Cutter 2"};
  s.materials = {"Mild Steel", "Stainless", "Alu\xC3\xA9"};
  s.records = SampleRecords(records);
  s.compression = compression;
  return s;
}

// The parser over bytes in memory (what a load runs after mapping the file),
// for the loops that try thousands of variants.
ErrorCode ParseBytes(const Bytes& f, StoreParts& parts) {
  return ParseParameterFile(f.data(), f.size(), parts);
}

void ExpectSameAsReference(const std::vector<std::string>& vendors,
                           const std::vector<std::string>& machines,
                           const std::vector<std::string>& materials,
                           const std::vector<CuttingParameter>& records,
                           const ReferenceResult& expected) {
  ASSERT_EQ(vendors, expected.vendors);
  ASSERT_EQ(machines, expected.machines);
  ASSERT_EQ(materials, expected.materials);
  ASSERT_EQ(records.size(), expected.records.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    ASSERT_TRUE(SameBytes(records[i], expected.records[i])) << "record " << i;
  }
}

// A successful parse fills every part.
void ExpectSameAsReference(const StoreParts& parts, const ReferenceResult& expected) {
  ASSERT_TRUE(parts.header && parts.vendors && parts.machines && parts.materials &&
              parts.records);
  ExpectSameAsReference(*parts.vendors, *parts.machines, *parts.materials, *parts.records,
                        expected);
}

void ExpectSameAsReference(const Database& db, const ReferenceResult& expected) {
  ExpectSameAsReference(db.GetVendors(), db.GetMachines(), db.GetMaterials(),
                        db.GetParameters(), expected);
}

}  // namespace

TEST_F(LoadTest, GoldenRawFileLoadsFieldByField) {
  const FileContents contents = GoldenContents(0);
  Database db;
  ASSERT_EQ(LoadBytes(db, BuildFile(contents)), ErrorCode::Success);
  EXPECT_TRUE(db.IsLoaded());
  ExpectStoreMatches(db, contents);
  const FileHeader header = db.GetFileHeader();
  EXPECT_EQ(header.created_time, 1700000000);
  EXPECT_EQ(header.parameter_count, 130u);
  EXPECT_EQ(db.GetVendorId("acme"), 3);
  EXPECT_EQ(db.GetVendorId("Acme"), 1);
  EXPECT_EQ(db.GetMaterialId("Stainless"), 2);
  EXPECT_EQ(db.GetMachineId("Cutter 2"), 2);
}

TEST_F(LoadTest, GoldenLz4FileLoadsFieldByField) {
  const FileContents contents = GoldenContents(1);  // 64 + 64 + 2 records
  Database db;
  ASSERT_EQ(LoadBytes(db, BuildFile(contents)), ErrorCode::Success);
  ExpectStoreMatches(db, contents);
}

TEST_F(LoadTest, IndexesAreRebuiltAfterLoad) {
  const FileContents contents = GoldenContents(0, 6);
  Database db;
  ASSERT_EQ(LoadBytes(db, BuildFile(contents)), ErrorCode::Success);
  const MaterialIndexView materials = DatabaseAccess::MaterialIndex(db);
  const MachineIndexView machines = DatabaseAccess::MachineIndex(db);
  ASSERT_EQ(materials.count(1), 1u);
  EXPECT_EQ(materials.at(1).front().count, 3u);
  ASSERT_EQ(machines.count(1), 1u);
  EXPECT_EQ(machines.at(1).second, 6u);
}

TEST_F(LoadTest, RepeatedNameMapsToItsLastId) {
  FileContents contents = GoldenContents(0, 0);
  contents.materials = {"Steel", "Alu", "Steel"};
  Database db;
  ASSERT_EQ(LoadBytes(db, BuildFile(contents)), ErrorCode::Success);
  EXPECT_EQ(db.GetMaterialId("Steel"), 3);
  EXPECT_EQ(db.GetMaterials().size(), 3u);
}

TEST_F(LoadTest, ZeroParametersLoadsAndCountsAsLoaded) {
  for (std::uint8_t compression : {0, 1}) {
    FileContents contents = GoldenContents(compression, 0);
    Layout layout;
    const Bytes file = BuildFile(contents, &layout);
    ASSERT_EQ(layout.data, file.size());  // data offset == file size is allowed
    Database db;
    ASSERT_EQ(LoadBytes(db, file), ErrorCode::Success);
    EXPECT_TRUE(db.IsLoaded());
    EXPECT_TRUE(db.GetParameters().empty());
  }
}

TEST_F(LoadTest, MachineExtraBytesAreSkipped) {
  FileContents contents = GoldenContents(0, 3);
  contents.machine_extra = {5, 0};
  Database db;
  ASSERT_EQ(LoadBytes(db, BuildFile(contents)), ErrorCode::Success);
  ExpectStoreMatches(db, contents);
}

TEST_F(LoadTest, TrailingBytesAreIgnored) {
  const FileContents contents = GoldenContents(1);
  Bytes file = BuildFile(contents);
  file.insert(file.end(), 100, 0xEE);
  Database db;
  ASSERT_EQ(LoadBytes(db, file), ErrorCode::Success);
  ExpectStoreMatches(db, contents);
}

TEST_F(LoadTest, MissingFileGivesFileNotFoundWithSanitisedPath) {
  Database db;
  const std::string path = dir_ + "/../nothing-here.bin";
  EXPECT_EQ(db.LoadFromBinary(path), ErrorCode::FileNotFound);
  EXPECT_EQ(db.GetLastError(), "Failed to open file: " + Testing::SanitizePath(path));
  EXPECT_EQ(db.GetLastError().find(".."), std::string::npos);
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(DatabaseAccess::File(db), nullptr);
}

TEST_F(LoadTest, ShortFileGivesCorruptedFileAtOpen) {
  Database db;
  EXPECT_EQ(LoadBytes(db, Bytes(1023, 0)), ErrorCode::CorruptedFile);
  EXPECT_EQ(db.GetLastError(), "Failed to open file: " + Path("f.bin"));
  EXPECT_EQ(DatabaseAccess::File(db), nullptr);
}

TEST_F(LoadTest, HeaderByte200ChangedIsCorruptedByte135IsNotNoticed) {
  Bytes file = BuildFile(GoldenContents(0));
  Bytes a = file;
  a[200] ^= 1;
  Database db;
  EXPECT_EQ(LoadBytes(db, a), ErrorCode::CorruptedFile);
  EXPECT_EQ(db.GetLastError(), kParseMessage);
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(DatabaseAccess::File(db), nullptr);
  Bytes b = file;
  b[135] ^= 0xFF;
  EXPECT_EQ(LoadBytes(db, b), ErrorCode::Success);
}

TEST_F(LoadTest, EachHeaderByteChangedGivesTheDocumentedResult) {
  const Bytes file = BuildFile(GoldenContents(0, 3));
  Database db;
  for (int offset = 0; offset < 1024; ++offset) {
    Bytes changed = file;
    changed[offset] ^= 0x01;
    ErrorCode expected = ErrorCode::CorruptedFile;  // checksum
    if (offset < 4) expected = ErrorCode::InvalidMagic;
    else if (offset < 6) expected = ErrorCode::UnsupportedVersion;
    else if (offset >= 132 && offset < 144) expected = ErrorCode::Success;
    ASSERT_EQ(LoadBytes(db, changed), expected) << "offset " << offset;
  }
}

TEST_F(LoadTest, EachHeaderByteChangedAndResealedMatchesTheRules) {
  const Bytes file = BuildFile(GoldenContents(1, 70));
  int failures_seen = 0;
  for (int offset = 0; offset < 1024; ++offset) {
    if (offset >= 128 && offset < 132) continue;  // the checksum itself
    for (std::uint8_t flip : {0x01, 0x80}) {
      Bytes changed = file;
      changed[offset] ^= flip;
      Reseal(changed);
      const ReferenceResult expected = ReferenceLoad(changed);
      StoreParts store;
      const ErrorCode got = ParseBytes(changed, store);
      ASSERT_EQ(got, expected.code) << "offset " << offset << " flip " << int(flip);
      if (got == ErrorCode::Success) {
        ExpectSameAsReference(store, expected);
      } else {
        ++failures_seen;
      }
    }
  }
  EXPECT_GT(failures_seen, 50);
}

TEST_F(LoadTest, TruncationAtEveryLengthMatchesTheRules) {
  for (std::uint8_t compression : {0, 1}) {
    Layout l;
    FileContents contents = GoldenContents(compression, 70);
    contents.machine_extra = {3};
    const Bytes file = BuildFile(contents, &l);
    Database db;
    for (std::size_t n = 1000; n < file.size(); ++n) {
      const Bytes cut(file.begin(), file.begin() + static_cast<long>(n));
      const ErrorCode got = LoadBytes(db, cut);
      ASSERT_EQ(got, ReferenceLoad(cut).code) << "length " << n;
      ASSERT_NE(got, ErrorCode::Success) << "length " << n;
    }
  }
}

TEST_F(LoadTest, TruncationAtSectionBoundariesGivesDocumentedCodes) {
  Layout l;
  const Bytes raw = BuildFile(GoldenContents(0, 3), &l);
  auto cut = [](const Bytes& f, std::uint64_t n) {
    return Bytes(f.begin(), f.begin() + static_cast<long>(n));
  };
  Database db;
  EXPECT_EQ(LoadBytes(db, cut(raw, 1023)), ErrorCode::CorruptedFile);      // open
  EXPECT_EQ(LoadBytes(db, cut(raw, 1024)), ErrorCode::CorruptedFile);      // offsets >= size
  EXPECT_EQ(LoadBytes(db, cut(raw, l.machine)), ErrorCode::CorruptedFile);
  EXPECT_EQ(LoadBytes(db, cut(raw, l.data)), ErrorCode::CorruptedFile);    // data at end, count 3
  EXPECT_EQ(LoadBytes(db, cut(raw, l.data + 1)), ErrorCode::InvalidData);  // raw data short
  EXPECT_EQ(LoadBytes(db, cut(raw, l.end - 1)), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), kParseMessage);

  const Bytes lz = BuildFile(GoldenContents(1, 3), &l);
  EXPECT_EQ(LoadBytes(db, cut(lz, l.data + 7)), ErrorCode::InvalidParameter);  // head short
  EXPECT_EQ(LoadBytes(db, cut(lz, l.data + 8)), ErrorCode::InvalidData);       // data short
  EXPECT_EQ(LoadBytes(db, cut(lz, l.end - 1)), ErrorCode::InvalidData);
}

TEST_F(LoadTest, WrongMagicAndVersionAreRefusedBeforeTheChecksum) {
  Bytes file = BuildFile(GoldenContents(0, 1));
  Database db;
  Bytes m = file;
  m[0] = 'X';
  EXPECT_EQ(LoadBytes(db, m), ErrorCode::InvalidMagic);
  EXPECT_EQ(db.GetLastError(), kParseMessage);
  Bytes v = file;
  Put16(v, 4, 2);
  EXPECT_EQ(LoadBytes(db, v), ErrorCode::UnsupportedVersion);
  EXPECT_EQ(db.GetLastError(), kParseMessage);
}

TEST_F(LoadTest, LayoutTestRowsGiveTheirCodes) {
  Layout l;
  const Bytes file = BuildFile(GoldenContents(0, 2), &l);
  Database db;
  auto with = [&](std::size_t at, std::uint64_t value, int width) {
    Bytes f = file;
    if (width == 8) Put64(f, at, value);
    if (width == 4) Put32(f, at, static_cast<std::uint32_t>(value));
    if (width == 1) f[at] = static_cast<std::uint8_t>(value);
    Reseal(f);
    return f;
  };
  EXPECT_EQ(LoadBytes(db, with(48, 1000, 8)), ErrorCode::CorruptedFile);        // vendor < 1024
  EXPECT_EQ(LoadBytes(db, with(56, l.vendor, 8)), ErrorCode::CorruptedFile);    // not strictly up
  EXPECT_EQ(LoadBytes(db, with(64, l.machine, 8)), ErrorCode::CorruptedFile);
  EXPECT_EQ(LoadBytes(db, with(104, l.material, 8)), ErrorCode::Success);       // data == material ok
  EXPECT_EQ(LoadBytes(db, with(104, l.material - 1, 8)), ErrorCode::CorruptedFile);
  EXPECT_EQ(LoadBytes(db, with(104, l.end, 8)), ErrorCode::CorruptedFile);      // count 2, at end
  EXPECT_EQ(LoadBytes(db, with(64, l.end, 8)), ErrorCode::CorruptedFile);
  EXPECT_EQ(LoadBytes(db, with(64, ~0ull, 8)), ErrorCode::CorruptedFile);
  EXPECT_EQ(LoadBytes(db, with(16, 10000001, 4)), ErrorCode::InvalidData);      // count cap
  EXPECT_EQ(LoadBytes(db, with(20, 100001, 4)), ErrorCode::InvalidData);
  EXPECT_EQ(LoadBytes(db, with(24, 100001, 4)), ErrorCode::InvalidData);
  EXPECT_EQ(LoadBytes(db, with(28, 100001, 4)), ErrorCode::InvalidData);
  EXPECT_EQ(LoadBytes(db, with(112, 3, 1)), ErrorCode::CorruptedFile);          // compression
  EXPECT_EQ(LoadBytes(db, with(112, 255, 1)), ErrorCode::CorruptedFile);
  EXPECT_EQ(db.GetLastError(), kParseMessage);
  // Header counts of names are tested for limits but never used to read.
  EXPECT_EQ(LoadBytes(db, with(20, 100000, 4)), ErrorCode::Success);
  EXPECT_EQ(db.GetVendors().size(), 3u);
  // Offsets are tested but never used for positioning.
  EXPECT_EQ(LoadBytes(db, with(104, l.end - 1, 8)), ErrorCode::Success);
  EXPECT_EQ(db.GetParameters().size(), 2u);
}

TEST_F(LoadTest, CountFailureIsCheckedAfterOffsets) {
  Layout l;
  Bytes f = BuildFile(GoldenContents(0, 2), &l);
  Put32(f, 16, 20000000);
  Put64(f, 48, 5);
  Reseal(f);
  Database db;
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::CorruptedFile);
}

TEST_F(LoadTest, NameTableFailuresGiveInvalidData) {
  Layout l;
  const Bytes file = BuildFile(GoldenContents(0, 0), &l);
  Database db;
  // table_size past the end of the file.
  Bytes a = file;
  Put32(a, l.vendor + 4, static_cast<std::uint32_t>(file.size()));
  EXPECT_EQ(LoadBytes(db, a), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), kParseMessage);
  // A name that runs past the end.
  Bytes b = file;
  Put32(b, l.material, 4);  // four materials, only three present
  EXPECT_EQ(LoadBytes(db, b), ErrorCode::InvalidData);
  // An entry count of four billion: refused once the bytes run out.
  Bytes c = file;
  Put32(c, l.vendor, 0xFFFFFFFFu);
  EXPECT_EQ(LoadBytes(db, c), ErrorCode::InvalidData);
  // A machine extra_length that skips past the end.
  Bytes d = file;
  d[l.material - 1] = 0xFF;
  EXPECT_EQ(LoadBytes(db, d), ErrorCode::InvalidData);
}

TEST_F(LoadTest, TableSizeOverstatingTheTableIsOnlyABoundsTest) {
  Layout l;
  Bytes f = BuildFile(GoldenContents(0, 1), &l);
  Put32(f, l.vendor + 4, static_cast<std::uint32_t>(f.size() - l.vendor));  // just fits
  Database db;
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::Success);
  Put32(f, l.vendor + 4, static_cast<std::uint32_t>(f.size() - l.vendor + 1));
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::InvalidData);
}

TEST_F(LoadTest, Lz4BlockHeadFailures) {
  Layout l;
  const Bytes file = BuildFile(GoldenContents(1, 3), &l);
  Database db;
  auto with = [&](std::size_t at, std::uint32_t v) {
    Bytes f = file;
    Put32(f, at, v);
    return f;
  };
  EXPECT_EQ(LoadBytes(db, with(l.data, 100)), ErrorCode::InvalidData);  // not a multiple of 64
  EXPECT_EQ(LoadBytes(db, with(l.data, 0)), ErrorCode::InvalidData);
  EXPECT_EQ(LoadBytes(db, with(l.data + 4, 0)), ErrorCode::InvalidData);
  EXPECT_EQ(LoadBytes(db, with(l.data + 4, static_cast<std::uint32_t>(file.size()))),
            ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), kParseMessage);
}

TEST_F(LoadTest, Lz4DecoderErrorGivesDecompressionFailed) {
  Layout l;
  Bytes f = BuildFile(GoldenContents(1, 3), &l);
  // A match offset of zero is invalid LZ4: token 0x00 then offset 0.
  Bytes bad = {0x10, 'A', 0x00, 0x00, 0, 0, 0, 0};
  f.resize(l.data);
  AppendLE(f, 192, 4);
  AppendLE(f, bad.size(), 4);
  Append(f, bad);
  Database db;
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::DecompressionFailed);
  EXPECT_EQ(db.GetLastError(), kParseMessage);
}

TEST_F(LoadTest, Lz4WrongDecodedSizeGivesInvalidData) {
  Layout l;
  Bytes f = BuildFile(GoldenContents(1, 3), &l);
  Put32(f, l.data, 256);  // says four records, holds three
  Database db;
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::InvalidData);
  Put32(f, l.data, 128);  // says two: the decoder runs out of room
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::DecompressionFailed);
}

TEST_F(LoadTest, Lz4HugeRawSizeIsRefusedLikeTheDecoderWould) {
  Layout l;
  Bytes f = BuildFile(GoldenContents(1, 3), &l);
  Database db;
  Put32(f, l.data, 0x7FFFFFC0u);  // far beyond what the block can expand to
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::InvalidData);
  Put32(f, l.data, 0xFFFFFFC0u);  // negative once it reaches the decoder
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::DecompressionFailed);
}

TEST_F(LoadTest, Lz4LastBlockMayBringMoreRecordsThanCounted) {
  Layout l;
  FileContents contents = GoldenContents(1, 70);
  Bytes f = BuildFile(contents, &l);
  Put32(f, 16, 65);  // the second block still holds six
  Reseal(f);
  Database db;
  ASSERT_EQ(LoadBytes(db, f), ErrorCode::Success);
  EXPECT_EQ(db.GetParameters().size(), 70u);
}

TEST_F(LoadTest, Lz4BlocksOfOtherSizesAreAccepted) {
  FileContents contents = GoldenContents(1, 0);
  Layout l;
  Bytes f = BuildFile(contents, &l);
  const std::vector<CuttingParameter> records = SampleRecords(150);
  Append(f, Lz4Data(records, 150));  // one block of 9600 bytes
  Put32(f, 16, 150);
  Reseal(f);
  Database db;
  ASSERT_EQ(LoadBytes(db, f), ErrorCode::Success);
  ASSERT_EQ(db.GetParameters().size(), 150u);
  EXPECT_TRUE(SameBytes(db.GetParameters()[149], records[149]));
}

TEST_F(LoadTest, ReservedCompressionLoadsNoRecords) {
  FileContents contents = GoldenContents(2, 0);
  Layout l;
  Bytes f = BuildFile(contents, &l);
  f.insert(f.end(), 64, 0x33);  // bytes that are not read
  Put32(f, 16, 5);
  Reseal(f);
  Database db;
  ASSERT_EQ(LoadBytes(db, BuildFile(GoldenContents(0, 4)), "first.bin"), ErrorCode::Success);
  ASSERT_EQ(LoadBytes(db, f), ErrorCode::Success);
  EXPECT_TRUE(db.GetParameters().empty());
  EXPECT_EQ(db.GetFileHeader().parameter_count, 5u);
}

TEST_F(LoadTest, SecondLoadClosesTheFirst) {
  Database db;
  ASSERT_EQ(LoadBytes(db, BuildFile(GoldenContents(0, 5)), "a.bin"), ErrorCode::Success);
  const LoadedFile* first = DatabaseAccess::File(db);
  ASSERT_NE(first, nullptr);
  FileContents second = GoldenContents(1, 2);
  second.vendors = {"Other"};
  ASSERT_EQ(LoadBytes(db, BuildFile(second), "b.bin"), ErrorCode::Success);
  ExpectStoreMatches(db, second);
  // A failing load after a good one leaves the database not loaded.
  EXPECT_EQ(db.LoadFromBinary(Path("missing.bin")), ErrorCode::FileNotFound);
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(DatabaseAccess::File(db), nullptr);
}

TEST_F(LoadTest, FailedParseKeepsWhatWasReadBefore) {
  Layout l;
  Bytes f = BuildFile(GoldenContents(0, 3), &l);
  f.resize(l.end - 1);
  Database db;
  EXPECT_EQ(LoadBytes(db, f), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetVendors().size(), 3u);
  EXPECT_EQ(db.GetMaterials().size(), 3u);
}

TEST_F(LoadTest, FastLoadLeavesThePreviousMessage) {
  Database db;
  EXPECT_EQ(db.LoadFromBinary(Path("missing.bin")), ErrorCode::FileNotFound);
  const std::string before = db.GetLastError();
  ASSERT_EQ(LoadBytes(db, BuildFile(GoldenContents(0, 1))), ErrorCode::Success);
  const std::string after = db.GetLastError();
  // Either untouched, or (on a very slow machine) the slow-load warning.
  EXPECT_TRUE(after == before || after.rfind("Warning: Load time exceeded 5ms target (", 0) == 0);
}

TEST_F(LoadTest, RandomMutationsMatchTheLiteralRules) {
  std::mt19937 rng(2024);
  const Bytes raw = BuildFile(GoldenContents(0, 5));
  const Bytes lz = BuildFile(GoldenContents(1, 70));
  int modelled = 0;
  for (int round = 0; round < 10000; ++round) {
    Bytes f = (round % 2) ? lz : raw;
    const int edits = 1 + static_cast<int>(rng() % 4);
    for (int e = 0; e < edits; ++e) {
      const std::size_t at = 1024 + rng() % (f.size() - 1024);
      f[at] = static_cast<std::uint8_t>(rng());
    }
    if (rng() % 4 == 0) f.resize(1024 + rng() % (f.size() - 1024));
    const ReferenceResult expected = ReferenceLoad(f);
    if (expected.unmodelled) continue;
    ++modelled;
    StoreParts store;
    const ErrorCode got = ParseBytes(f, store);
    ASSERT_EQ(got, expected.code) << "round " << round;
    if (got == ErrorCode::Success) ExpectSameAsReference(store, expected);
  }
  EXPECT_GT(modelled, 9000);
}

TEST_F(LoadTest, RandomMutationsThroughFilesMatchTheLiteralRules) {
  std::mt19937 rng(77);
  const Bytes lz = BuildFile(GoldenContents(1, 70));
  Database db;
  for (int round = 0; round < 100; ++round) {
    Bytes f = lz;
    f[1024 + rng() % (f.size() - 1024)] = static_cast<std::uint8_t>(rng());
    const ReferenceResult expected = ReferenceLoad(f);
    if (expected.unmodelled) continue;
    ASSERT_EQ(LoadBytes(db, f), expected.code) << "round " << round;
    EXPECT_EQ(db.IsLoaded(), expected.code == ErrorCode::Success);
    if (expected.code == ErrorCode::Success) ExpectSameAsReference(db, expected);
  }
}

// A build with SQLite imports for real; tests/sqlite covers that.
#ifndef SPARLANE_WITH_SQLITE
TEST(ImportFromSQLite, RefusesWithNotLoadedEvenForAnEmptyPath) {
  Database db;
  EXPECT_EQ(db.ImportFromSQLite(""), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "SQLite support not enabled. Rebuild with -DENABLE_SQLITE=ON");
  EXPECT_EQ(db.ImportFromSQLite("/some/file.db"), ErrorCode::NotLoaded);
  EXPECT_FALSE(db.IsLoaded());
}

TEST(ImportFromSQLite, LeavesTheStoreUntouched) {
  Database db;
  db.Create();
  EXPECT_EQ(db.ImportFromSQLite("x.db"), ErrorCode::NotLoaded);
  EXPECT_TRUE(db.IsLoaded());
}
#endif  // SPARLANE_WITH_SQLITE

TEST_F(LoadTest, HostileCountsReserveOnlyWhatTheBytesCouldHold) {
  Layout l;
  Bytes f = BuildFile(GoldenContents(1, 1), &l);
  Put32(f, 16, 10000000);  // ten million records promised, one block present
  Reseal(f);
  StoreParts store;
  EXPECT_EQ(ParseBytes(f, store), ErrorCode::InvalidParameter);  // no head for block two
  ASSERT_TRUE(store.records.has_value());
  EXPECT_EQ(store.records->size(), 1u);
  EXPECT_LE(store.records->capacity(), (f.size() - l.data) * 255 / 64);

  Bytes g = BuildFile(GoldenContents(0, 0), &l);
  Put32(g, l.vendor, 0xFFFFFFFFu);
  StoreParts names;
  EXPECT_EQ(ParseBytes(g, names), ErrorCode::InvalidData);
  ASSERT_TRUE(names.vendors.has_value());
  EXPECT_LE(names.vendors->capacity(), g.size() / 3);
}
