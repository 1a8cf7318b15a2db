// build --from-csv: checks, error reports and ordering.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "test_csv.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

struct Built {
  ToolRun run;
  std::string dir;
  std::string csv;
  std::string out;
};

Built BuildFrom(const std::string& csv_text, std::vector<std::string> extra = {}) {
  Built b;
  b.dir = ScratchDir();
  b.csv = b.dir + "/in.csv";
  b.out = b.dir + "/out.slb";
  WriteText(b.csv, csv_text);
  std::vector<std::string> args = {"build", b.out, "--from-csv", b.csv};
  args.insert(args.end(), extra.begin(), extra.end());
  b.run = RunTool(args);
  return b;
}

}  // namespace

TEST(BuildCsv, BadRowIsReportedWithFileAndLineAndNothingIsWritten) {
  const auto b = BuildFrom(std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "2", "3000") +
                           CsvRow("V", "M", "Steel", "0", "2000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_EQ(b.run.out, "");
  EXPECT_EQ(b.run.err, "slb-tool: " + b.csv + ":3: thickness_mm must be 0.1 to 300 mm (is 0)\n" +
                           "slb-tool: nothing written to " + b.out +
                           "; --skip-invalid builds from the valid rows\n");
  EXPECT_FALSE(FileExists(b.out));
  EXPECT_FALSE(FileExists(b.out + ".tmp"));
}

TEST(BuildCsv, EveryBadRowIsReported) {
  const auto b = BuildFrom(std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "2", "0") +
                           "V,M,Steel,3,1000,1.5,3.8,3.8,120,0.5,1.5,0,0\n" +
                           CsvRow("V", "M", "Steel", "nan", "100"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: cut_speed_mm_min must be 10 to 20000 mm/min (is 0)\n"),
            std::string::npos)
      << b.run.err;
  EXPECT_NE(b.run.err.find(b.csv + ":3: current_amps must be 1 to 1000 A (is 0)\n"),
            std::string::npos);
  EXPECT_NE(b.run.err.find(b.csv + ":4: thickness_mm must be a finite number (is nan)\n"),
            std::string::npos);
  EXPECT_FALSE(FileExists(b.out));
}

TEST(BuildCsv, ExistingOutputIsLeftAloneOnError) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/out.slb", "old");
  WriteText(dir + "/in.csv", std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "-1", "10"));
  const auto run = RunTool({"build", dir + "/out.slb", "--from-csv", dir + "/in.csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(ReadText(dir + "/out.slb"), "old");
}

TEST(BuildCsv, WrongFieldCountIsReported) {
  const auto b = BuildFrom(std::string(CsvHeader()) + "V,M,Steel,2,3000\n");
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: expected 13 fields, found 5\n"), std::string::npos)
      << b.run.err;
  EXPECT_FALSE(FileExists(b.out));
}

TEST(BuildCsv, NonNumericFieldIsReported) {
  const auto b = BuildFrom(std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "2", "fast"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: cut_speed_mm_min is not a number: \"fast\"\n"),
            std::string::npos)
      << b.run.err;
}

TEST(BuildCsv, CurrentBeyondSixteenBitsIsReported) {
  const auto b = BuildFrom(std::string(CsvHeader()) +
                           "V,M,Steel,3,1000,1.5,3.8,3.8,120,0.5,1.5,70000,0\n");
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(":2: current_amps is not a whole number from 0 to 65535"),
            std::string::npos)
      << b.run.err;
}

TEST(BuildCsv, UnterminatedQuoteIsReported) {
  const auto b = BuildFrom(std::string(CsvHeader()) + "\"V,M,Steel,3\n");
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: unterminated quoted field\n"), std::string::npos)
      << b.run.err;
}

TEST(BuildCsv, QuotedFieldMayHoldALineBreakButANameMayNot) {
  const auto b = BuildFrom(std::string(CsvHeader()) + "\"V\nW\",M,Steel,3,1000,1.5,3.8,3.8,"
                                                      "120,0.5,1.5,45,0\n" +
                           CsvRow("V", "M2", "Steel", "0", "100"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: vendor holds a control character (byte 0x0a); names "
                                   "must be printable text\n"),
            std::string::npos)
      << b.run.err;
  // The second record starts on line 4: the first spans lines 2 and 3.
  EXPECT_NE(b.run.err.find(b.csv + ":4: thickness_mm must be 0.1 to 300 mm (is 0)\n"),
            std::string::npos)
      << b.run.err;
  EXPECT_FALSE(FileExists(b.out));
}

TEST(BuildCsv, WrongHeaderIsReported) {
  const auto b = BuildFrom("vendor,model\n");
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":1: expected the header line"), std::string::npos)
      << b.run.err;
}

TEST(BuildCsv, EmptyFileIsReported) {
  const auto b = BuildFrom("");
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":1: the file is empty"), std::string::npos) << b.run.err;
}

TEST(BuildCsv, MissingInputIsReported) {
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-csv", dir + "/absent.csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: " + dir + "/absent.csv: cannot read the file\n" +
                         "slb-tool: nothing written to " + dir + "/out.slb\n");
}

