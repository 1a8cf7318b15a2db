// Failed opens must hand back every handle they took: thousands of failures
// of every kind leave the process handle count where it was.
#include "windows_test_support.h"

#include <functional>

#include "file/mapped_file.h"

namespace sparlane_windows_test {
namespace {

// How many handles the process holds.  Windows keeps a count; wine answers
// 0 there, but its handle table hands out the lowest free slot, so the value
// of a fresh handle climbs exactly when slots stay taken.
bool HandleCountIsLive() {
  const DWORD before = HandleCount();
  HANDLE events[16];
  for (HANDLE& e : events) e = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const DWORD during = HandleCount();
  for (HANDLE e : events) CloseHandle(e);
  return during >= before + 16;
}

long FreshHandleSlot() {
  HANDLE probe = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const long slot = static_cast<long>(reinterpret_cast<std::uintptr_t>(probe) / 4);
  CloseHandle(probe);
  return slot;
}

long HandleGauge() {
  static const bool counted = HandleCountIsLive();
  return counted ? static_cast<long>(HandleCount()) : FreshHandleSlot();
}

// Failed opens are cheap and run thousands of times; a successful load maps
// and unmaps, which costs milliseconds under wine, so fewer of those.
constexpr int kRounds = 2000;
constexpr int kLoadRounds = 200;
// Room for handles the system itself may open lazily; a leak would be one or
// more handles per round.
constexpr long kSlack = 16;

TEST(HandleGauge, ClimbsWhileHandlesAreKeptAndFallsBack) {
  // A flat reading proves nothing unless kept handles do show.
  const long before = HandleGauge();
  std::vector<HANDLE> kept;
  for (int i = 0; i < 100; ++i) kept.push_back(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  const long during = HandleGauge();
  for (HANDLE h : kept) CloseHandle(h);
  EXPECT_GE(during - before, 100 - kSlack);
  EXPECT_LE(HandleGauge() - before, kSlack);
}

class HandleLeaks : public ::testing::Test {
 protected:
  void SetUp() override {
    SaveSampleFile(dir_.Utf8("good.bin"));
    ASSERT_TRUE(WriteAll(dir_.Wide("short.bin"), std::vector<std::uint8_t>(1023, 0)));
    ASSERT_TRUE(WriteAll(dir_.Wide("zeros.bin"), std::vector<std::uint8_t>(2048, 0)));
    ASSERT_TRUE(CreateDirectoryW(dir_.Wide("folder").c_str(), nullptr));
  }

  // Runs attempt once to warm up, then `rounds` times; the gauge must stay
  // within the slack.
  void ExpectNoLeak(const std::function<void()>& attempt, int rounds = kRounds) {
    attempt();
    const long before = HandleGauge();
    for (int i = 0; i < rounds && !HasFailure(); ++i) attempt();
    EXPECT_LE(HandleGauge() - before, kSlack) << "handles were kept after " << rounds << " rounds";
  }

  TempDir dir_;
};

TEST_F(HandleLeaks, MissingFilesLeakNothing) {
  Database db;
  ExpectNoLeak([&] {
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("absent.bin")), ErrorCode::FileNotFound);
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("none\\absent.bin")), ErrorCode::FileNotFound);
  });
}

TEST_F(HandleLeaks, ShortFilesLeakNothing) {
  Database db;
  ExpectNoLeak([&] {
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("short.bin")), ErrorCode::CorruptedFile);
  });
}

TEST_F(HandleLeaks, RefusedHeadersLeakNothing) {
  Database db;
  ExpectNoLeak([&] {
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("zeros.bin")), ErrorCode::InvalidMagic);
  });
}

TEST_F(HandleLeaks, DirectoriesLeakNothing) {
  Database db;
  ExpectNoLeak([&] {
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("folder")), ErrorCode::AccessDenied);
  });
}

TEST_F(HandleLeaks, SharingViolationsLeakNothing) {
  HANDLE holder = CreateFileW(dir_.Wide("good.bin").c_str(), GENERIC_READ, 0, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  Database db;
  ExpectNoLeak([&] {
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("good.bin")), ErrorCode::IoError);
  });
  CloseHandle(holder);
}

TEST_F(HandleLeaks, LoadAndCloseCyclesLeakNothing) {
  Database db;
  ExpectNoLeak([&] {
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("good.bin")), ErrorCode::Success);
    db.Close();
  }, kLoadRounds);
}

TEST_F(HandleLeaks, ReloadsWithoutCloseLeakNothing) {
  Database db;
  ExpectNoLeak([&] {
    EXPECT_EQ(db.LoadFromBinary(dir_.Utf8("good.bin")), ErrorCode::Success);
  }, kLoadRounds);
  db.Close();
}

TEST_F(HandleLeaks, MappedFileFailuresLeakNothing) {
  Sparlane::MappedFile file;
  ExpectNoLeak([&] {
    EXPECT_EQ(file.Open(dir_.Utf8("short.bin")), ErrorCode::CorruptedFile);
    EXPECT_EQ(file.Open(dir_.Utf8("absent.bin")), ErrorCode::FileNotFound);
  });
}

}  // namespace
}  // namespace sparlane_windows_test
