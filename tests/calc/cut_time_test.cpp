#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

TEST(CutTime, SplitsIntoTravelAndPierceTime) {
  const auto p = Record(6.0f, 1.5f, 2000.0f, 130, 0.5f);
  const auto e = Database::EstimateCutTime(p, 1000.0f, 4);
  const float cut = 1000.0f / 2000.0f * 60.0f;
  const float pierce = static_cast<float>(4u) * 0.5f;
  EXPECT_EQ(e.cut_time_s, cut);
  EXPECT_EQ(e.pierce_time_total_s, pierce);
  EXPECT_EQ(e.total_time_s, pierce + cut);
  EXPECT_FLOAT_EQ(e.cut_time_s, 30.0f);
  EXPECT_FLOAT_EQ(e.pierce_time_total_s, 2.0f);
  EXPECT_FLOAT_EQ(e.total_time_s, 32.0f);
  EXPECT_EQ(e.cut_length_mm, 1000.0f);
  EXPECT_EQ(e.pierce_count, 4u);
}

TEST(CutTime, DividesBeforeScalingToSeconds) {
  // These figures round differently when multiplied by 60 first, so only the
  // written order passes.
  const float length = 1.0f;
  const float speed = 7.0f;
  ASSERT_NE(length / speed * 60.0f, length * 60.0f / speed);
  const auto e = Database::EstimateCutTime(Record(1.0f, 1.0f, speed), length, 0);
  EXPECT_EQ(e.cut_time_s, length / speed * 60.0f);
  EXPECT_EQ(e.total_time_s, 0.0f + length / speed * 60.0f);
}

TEST(CutTime, ZeroLengthIgnoresPierces) {
  const auto e = Database::EstimateCutTime(Record(6.0f), 0.0f, 10);
  EXPECT_EQ(e.cut_time_s, 0.0f);
  EXPECT_EQ(e.pierce_time_total_s, 0.0f);
  EXPECT_EQ(e.total_time_s, 0.0f);
  EXPECT_EQ(e.cut_length_mm, 0.0f);
  EXPECT_EQ(e.pierce_count, 10u);
}

TEST(CutTime, NegativeOrNaNLengthGivesZeroTimesAndEchoesLength) {
  const auto negative = Database::EstimateCutTime(Record(6.0f), -5.0f, 3);
  EXPECT_EQ(negative.total_time_s, 0.0f);
  EXPECT_EQ(negative.pierce_time_total_s, 0.0f);
  EXPECT_EQ(negative.cut_length_mm, -5.0f);
  EXPECT_EQ(negative.pierce_count, 3u);

  const float nan = std::numeric_limits<float>::quiet_NaN();
  const auto undefined = Database::EstimateCutTime(Record(6.0f), nan, 3);
  EXPECT_EQ(undefined.cut_time_s, 0.0f);
  EXPECT_EQ(undefined.total_time_s, 0.0f);
  EXPECT_TRUE(std::isnan(undefined.cut_length_mm));
}

TEST(CutTime, NoSpeedGivesZeroTimesEvenWithPierces) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (float speed : {0.0f, -100.0f, nan}) {
    const auto e = Database::EstimateCutTime(Record(6.0f, 1.5f, speed, 130, 0.5f), 500.0f, 8);
    EXPECT_EQ(e.cut_time_s, 0.0f) << speed;
    EXPECT_EQ(e.pierce_time_total_s, 0.0f) << speed;
    EXPECT_EQ(e.total_time_s, 0.0f) << speed;
    EXPECT_EQ(e.cut_length_mm, 500.0f);
    EXPECT_EQ(e.pierce_count, 8u);
  }
}

TEST(CutTime, ZeroPiercesCountOnlyTravel) {
  const auto e = Database::EstimateCutTime(Record(6.0f, 1.5f, 1500.0f, 130, 0.8f), 250.0f, 0);
  EXPECT_EQ(e.pierce_time_total_s, 0.0f);
  EXPECT_EQ(e.cut_time_s, 250.0f / 1500.0f * 60.0f);
  EXPECT_EQ(e.total_time_s, 0.0f + 250.0f / 1500.0f * 60.0f);
}

TEST(CutTime, LargePierceCountIsConvertedToFloat) {
  const unsigned int pierces = 16777217u;  // not representable as float
  const auto e = Database::EstimateCutTime(Record(6.0f, 1.5f, 2000.0f, 130, 0.25f), 10.0f, pierces);
  EXPECT_EQ(e.pierce_time_total_s, static_cast<float>(pierces) * 0.25f);
  EXPECT_EQ(e.pierce_count, pierces);
}
