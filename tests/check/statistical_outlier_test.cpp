#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "sparlane/sparlane.h"

namespace Sparlane {
namespace {

using Testing::IsStatisticalOutlier;

const float kNaN = std::numeric_limits<float>::quiet_NaN();

// |value - mean| / deviation computed step by step in float and in double;
// the two differ on the samples below, which pins the arithmetic to float.
float FloatScore(float value, const std::vector<float>& s) {
  float sum = 0.0f;
  for (float x : s) sum += x;
  float mean = sum / static_cast<float>(s.size());
  float squares = 0.0f;
  for (float x : s) squares += (x - mean) * (x - mean);
  float deviation = std::sqrt(squares / static_cast<float>(s.size() - 1));
  return std::fabs((value - mean) / deviation);
}

double DoubleScore(double value, const std::vector<float>& s) {
  double sum = 0.0;
  for (float x : s) sum += x;
  double mean = sum / static_cast<double>(s.size());
  double squares = 0.0;
  for (float x : s) squares += (x - mean) * (x - mean);
  double deviation = std::sqrt(squares / static_cast<double>(s.size() - 1));
  return std::fabs((value - mean) / deviation);
}

TEST(StatisticalOutlier, FewerThanThreeElementsNeverOutlier) {
  EXPECT_FALSE(IsStatisticalOutlier(1e9f, {}, 0.0f));
  EXPECT_FALSE(IsStatisticalOutlier(1e9f, {1.0f}, 0.0f));
  EXPECT_FALSE(IsStatisticalOutlier(1e9f, {1.0f, 2.0f}, -1.0f));
}

TEST(StatisticalOutlier, SampleVarianceNotPopulationVariance) {
  // Mean 2, sample deviation 1 (population deviation would be 0.816).
  EXPECT_TRUE(IsStatisticalOutlier(4.0f, {1.0f, 2.0f, 3.0f}, 1.0f));
  EXPECT_FALSE(IsStatisticalOutlier(4.0f, {1.0f, 2.0f, 3.0f}, 2.0f));  // exactly 2: not above
  EXPECT_TRUE(IsStatisticalOutlier(4.0f, {1.0f, 2.0f, 3.0f}, std::nextafter(2.0f, 0.0f)));
  // With population deviation 4 would be 2.45 deviations away.
  EXPECT_FALSE(IsStatisticalOutlier(4.0f, {1.0f, 2.0f, 3.0f}, 2.2f));
}

TEST(StatisticalOutlier, ValuesBelowTheMeanCountToo) {
  EXPECT_TRUE(IsStatisticalOutlier(-0.5f, {1.0f, 2.0f, 3.0f}, 2.0f));
  EXPECT_FALSE(IsStatisticalOutlier(0.0f, {1.0f, 2.0f, 3.0f}, 2.0f));
}

TEST(StatisticalOutlier, SampleWithoutSpreadHasNoOutliers) {
  EXPECT_FALSE(IsStatisticalOutlier(100.0f, {5.0f, 5.0f, 5.0f}, 1.0f));
  EXPECT_FALSE(IsStatisticalOutlier(100.0f, {5.0f, 5.0f, 5.0f}, -1.0f));
}

TEST(StatisticalOutlier, DeviationJustBelowTheSpreadLimitHasNoOutliers) {
  // Deviation of {0, d, 2d} is d.
  const float tiny = 0.00009f;
  EXPECT_FALSE(IsStatisticalOutlier(1000.0f, {0.0f, tiny, 2 * tiny}, 1.0f));
  const float enough = 0.0002f;
  EXPECT_TRUE(IsStatisticalOutlier(1000.0f, {0.0f, enough, 2 * enough}, 1.0f));
}

TEST(StatisticalOutlier, NegativeThresholdMakesEveryValueAnOutlier) {
  EXPECT_TRUE(IsStatisticalOutlier(2.0f, {1.0f, 2.0f, 3.0f}, -0.5f));  // the mean itself
  EXPECT_TRUE(IsStatisticalOutlier(2.5f, {1.0f, 2.0f, 3.0f}, -0.5f));
  EXPECT_FALSE(IsStatisticalOutlier(2.0f, {1.0f, 2.0f, 3.0f}, 0.0f));  // 0 > 0 is false
}

TEST(StatisticalOutlier, NaNIsNeverAnOutlier) {
  EXPECT_FALSE(IsStatisticalOutlier(kNaN, {1.0f, 2.0f, 3.0f}, -1.0f));
  EXPECT_FALSE(IsStatisticalOutlier(4.0f, {1.0f, kNaN, 3.0f}, -1.0f));
  EXPECT_FALSE(IsStatisticalOutlier(4.0f, {1.0f, 2.0f, 3.0f}, kNaN));
}

TEST(StatisticalOutlier, ArithmeticIsFloatInSampleOrder) {
  const std::vector<float> big_first = {16777216.0f, 1.0f, 1.0f, 1.0f};
  const std::vector<float> big_last = {1.0f, 1.0f, 1.0f, 16777216.0f};
  // In float the first sample puts 0 at exactly 0.5 deviations, in double
  // just above; summing in the other order lands just above in float too.
  ASSERT_EQ(FloatScore(0.0f, big_first), 0.5f);
  ASSERT_GT(DoubleScore(0.0, big_first), 0.5);
  ASSERT_GT(FloatScore(0.0f, big_last), 0.5f);
  EXPECT_FALSE(IsStatisticalOutlier(0.0f, big_first, 0.5f));
  EXPECT_TRUE(IsStatisticalOutlier(0.0f, big_last, 0.5f));
}

TEST(StatisticalOutlier, AgreesWithStepwiseFloatScoreOnRandomSamples) {
  std::mt19937 rng(42);
  std::uniform_real_distribution<float> values(-1000.0f, 1000.0f);
  std::uniform_int_distribution<int> sizes(3, 40);
  std::uniform_real_distribution<float> thresholds(-1.0f, 4.0f);
  for (int round = 0; round < 5000; ++round) {
    std::vector<float> sample(static_cast<std::size_t>(sizes(rng)));
    for (float& x : sample) x = values(rng);
    const float value = values(rng);
    const float threshold = thresholds(rng);
    const bool expected = FloatScore(value, sample) > threshold;
    ASSERT_EQ(IsStatisticalOutlier(value, sample, threshold), expected) << round;
  }
}

}  // namespace
}  // namespace Sparlane
