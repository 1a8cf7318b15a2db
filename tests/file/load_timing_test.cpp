#include <gtest/gtest.h>

#include <cstdio>
#include <regex>

#include "file/load_timing.h"
#include "file_bytes.h"

using namespace Sparlane;
using namespace filetest;

TEST(SlowLoadWarning, FormatsMillisecondsWithSixDecimals) {
  EXPECT_EQ(SlowLoadWarning(7.2513), "Warning: Load time exceeded 5ms target (7.251300 ms)");
  EXPECT_EQ(SlowLoadWarning(5.0000001), "Warning: Load time exceeded 5ms target (5.000000 ms)");
  EXPECT_EQ(SlowLoadWarning(1234.5), "Warning: Load time exceeded 5ms target (1234.500000 ms)");
}

// A few hundred thousand LZ4 records take well over 5 ms to decode and index.
TEST(SlowLoadWarning, SlowLoadSucceedsAndLeavesTheWarning) {
  const std::string dir = ScratchDir("SlowLoad");
  ASSERT_FALSE(dir.empty());
  FileContents contents;
  contents.compression = 1;
  std::vector<std::string> materials;
  for (int m = 0; m < 100; ++m) contents.materials.push_back("M" + std::to_string(m));
  for (int i = 0; i < 400000; ++i) {
    contents.records.push_back(SampleRecord(static_cast<std::uint16_t>(1 + i % 100),
                                        static_cast<float>(i % 97), i % 50));
  }
  ASSERT_TRUE(WriteFile(dir + "/big.bin", BuildFile(contents)));
  Database db;
  EXPECT_NE(db.ImportFromSQLite(""), ErrorCode::Success);  // a message to replace
  ASSERT_EQ(db.LoadFromBinary(dir + "/big.bin"), ErrorCode::Success);
  EXPECT_TRUE(db.IsLoaded());
  EXPECT_EQ(db.GetParameters().size(), 400000u);
  const std::string message = db.GetLastError();
  const std::regex form(R"(Warning: Load time exceeded 5ms target \((\d+\.\d{6}) ms\))");
  std::smatch m;
  ASSERT_TRUE(std::regex_match(message, m, form)) << message;
  EXPECT_GT(std::stod(m[1]), 5.0);
}
