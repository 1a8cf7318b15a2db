// Exports are text streams: on Windows every line ends with CR LF.  The
// parameter file is binary: its bytes pass through untranslated.
#include "windows_test_support.h"

#include <cstring>

namespace sparlane_windows_test {
namespace {

// Every LF is preceded by CR, every CR is followed by LF, and the last line
// is ended.  Returns the number of lines.
std::size_t ExpectCrLfLines(const std::vector<std::uint8_t>& bytes) {
  std::size_t lines = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\n') {
      EXPECT_TRUE(i > 0 && bytes[i - 1] == '\r') << "bare LF at byte " << i;
      ++lines;
    }
    if (bytes[i] == '\r') {
      EXPECT_TRUE(i + 1 < bytes.size() && bytes[i + 1] == '\n') << "bare CR at byte " << i;
    }
  }
  EXPECT_TRUE(bytes.size() >= 2 && bytes[bytes.size() - 2] == '\r' && bytes.back() == '\n');
  return lines;
}

std::string Text(const std::vector<std::uint8_t>& bytes) {
  return std::string(bytes.begin(), bytes.end());
}

TEST(LineEnds, CsvLinesEndWithCrLf) {
  TempDir dir;
  Database db;
  FillSample(db, {SampleRecord(3.0f), SampleRecord(6.0f)});
  ASSERT_EQ(db.ExportToCSV(dir.Utf8("table.csv")), ErrorCode::Success) << db.GetLastError();
  const std::vector<std::uint8_t> bytes = ReadAll(dir.Wide("table.csv"));
  EXPECT_EQ(ExpectCrLfLines(bytes), 3u);
  const std::string text = Text(bytes);
  EXPECT_EQ(text.substr(0, text.find('\n') + 1),
            "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
            "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
            "current_amps,flags\r\n");
  EXPECT_NE(text.find("\r\nAir plasma,AIR-45A,Mild steel,3,2540.5,1.5,3.8,3.8,128,0.4,1.6,45,0\r\n"),
            std::string::npos);
}

TEST(LineEnds, CsvHeaderOnlyExportEndsWithCrLf) {
  TempDir dir;
  Database db;
  FillSample(db, {});
  ASSERT_EQ(db.ExportToCSV(dir.Utf8("empty.csv")), ErrorCode::Success);
  EXPECT_EQ(ExpectCrLfLines(ReadAll(dir.Wide("empty.csv"))), 1u);
}

TEST(LineEnds, CsvNameWithLineBreakGetsCrLfInsideTheName) {
  // The raw line break inside a name goes through the same text stream.
  TempDir dir;
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("Two\nLines", "M", ""), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("Steel"), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(SampleRecord(1.0f)), ErrorCode::Success);
  ASSERT_EQ(db.ExportToCSV(dir.Utf8("break.csv")), ErrorCode::Success);
  const std::string text = Text(ReadAll(dir.Wide("break.csv")));
  EXPECT_NE(text.find("\r\nTwo\r\nLines,M,Steel,1,"), std::string::npos);
}

TEST(LineEnds, JsonLinesEndWithCrLf) {
  TempDir dir;
  Database db;
  FillSample(db, {SampleRecord(3.0f), SampleRecord(6.0f)});
  ASSERT_EQ(db.ExportToJSON(dir.Utf8("table.json")), ErrorCode::Success) << db.GetLastError();
  const std::vector<std::uint8_t> bytes = ReadAll(dir.Wide("table.json"));
  EXPECT_EQ(ExpectCrLfLines(bytes), 38u);  // 6 opening, 15 per record, 2 closing
  const std::string text = Text(bytes);
  const std::string head = "{\r\n  \"version\": \"1.0\",\r\n";
  EXPECT_EQ(text.compare(0, head.size(), head), 0) << text;
  EXPECT_NE(text.find("  \"vendors\": [\"Air plasma\"],\r\n"), std::string::npos);
  EXPECT_NE(text.find("    },\r\n    {\r\n"), std::string::npos);
  const std::string tail = "      \"flags\": 0\r\n    }\r\n  ]\r\n}\r\n";
  ASSERT_GE(text.size(), tail.size());
  EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
}

TEST(LineEnds, JsonEscapedLineFeedStaysTwoCharacters) {
  // "\n" inside a name is escaped before the stream sees it: no CR appears.
  TempDir dir;
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("Two\nLines", "M", ""), ErrorCode::Success);
  ASSERT_EQ(db.ExportToJSON(dir.Utf8("names.json")), ErrorCode::Success);
  const std::string text = Text(ReadAll(dir.Wide("names.json")));
  EXPECT_NE(text.find("  \"vendors\": [\"Two\\nLines\"],\r\n"), std::string::npos);
}

TEST(LineEnds, BinaryFileBytesAreNotTranslated) {
  // 0x0A bytes inside records and names must not grow a CR on the way out.
  TempDir dir;
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("Line\nFeed", "M\r\n", ""), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("\n"), ErrorCode::Success);
  CuttingParameter p = SampleRecord(1.0f);
  const std::uint32_t bits = 0x400A0A0Au;  // about 2.16, three LF bytes
  std::memcpy(&p.thickness_mm, &bits, sizeof bits);
  p.current_amps = 0x0A0A;
  p.flags = 0x0A0D0A0Du;
  ASSERT_EQ(db.AddParameter(p), ErrorCode::Success);
  for (CompressionType type : {CompressionType::None, CompressionType::LZ4}) {
    ASSERT_EQ(db.SaveToBinary(dir.Utf8("lf.bin"), type), ErrorCode::Success);
    Database again;
    ASSERT_EQ(again.LoadFromBinary(dir.Utf8("lf.bin")), ErrorCode::Success)
        << again.GetLastError();
    EXPECT_EQ(again.GetVendors(), std::vector<std::string>{"Line\nFeed"});
    EXPECT_EQ(again.GetMachines(), std::vector<std::string>{"M\r\n"});
    EXPECT_EQ(again.GetMaterials(), std::vector<std::string>{"\n"});
    const std::vector<CuttingParameter> records = again.FindByMaterial("\n");
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(std::memcmp(&records[0], &p, sizeof p), 0);
  }
}

}  // namespace
}  // namespace sparlane_windows_test
