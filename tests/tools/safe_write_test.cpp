// build and export replace their target in one step, never write through
// anything planted beside it, refuse targets that are not regular files,
// keep permission bits and leave nothing behind.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <filesystem>

#include "test_csv.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

namespace fs = std::filesystem;

std::string TwoRowCsv() {
  return std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "2", "3000") +
         CsvRow("V", "M", "Steel", "4", "2000");
}

// A scratch directory holding in.csv.
std::string DirWithCsv() {
  const std::string dir = ScratchDir();
  WriteText(dir + "/in.csv", TwoRowCsv());
  return dir;
}

ToolRun Build(const std::string& dir, const std::string& out) {
  return RunTool({"build", out, "--from-csv", dir + "/in.csv"});
}

unsigned Mode(const std::string& path) {
  struct stat st {};
  EXPECT_EQ(::stat(path.c_str(), &st), 0) << path;
  return st.st_mode & 07777u;
}

bool IsParameterFile(const std::string& path) {
  return RunTool({"info", path}).status == 0;
}

}  // namespace

TEST(SafeWrite, BuildLeavesOnlyTheTargetBehind) {
  const std::string dir = DirWithCsv();
  ASSERT_EQ(Build(dir, dir + "/out.slb").status, 0);
  EXPECT_EQ(DirectoryEntries(dir), (std::vector<std::string>{"in.csv", "out.slb"}));
  EXPECT_TRUE(IsParameterFile(dir + "/out.slb"));
}

TEST(SafeWrite, NewFileTakesTheUsualModeOfNewFiles) {
  const std::string dir = DirWithCsv();
  const mode_t mask = ::umask(0);
  ::umask(mask);
  ASSERT_EQ(Build(dir, dir + "/out.slb").status, 0);
  EXPECT_EQ(Mode(dir + "/out.slb"), 0666u & ~static_cast<unsigned>(mask));
}

TEST(SafeWrite, ReplacedFileKeepsItsPermissionBits) {
  const std::string dir = DirWithCsv();
  WriteText(dir + "/out.slb", "old");
  ASSERT_EQ(::chmod((dir + "/out.slb").c_str(), 0640), 0);
  ASSERT_EQ(Build(dir, dir + "/out.slb").status, 0);
  EXPECT_EQ(Mode(dir + "/out.slb"), 0640u);
  EXPECT_TRUE(IsParameterFile(dir + "/out.slb"));
  WriteText(dir + "/out.csv", "old");
  ASSERT_EQ(::chmod((dir + "/out.csv").c_str(), 0604), 0);
  ASSERT_EQ(RunTool({"export", dir + "/out.slb", "--csv", dir + "/out.csv"}).status, 0);
  EXPECT_EQ(Mode(dir + "/out.csv"), 0604u);
  EXPECT_EQ(ReadText(dir + "/out.csv"), TwoRowCsv());
}

TEST(SafeWrite, DirectoryTargetIsRefused) {
  const std::string dir = DirWithCsv();
  fs::create_directory(dir + "/out.slb");
  const auto run = Build(dir, dir + "/out.slb");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: " + dir + "/out.slb is a directory; only a regular file is "
                     "replaced\nslb-tool: nothing written to " + dir + "/out.slb\n");
  EXPECT_TRUE(fs::is_directory(dir + "/out.slb"));
  EXPECT_TRUE(fs::is_empty(dir + "/out.slb"));
  EXPECT_EQ(DirectoryEntries(dir), (std::vector<std::string>{"in.csv", "out.slb"}));
}

TEST(SafeWrite, FifoTargetIsRefused) {
  const std::string dir = DirWithCsv();
  ASSERT_EQ(::mkfifo((dir + "/out.slb").c_str(), 0644), 0);
  const auto run = Build(dir, dir + "/out.slb");
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find(dir + "/out.slb is a FIFO; only a regular file is replaced"),
            std::string::npos)
      << run.err;
  EXPECT_TRUE(fs::is_fifo(dir + "/out.slb"));
  const auto json = RunTool({"export", SamplePath(), "--json", dir + "/out.slb"});
  EXPECT_EQ(json.status, 1);
  EXPECT_TRUE(fs::is_fifo(dir + "/out.slb"));
  EXPECT_EQ(DirectoryEntries(dir), (std::vector<std::string>{"in.csv", "out.slb"}));
}

TEST(SafeWrite, DeviceTargetIsRefused) {
  const std::string dir = DirWithCsv();
  // A null device of our own where allowed; otherwise the real one, which
  // an unprivileged run could not replace even if the check failed.
  std::string device = dir + "/null";
  if (::mknod(device.c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0) {
    if (::geteuid() == 0) GTEST_SKIP() << "cannot make a device node";
    device = "/dev/null";
  }
  const auto run = Build(dir, device);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find(device + " is a character device; only a regular file is replaced"),
            std::string::npos)
      << run.err;
  EXPECT_TRUE(fs::is_character_file(device));
  EXPECT_EQ(RunTool({"export", SamplePath(), "--csv", device}).status, 1);
  EXPECT_TRUE(fs::is_character_file(device));
}

