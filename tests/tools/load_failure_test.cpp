// A file that cannot be loaded is explained: the cause in words next to
// the library's own message.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "tool_runner.h"

using namespace tooltest;

namespace {

// A copy of the sample (or of an LZ4 build of it) in a scratch directory,
// changed by edit.
template <typename Edit>
std::string DamagedCopy(const std::string& name, bool lz4, Edit edit) {
  const std::string dir = ScratchDir();
  std::string source = SamplePath();
  if (lz4) {
    const std::string csv = std::string(SPARLANE_SOURCE_DIR) + "/data/cut-charts.csv";
    source = dir + "/lz4.slb";
    EXPECT_EQ(RunTool({"build", source, "--from-csv", csv, "--lz4"}).status, 0);
  }
  std::string bytes = ReadText(source);
  edit(bytes);
  const std::string path = dir + "/" + name;
  WriteText(path, bytes);
  return path;
}

std::string Explained(const std::string& path, const std::string& cause,
                      const std::string& library_message) {
  return "slb-tool: " + path + ": " + cause + " (" + library_message + ")\n";
}

std::uint64_t ReadU64(const std::string& bytes, std::size_t at) {
  std::uint64_t value = 0;
  std::memcpy(&value, bytes.data() + at, sizeof value);  // little-endian hosts, like the format
  return value;
}

}  // namespace

TEST(LoadFailure, BadMagicIsNotAParameterFile) {
  const auto path = DamagedCopy("magic.slb", false, [](std::string& b) { b[0] = 'X'; });
  const auto run = RunTool({"info", path});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            Explained(path, "not a parameter file (bad magic)", "Failed to read binary format"));
}

TEST(LoadFailure, OtherMajorVersionIsUnsupported) {
  const auto path = DamagedCopy("version.slb", false, [](std::string& b) { b[4] = 2; });
  const auto run = RunTool({"query", path, "--material", "Mild steel", "--machine", "AIR-45A",
                            "--thickness", "8"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, Explained(path, "unsupported version", "Failed to read binary format"));
}

TEST(LoadFailure, ChangedHeaderByteIsAChecksumMismatch) {
  const auto path = DamagedCopy("crc.slb", false, [](std::string& b) { b[200] ^= 0x01; });
  const auto run = RunTool({"validate", path});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, Explained(path, "header checksum mismatch", "Failed to read binary format"));
}

TEST(LoadFailure, FileCutShortIsTruncated) {
  const auto cut_in_tables =
      DamagedCopy("tables.slb", false, [](std::string& b) { b.resize(1100); });
  EXPECT_EQ(RunTool({"list", cut_in_tables, "vendors"}).err,
            Explained(cut_in_tables, "truncated or corrupted", "Failed to read binary format"));
  const auto cut_in_records =
      DamagedCopy("records.slb", false, [](std::string& b) { b.resize(b.size() - 10); });
  EXPECT_EQ(RunTool({"list", cut_in_records, "vendors"}).err,
            Explained(cut_in_records, "truncated or corrupted", "Failed to read binary format"));
  const auto cut_in_header =
      DamagedCopy("header.slb", false, [](std::string& b) { b.resize(100); });
  EXPECT_EQ(RunTool({"list", cut_in_header, "vendors"}).err,
            Explained(cut_in_header, "truncated or corrupted",
                      "Failed to open file: " + cut_in_header));
}

TEST(LoadFailure, DamagedCompressedRecordsAreLz4DataCorrupt) {
  const auto path = DamagedCopy("lz4.slb", true, [](std::string& b) {
    const std::uint64_t data = ReadU64(b, 104);  // parameter_data_offset
    ASSERT_LT(data + 40, b.size());
    // The first block's LZ4 bytes, after its 8-byte head.
    for (std::size_t i = data + 8; i < data + 40; ++i) b[i] = static_cast<char>(0xFF);
  });
  const auto run = RunTool({"export", path, "--csv", path + ".csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, Explained(path, "LZ4 data corrupt", "Failed to read binary format"));
  EXPECT_FALSE(FileExists(path + ".csv"));
}

TEST(LoadFailure, DirectoryInPlaceOfAFileIsReported) {
  const std::string dir = ScratchDir();
  const auto run = RunTool({"info", dir});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err.rfind("slb-tool: " + dir + ": ", 0), 0u) << run.err;
}
