// info: header fields, statistics and load time.
#include <gtest/gtest.h>

#include <cstring>
#include <nlohmann/json.hpp>

#include "test_database.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {
const std::vector<std::string> kVolatile = {"created            ", "load time          ",
                                            "file               "};
}

TEST(Info, SampleShowsHeaderAndCounts) {
  const auto run = RunTool({"info", SamplePath()});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  ExpectGolden("info_sample.txt", MaskLines(run.out, kVolatile));
}

TEST(Info, CreationTimeIsADateInUtc) {
  const auto run = RunTool({"info", SamplePath()});
  const auto at = run.out.find("created            ");
  ASSERT_NE(at, std::string::npos);
  const std::string date = run.out.substr(at + 19, 23);
  EXPECT_EQ(date.size(), 23u);
  EXPECT_EQ(date.substr(4, 1), "-");
  EXPECT_EQ(date.substr(19), " UTC");
}

TEST(Info, Lz4FileReportsItsCompression) {
  const std::string dir = ScratchDir();
  const std::string csv = dir + "/sample.csv";
  ASSERT_EQ(RunTool({"export", SamplePath(), "--csv", csv}).status, 0);
  ASSERT_EQ(RunTool({"build", dir + "/lz4.slb", "--from-csv", csv, "--lz4"}).status, 0);
  const auto run = RunTool({"info", dir + "/lz4.slb"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("compression        lz4\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("parameters         229\n"), std::string::npos) << run.out;
}

TEST(Info, JsonCarriesTheSameFigures) {
  const auto run = RunTool({"info", SamplePath(), "--json"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\"creator\": \"slb-tool v1.0\""), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\"parameters\": 229"), std::string::npos);
  EXPECT_NE(run.out.find("\"compression\": \"none\""), std::string::npos);
  EXPECT_NE(run.out.find("\"load_time_ms\": "), std::string::npos);
}

TEST(Info, HeaderFieldsAreThoseTheLibraryLoaded) {
  const std::string path = ScratchDir() + "/db.slb";
  WriteDatabase(path, {{"V", "M", "Steel", Settings(2, 3000)}});
  Sparlane::Database db;
  ASSERT_EQ(db.LoadFromBinary(path), Sparlane::ErrorCode::Success);
  const Sparlane::FileHeader header = db.GetFileHeader();
  const auto run = RunTool({"info", path, "--json"});
  ASSERT_EQ(run.status, 0) << run.err;
  const auto doc = nlohmann::json::parse(run.out);
  EXPECT_EQ(doc["created_time"], header.created_time);
  EXPECT_EQ(doc["version"], std::to_string(header.version_major) + "." +
                                std::to_string(header.version_minor));
  EXPECT_EQ(doc["creator"],
            std::string(header.creator, strnlen(header.creator, sizeof header.creator)));
  EXPECT_EQ(doc["header_counts"]["parameters"], header.parameter_count);
  EXPECT_EQ(doc["header_counts"]["materials"], header.material_count);
  EXPECT_EQ(doc["compression"], "none");
}

TEST(Info, MissingFileIsExplainedNextToTheLibraryMessage) {
  const std::string path = ScratchDir() + "/absent.slb";
  const auto run = RunTool({"info", path});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "slb-tool: " + path + ": file not found (Failed to open file: " + path + ")\n");
}

TEST(Info, FileWithBadMagicIsExplainedNextToTheLibraryMessage) {
  const std::string path = ScratchDir() + "/garbage.slb";
  WriteText(path, std::string(2048, 'x'));
  const auto run = RunTool({"info", path});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "slb-tool: " + path + ": not a parameter file (bad magic) (Failed to read binary format)\n");
}