TEST(SafeWrite, SymbolicLinkTargetIsRefusedAndItsFileUntouched) {
  const std::string dir = DirWithCsv();
  WriteText(dir + "/real.slb", "precious");
  fs::create_symlink(dir + "/real.slb", dir + "/out.slb");
  const auto run = Build(dir, dir + "/out.slb");
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find(dir + "/out.slb is a symbolic link; it is not replaced by a file"),
            std::string::npos)
      << run.err;
  EXPECT_TRUE(fs::is_symlink(dir + "/out.slb"));
  EXPECT_EQ(ReadText(dir + "/real.slb"), "precious");
  EXPECT_EQ(RunTool({"export", SamplePath(), "--csv", dir + "/out.slb"}).status, 1);
  EXPECT_TRUE(fs::is_symlink(dir + "/out.slb"));
  EXPECT_EQ(ReadText(dir + "/real.slb"), "precious");
}

TEST(SafeWrite, HardLinkedTargetIsRefusedAndBothNamesKeepTheirFile) {
  const std::string dir = DirWithCsv();
  WriteText(dir + "/out.slb", "shared");
  fs::create_hard_link(dir + "/out.slb", dir + "/other-name.slb");
  const auto run = Build(dir, dir + "/out.slb");
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find(dir + "/out.slb has 2 hard links; replacing it would separate them"),
            std::string::npos)
      << run.err;
  EXPECT_EQ(fs::hard_link_count(dir + "/out.slb"), 2u);
  EXPECT_EQ(ReadText(dir + "/other-name.slb"), "shared");
}

TEST(SafeWrite, SymlinkPlantedAtTheOldTemporaryNameIsNotWrittenThrough) {
  const std::string dir = DirWithCsv();
  WriteText(dir + "/victim", "precious");
  fs::create_symlink(dir + "/victim", dir + "/out.slb.tmp");
  ASSERT_EQ(Build(dir, dir + "/out.slb").status, 0);
  EXPECT_EQ(ReadText(dir + "/victim"), "precious");
  EXPECT_TRUE(fs::is_symlink(dir + "/out.slb.tmp"));
  EXPECT_TRUE(IsParameterFile(dir + "/out.slb"));
  fs::create_symlink(dir + "/victim", dir + "/out.csv.tmp");
  ASSERT_EQ(RunTool({"export", dir + "/out.slb", "--csv", dir + "/out.csv"}).status, 0);
  EXPECT_EQ(ReadText(dir + "/victim"), "precious");
  EXPECT_EQ(ReadText(dir + "/out.csv"), TwoRowCsv());
}

TEST(SafeWrite, ExportOverItsOwnInputIsRefused) {
  const std::string dir = DirWithCsv();
  ASSERT_EQ(Build(dir, dir + "/db.slb").status, 0);
  const std::string before = ReadText(dir + "/db.slb");
  for (const char* format : {"--csv", "--json"}) {
    const auto run = RunTool({"export", dir + "/db.slb", format, dir + "/db.slb"});
    EXPECT_EQ(run.status, 1) << format;
    EXPECT_EQ(run.err, "slb-tool: refusing to write " + dir + "/db.slb: it is the input file " +
                           dir + "/db.slb\n");
    EXPECT_EQ(ReadText(dir + "/db.slb"), before);
  }
  // Another name for the same file is the same file.
  fs::create_symlink(dir + "/db.slb", dir + "/alias.slb");
  EXPECT_EQ(RunTool({"export", dir + "/alias.slb", "--csv", dir + "/db.slb"}).status, 1);
  EXPECT_EQ(ReadText(dir + "/db.slb"), before);
}

TEST(SafeWrite, BuildOverItsOwnInputIsRefused) {
  const std::string dir = DirWithCsv();
  const auto run = RunTool({"build", dir + "/in.csv", "--from-csv", dir + "/in.csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: refusing to write " + dir + "/in.csv: it is the input file " +
                         dir + "/in.csv\nslb-tool: nothing written to " + dir + "/in.csv\n");
  EXPECT_EQ(ReadText(dir + "/in.csv"), TwoRowCsv());
}

TEST(SafeWrite, InterruptedBuildKeepsTheOldFileAndLeavesNothing) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/out.slb", "old");
  const std::string csv = std::string(SPARLANE_SOURCE_DIR) + "/data/cut-charts.csv";
  // The sample's file is about 16 KB; the limit ends the run part way.
  const auto run = RunToolWithFileSizeLimit(8, {"build", dir + "/out.slb", "--from-csv", csv});
  EXPECT_NE(run.status, 0);
  EXPECT_EQ(ReadText(dir + "/out.slb"), "old");
  EXPECT_EQ(DirectoryEntries(dir), std::vector<std::string>{"out.slb"});
}

TEST(SafeWrite, InterruptedExportKeepsTheOldFileAndLeavesNothing) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/out.csv", "old");
  const auto run = RunToolWithFileSizeLimit(8, {"export", SamplePath(), "--csv", dir + "/out.csv"});
  EXPECT_NE(run.status, 0);
  EXPECT_EQ(ReadText(dir + "/out.csv"), "old");
  EXPECT_EQ(DirectoryEntries(dir), std::vector<std::string>{"out.csv"});
}

TEST(SafeWrite, FailedLoadLeavesAnEarlierExportAlone) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/out.json", "old");
  const auto run = RunTool({"export", dir + "/absent.slb", "--json", dir + "/out.json"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(ReadText(dir + "/out.json"), "old");
  EXPECT_EQ(DirectoryEntries(dir), std::vector<std::string>{"out.json"});
}