TEST(BuildCsv, ModelUnderTwoVendorsIsAnError) {
  const auto b = BuildFrom(std::string(CsvHeader()) + CsvRow("V1", "M", "Steel", "2", "3000") +
                           CsvRow("V2", "M", "Steel", "3", "2000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":3: machine model \"M\" is listed under vendor \"V2\" here "
                                   "and under \"V1\" at line 2"),
            std::string::npos)
      << b.run.err;
  EXPECT_FALSE(FileExists(b.out));
}

TEST(BuildCsv, EmptyNameIsReported) {
  const auto b = BuildFrom(std::string(CsvHeader()) + CsvRow("V", "M", "", "2", "3000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: material must not be empty\n"), std::string::npos)
      << b.run.err;
}

TEST(BuildCsv, OverlongNameIsReported) {
  const auto b =
      BuildFrom(std::string(CsvHeader()) + CsvRow("V", std::string(256, 'm'), "Steel", "2", "3000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: machine_model must be at most 255 bytes (is 256)\n"),
            std::string::npos)
      << b.run.err;
}

TEST(BuildCsv, HeaderOnlyWritesNothingAndKeepsTheOldFile) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/in.csv", CsvHeader());
  WriteText(dir + "/keep.slb", "old");
  const auto run = RunTool({"build", dir + "/keep.slb", "--from-csv", dir + "/in.csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "slb-tool: no valid records; nothing written to " + dir + "/keep.slb\n");
  EXPECT_EQ(ReadText(dir + "/keep.slb"), "old");
}

TEST(BuildCsv, UnsortedRowsAreSortedByMaterialMachineAndThickness) {
  const auto b = BuildFrom(std::string(CsvHeader()) + CsvRow("V", "Zeta", "Steel", "6", "900") +
                           CsvRow("V", "Alpha", "Steel", "8", "700") +
                           CsvRow("V", "Alpha", "Brass", "2", "2000") +
                           CsvRow("V", "Alpha", "Steel", "4", "1500"));
  ASSERT_EQ(b.run.status, 0) << b.run.err;
  ASSERT_EQ(RunTool({"export", b.out, "--csv", b.dir + "/out.csv"}).status, 0);
  EXPECT_EQ(ReadText(b.dir + "/out.csv"),
            std::string(CsvHeader()) + CsvRow("V", "Alpha", "Brass", "2", "2000") +
                CsvRow("V", "Alpha", "Steel", "4", "1500") +
                CsvRow("V", "Alpha", "Steel", "8", "700") + CsvRow("V", "Zeta", "Steel", "6", "900"));
  // The lookup indexes describe the sorted records, so interpolation works.
  const auto query = RunTool({"query", b.out, "--material", "Steel", "--machine", "Alpha",
                              "--thickness", "6"});
  EXPECT_EQ(Field(query.out, "cut speed"), "1100 mm/min") << query.out;
}

TEST(BuildCsv, RecordsAreAStableSortOfTheRowsByMaterialMachineAndThickness) {
  // Many rows with repeated keys (told apart by their flags), names whose
  // byte order differs from their order of appearance.
  std::mt19937 random(7);
  const std::vector<std::string> machines = {"Zeta", "alpha", "Alpha", "M\xC3\xA4", "B"};
  const std::vector<std::string> materials = {"Steel", "Brass", "steel", "Al"};
  struct Row {
    std::string machine;
    std::string material;
    float thickness;
    std::uint32_t flags;
  };
  std::vector<Row> rows;
  std::string csv = CsvHeader();
  for (std::uint32_t i = 0; i < 40000; ++i) {
    Row row{machines[random() % machines.size()], materials[random() % materials.size()],
            static_cast<float>(1 + random() % 20), i};
    csv += "Vendor of " + row.machine + "," + row.machine + "," + row.material + "," +
           std::to_string(static_cast<int>(row.thickness)) + ",1000,1.5,3.8,3.8,120,0.5,1.5,45," +
           std::to_string(i) + "\n";
    rows.push_back(row);
  }
  const auto b = BuildFrom(csv);
  ASSERT_EQ(b.run.status, 0) << b.run.err;

  auto by_name = [](std::vector<std::string> names, const std::string& name) {
    std::sort(names.begin(), names.end());
    return std::find(names.begin(), names.end(), name) - names.begin();
  };
  std::stable_sort(rows.begin(), rows.end(), [&](const Row& x, const Row& y) {
    const auto xm = by_name(materials, x.material), ym = by_name(materials, y.material);
    if (xm != ym) return xm < ym;
    const auto xc = by_name(machines, x.machine), yc = by_name(machines, y.machine);
    if (xc != yc) return xc < yc;
    return x.thickness < y.thickness;
  });
  Sparlane::Database db;
  ASSERT_EQ(db.LoadFromBinary(b.out), Sparlane::ErrorCode::Success) << db.GetLastError();
  const auto records = db.GetParameters();
  const auto file_materials = db.GetMaterials();
  const auto file_machines = db.GetMachines();
  ASSERT_EQ(records.size(), rows.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    ASSERT_EQ(records[i].flags, rows[i].flags) << i;
    ASSERT_EQ(file_materials[records[i].material_id - 1u], rows[i].material) << i;
    ASSERT_EQ(file_machines[records[i].machine_model_id - 1u], rows[i].machine) << i;
  }
  EXPECT_EQ(db.Validate(), Sparlane::ErrorCode::Success) << db.GetLastError();
}

TEST(BuildCsv, Lz4FileAnswersLikeARawOne) {
  const std::string dir = ScratchDir();
  const std::string csv = std::string(SPARLANE_SOURCE_DIR) + "/data/cut-charts.csv";
  ASSERT_EQ(RunTool({"build", dir + "/lz4.slb", "--from-csv", csv, "--lz4"}).status, 0);
  const std::vector<std::string> query = {"--material", "Stainless steel", "--machine",
                                          "AIR-65A-SHOP", "--thickness", "5"};
  auto raw_args = std::vector<std::string>{"query", SamplePath()};
  auto lz4_args = std::vector<std::string>{"query", dir + "/lz4.slb"};
  raw_args.insert(raw_args.end(), query.begin(), query.end());
  lz4_args.insert(lz4_args.end(), query.begin(), query.end());
  const auto raw = RunTool(raw_args);
  ASSERT_EQ(raw.status, 0);
  EXPECT_EQ(raw.out, RunTool(lz4_args).out);
}

#if !defined(SPARLANE_WITH_SQLITE)
TEST(BuildSqlite, WithoutSqliteSupportFailsWithTheLibraryMessage) {
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-sqlite", dir + "/any.db"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "slb-tool: SQLite support not enabled. Rebuild with -DENABLE_SQLITE=ON\n"
            "slb-tool: nothing written to " + dir + "/out.slb\n");
  EXPECT_FALSE(FileExists(dir + "/out.slb"));
}
#endif

