// Mapping failures provoked through the system's limits, in a child process
// so that the limit never touches the rest of the suite.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "file/mapped_file.h"
#include "file_bytes.h"

#if defined(__SANITIZE_ADDRESS__)
#define SPARLANE_TEST_UNDER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SPARLANE_TEST_UNDER_ASAN 1
#endif
#endif

using namespace Sparlane;
using namespace filetest;

#ifndef SPARLANE_TEST_UNDER_ASAN
namespace {

long VirtualSizeBytes() {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("VmSize:", 0) == 0) return std::stol(line.substr(7)) * 1024;
  }
  return -1;
}

}  // namespace
#endif

TEST(MappingLimits, AddressSpaceExhaustedIsOutOfMemory) {
#ifdef SPARLANE_TEST_UNDER_ASAN
  GTEST_SKIP() << "AddressSanitizer reserves address space that a limit would break";
#else
  const std::string dir = ScratchDir("MappingLimits");
  ASSERT_FALSE(dir.empty());
  const std::string path = dir + "/huge.bin";
  const int fd = ::open(path.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0644);
  ASSERT_GE(fd, 0);
  const off_t huge = off_t{1} << 30;  // sparse: takes no disk space
  ASSERT_EQ(::ftruncate(fd, huge), 0);
  ::close(fd);
  if (VirtualSizeBytes() < 0) GTEST_SKIP() << "no /proc/self/status here";

  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    rlimit limit{};
    limit.rlim_cur = static_cast<rlim_t>(VirtualSizeBytes()) + (64u << 20);
    limit.rlim_max = RLIM_INFINITY;
    if (::setrlimit(RLIMIT_AS, &limit) != 0) ::_exit(100);
    MappedFile f;
    const ErrorCode direct = f.Open(path);
    Database db;
    const ErrorCode loaded = db.LoadFromBinary(path);
    const bool message_ok = db.GetLastError() == "Failed to open file: " + path;
    ::_exit(direct == ErrorCode::OutOfMemory && loaded == ErrorCode::OutOfMemory && message_ok
                ? 0
                : 1 + static_cast<int>(direct));
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 100) GTEST_SKIP() << "cannot set an address-space limit";
  EXPECT_EQ(WEXITSTATUS(status), 0) << "Open gave code " << WEXITSTATUS(status) - 1;
#endif
}
#endif
