// export: the library's CSV and JSON, and the CSV round trip.
#include <gtest/gtest.h>

#include "tool_runner.h"

using namespace tooltest;

TEST(Export, CsvOfTheSampleIsItsSourceCsv) {
  const std::string out = ScratchDir() + "/sample.csv";
  const auto run = RunTool({"export", SamplePath(), "--csv", out});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(ReadText(out), ReadText(std::string(SPARLANE_SOURCE_DIR) + "/data/cut-charts.csv"));
}

TEST(Export, CsvBuildCsvRoundTripIsByteIdentical) {
  const std::string dir = ScratchDir();
  ASSERT_EQ(RunTool({"export", SamplePath(), "--csv", dir + "/a.csv"}).status, 0);
  ASSERT_EQ(RunTool({"build", dir + "/b.slb", "--from-csv", dir + "/a.csv", "--lz4"}).status, 0);
  ASSERT_EQ(RunTool({"export", dir + "/b.slb", "--csv", dir + "/b.csv"}).status, 0);
  EXPECT_EQ(ReadText(dir + "/a.csv"), ReadText(dir + "/b.csv"));
}

TEST(Export, QuotedNamesSurviveTheRoundTrip) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/a.csv",
            "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
            "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
            "current_amps,flags\r\n"
            "\"Acme, Inc.\",\"Torch \"\"X\"\"\",\"Steel, mild\",6,2000,1.5,3.8,3.8,120,0.5,1.5,"
            "45,4096\r\n");
  ASSERT_EQ(RunTool({"build", dir + "/b.slb", "--from-csv", dir + "/a.csv"}).status, 0);
  ASSERT_EQ(RunTool({"export", dir + "/b.slb", "--csv", dir + "/b.csv"}).status, 0);
  const std::string csv = ReadText(dir + "/b.csv");
  EXPECT_NE(csv.find("\"Acme, Inc.\",\"Torch \"\"X\"\"\",\"Steel, mild\",6,2000,1.5,3.8,3.8,120,"
                     "0.5,1.5,45,4096\n"),
            std::string::npos)
      << csv;
}

TEST(Export, JsonOfTheSample) {
  const std::string out = ScratchDir() + "/sample.json";
  ASSERT_EQ(RunTool({"export", SamplePath(), "--json", out}).status, 0);
  const std::string json = ReadText(out);
  EXPECT_EQ(json.compare(0, 22, "{\n  \"version\": \"1.0\",\n"), 0) << json.substr(0, 40);
  EXPECT_NE(json.find("  \"materials\": [\"Aluminium\", \"Mild steel\", \"Stainless steel\"],\n"),
            std::string::npos);
}

TEST(Export, OutputInAMissingDirectoryIsReported) {
  const std::string dir = ScratchDir();
  const std::string out = dir + "/no-such-dir/sample.csv";
  const auto run = RunTool({"export", SamplePath(), "--csv", out});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: cannot write " + out + ": no temporary directory can be made in " +
                         dir + "/no-such-dir: No such file or directory\n");
}

TEST(Export, MissingFileIsExplainedNextToTheLibraryMessage) {
  const std::string dir = ScratchDir();
  const std::string path = dir + "/absent.slb";
  const auto run = RunTool({"export", path, "--json", dir + "/x.json"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: " + path + ": file not found (Failed to open file: " + path + ")\n");
  EXPECT_FALSE(FileExists(dir + "/x.json"));
}