TEST(BuildCsv, QuoteInsideAnUnquotedFieldIsReported) {
  const auto b = BuildFrom(std::string(CsvHeader()) + CsvRow("V", "M\"x", "Steel", "2", "3000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_NE(b.run.err.find(b.csv + ":2: quote inside an unquoted field\n"), std::string::npos)
      << b.run.err;
}

TEST(BuildCsv, OutputInAMissingDirectoryIsReported) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/in.csv", std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "2", "3000"));
  const std::string out = dir + "/no-such-dir/out.slb";
  const auto run = RunTool({"build", out, "--from-csv", dir + "/in.csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: cannot write " + out + ": no temporary directory can be made in " +
                         dir + "/no-such-dir: No such file or directory\n" +
                         "slb-tool: nothing written to " + out + "\n");
  EXPECT_FALSE(FileExists(dir + "/no-such-dir"));
}

#if defined(SPARLANE_WITH_SQLITE)
#include "../sqlite/sqlite_fixture.h"

TEST(BuildSqlite, RecordsFailingTheStrictCheckWriteNothing) {
  sparlane_test::SqliteFile db;
  db.Exec(sparlane_test::SchemaSql());
  db.Exec(sparlane_test::NamesSql());
  db.Exec(sparlane_test::ParameterRow(1, 1, 1, 3.0));
  db.Exec(sparlane_test::ParameterRow(1, 1, 1, 250.0));  // 350 V
  db.Close();
  const std::string dir = ScratchDir();
  WriteText(dir + "/keep.slb", "old");
  const auto run = RunTool({"build", dir + "/keep.slb", "--from-sqlite", db.path()});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: " + db.path() + ": Mild steel 250 mm on M-45 (Vendor A): "
                     "arc_voltage_v must be 20 to 300 V (is 350)\nslb-tool: nothing written to " +
                         dir + "/keep.slb\n");
  EXPECT_EQ(ReadText(dir + "/keep.slb"), "old");
}

TEST(BuildSqlite, ValidRecordsAreWrittenSafely) {
  sparlane_test::SqliteFile db;
  db.Exec(sparlane_test::SchemaSql());
  db.Exec(sparlane_test::NamesSql());
  db.Exec(sparlane_test::ParameterRow(1, 1, 1, 3.0));
  db.Exec(sparlane_test::ParameterRow(2, 2, 2, 6.0));
  db.Close();
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-sqlite", db.path()});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrote " + dir + "/out.slb: 2 records\n");
  EXPECT_EQ(DirectoryEntries(dir), std::vector<std::string>{"out.slb"});
}

TEST(BuildSqlite, DatabaseWithoutRecordsWritesNothing) {
  sparlane_test::SqliteFile db;
  db.Exec(sparlane_test::SchemaSql());
  db.Exec(sparlane_test::NamesSql());
  db.Close();
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-sqlite", db.path()});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: no records; nothing written to " + dir + "/out.slb\n");
  EXPECT_FALSE(FileExists(dir + "/out.slb"));
}
#endif

TEST(BuildSqlite, SkipInvalidDoesNotApplyToSqlite) {
  EXPECT_EQ(RunTool({"build", "out.slb", "--from-sqlite", "any.db", "--skip-invalid"}).status, 2);
}
