#include <gtest/gtest.h>

#include <cstring>

#include "sparlane/sparlane.h"
#include "../support/store_seam.h"

using Sparlane::ConsumableSet;
using Sparlane::Database;
using Sparlane::DatabaseAccess;

namespace {

ConsumableSet SampleSet(unsigned short id) {
  ConsumableSet set;
  std::memset(&set, 0, sizeof set);
  set.set_id = id;
  set.rated_current_amps = 130;
  std::strncpy(set.description, "130 A mild steel", sizeof set.description - 1);
  std::strncpy(set.nozzle_part, "N-130", sizeof set.nozzle_part - 1);
  std::strncpy(set.electrode_part, "E-130", sizeof set.electrode_part - 1);
  std::strncpy(set.shield_part, "S-130", sizeof set.shield_part - 1);
  std::strncpy(set.swirl_ring_part, "R-130", sizeof set.swirl_ring_part - 1);
  set.swirl_ring_part[15] = '\x7f';  // the whole record, up to its last byte
  return set;
}

}  // namespace

TEST(ConsumableSetLookup, NeverLoadedDatabaseHasNoSets) {
  const Database db;
  EXPECT_FALSE(db.GetConsumableSet(0).has_value());
  EXPECT_FALSE(db.GetConsumableSet(1).has_value());
  EXPECT_FALSE(db.GetConsumableSet(65535).has_value());
}

TEST(ConsumableSetLookup, CreatedDatabaseHasNoSets) {
  Database db;
  ASSERT_EQ(db.Create(), Sparlane::ErrorCode::Success);
  for (unsigned id : {0u, 1u, 2u, 130u, 65535u}) {
    EXPECT_FALSE(db.GetConsumableSet(static_cast<unsigned short>(id)).has_value()) << id;
  }
}

TEST(ConsumableSetLookup, ReturnsACopyOfTheWholeRecordTheStoreHolds) {
  Database db;
  const ConsumableSet stored = SampleSet(7);
  DatabaseAccess::PutConsumableSet(db, 7, stored);

  const auto found = db.GetConsumableSet(7);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(std::memcmp(&*found, &stored, sizeof stored), 0);
  EXPECT_FALSE(db.GetConsumableSet(8).has_value());

  // A copy: later changes to the store do not reach it.
  ConsumableSet changed = stored;
  changed.rated_current_amps = 45;
  DatabaseAccess::PutConsumableSet(db, 7, changed);
  EXPECT_EQ(found->rated_current_amps, 130);
}

TEST(ConsumableSetLookup, LeavesTheLastErrorAlone) {
  Database db;
  DatabaseAccess::SetLastError(db, "earlier failure");
  EXPECT_FALSE(db.GetConsumableSet(3).has_value());
  EXPECT_EQ(db.GetLastError(), "earlier failure");
}
