// A consumable set found through the C interface arrives whole.  Sets come
// only from inside the library, so this test (C++, unlike the rest of
// tests/c) places one in the body behind a handle first.
#include <gtest/gtest.h>

#include <cstring>

#include "bindings/c/handle.h"
#include "tests/support/store_seam.h"

namespace {

TEST(CConsumableSet, FoundSetIsCopiedFieldForField) {
  sparlane_db_t* db = sparlane_db_create();
  ASSERT_NE(db, nullptr);
  ASSERT_EQ(sparlane_db_create_empty(db), SPARLANE_SUCCESS);
  Sparlane::ConsumableSet set{};
  set.set_id = 7;
  set.rated_current_amps = 45;
  std::strcpy(set.description, "45 A shielded");
  std::strcpy(set.nozzle_part, "220941");
  std::strcpy(set.electrode_part, "220842");
  std::strcpy(set.shield_part, "220817");
  std::strcpy(set.swirl_ring_part, "220857");
  Sparlane::DatabaseAccess::PutConsumableSet(db->db, 7, set);

  sparlane_consumable_set_t out;
  std::memset(&out, 0xAB, sizeof out);
  EXPECT_EQ(sparlane_db_consumable_set(db, 7, &out), 1);
  EXPECT_EQ(out.set_id, 7);
  EXPECT_EQ(out.rated_current_amps, 45);
  EXPECT_STREQ(out.description, "45 A shielded");
  EXPECT_STREQ(out.nozzle_part, "220941");
  EXPECT_STREQ(out.electrode_part, "220842");
  EXPECT_STREQ(out.shield_part, "220817");
  EXPECT_STREQ(out.swirl_ring_part, "220857");
  EXPECT_EQ(std::memcmp(&out, &set, sizeof out), 0);
  EXPECT_EQ(sparlane_db_consumable_set(db, 8, &out), 0);

  sparlane_database_stats_t stats;
  ASSERT_EQ(sparlane_db_statistics(db, &stats), SPARLANE_SUCCESS);
  EXPECT_EQ(stats.consumable_set_count, 1u);
  sparlane_db_destroy(db);
}

}  // namespace
