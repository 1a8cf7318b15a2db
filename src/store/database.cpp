// The Database handle: construction, moves, lifecycle and the last error.
#include <chrono>

#include "store/store.h"

namespace Sparlane {

namespace {

// Seconds since 1970 from the system clock's 100 ns ticks, truncated.
std::int64_t WallClockSeconds() {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10000000>>;
  const auto ticks =
      std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch());
  return ticks.count() / 10000000;
}

// Magic, version 1.0 and the creation time; everything else zero until a
// save fills it in.
FileHeader FreshHeader() {
  FileHeader h{};
  h.magic = kFileMagic;
  h.version_major = kFileVersionMajor;
  h.version_minor = 0;
  h.created_time = WallClockSeconds();
  return h;
}

}  // namespace

Database::Database() : impl_(new Impl()) {}

Database::~Database() { delete impl_; }

Database::Database(Database&& other) noexcept : impl_(other.impl_) { other.impl_ = nullptr; }

Database& Database::operator=(Database&& other) noexcept {
  Impl* previous = impl_;
  impl_ = other.impl_;
  other.impl_ = nullptr;
  delete previous;
  return *this;
}

ErrorCode Database::Create() {
  Close();
  impl_->Reset(FreshHeader());
  return ErrorCode::Success;
}

void Database::Close() { impl_->Close(); }

bool Database::IsLoaded() const { return impl_->loaded(); }

std::string Database::GetLastError() const { return impl_->last_error(); }

}  // namespace Sparlane
