// The Database handle: construction, moves, lifecycle and the last error.
#include <chrono>
#include <cstring>

#include "store/database_impl.h"

namespace Sparlane {

namespace {

// Seconds since 1970 from the system clock's 100 ns ticks, truncated.
std::int64_t WallClockSeconds() {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10000000>>;
  const auto ticks =
      std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch());
  return ticks.count() / 10000000;
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
  DatabaseImpl& d = *impl_;
  std::memset(&d.header, 0, sizeof d.header);
  d.header.magic = 0x4E4C5053u;  // "SPLN"
  d.header.version_major = 1;
  d.header.version_minor = 0;
  d.header.created_time = WallClockSeconds();
  d.vendors.clear();
  d.machines.clear();
  d.materials.clear();
  d.parameters.clear();
  d.consumable_sets.clear();
  d.vendor_ids.clear();
  d.machine_ids.clear();
  d.material_ids.clear();
  d.material_ranges.clear();
  d.machine_records.clear();
  ClearPairIndex(d);
  d.loaded = true;
  return ErrorCode::Success;
}

void Database::Close() {
  if (impl_->mapped_file) impl_->mapped_file->Close();
  impl_->loaded = false;
}

bool Database::IsLoaded() const { return impl_->loaded; }

std::string Database::GetLastError() const { return impl_->last_error; }

}  // namespace Sparlane
