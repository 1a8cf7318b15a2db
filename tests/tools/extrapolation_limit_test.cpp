// The extrapolation limit: a quarter of the span's end value beyond each end.
#include <gtest/gtest.h>

#include <limits>

#include "extrapolation_limit.h"

namespace {

Sparlane::CuttingParameter Row(float thickness) {
  Sparlane::CuttingParameter p{};
  p.thickness_mm = thickness;
  return p;
}

}  // namespace

TEST(ExtrapolationLimit, SpanOfRowsInAnyOrderSkippingNonFiniteThicknesses) {
  const auto span = slb::SpanOf({Row(6), Row(2), Row(std::numeric_limits<float>::quiet_NaN()),
                                 Row(20), Row(std::numeric_limits<float>::infinity())});
  ASSERT_TRUE(span);
  EXPECT_EQ(span->thinnest_mm, 2.0f);
  EXPECT_EQ(span->thickest_mm, 20.0f);
  EXPECT_FALSE(slb::SpanOf({}));
  EXPECT_FALSE(slb::SpanOf({Row(std::numeric_limits<float>::quiet_NaN())}));
}

TEST(ExtrapolationLimit, AllowsAQuarterBeyondEachEndIncludingTheEnds) {
  const slb::ThicknessSpan span{2.0f, 20.0f};
  EXPECT_EQ(span.LowestAllowed(), 1.5);
  EXPECT_EQ(span.HighestAllowed(), 25.0);
  EXPECT_TRUE(span.Allows(1.5));
  EXPECT_TRUE(span.Allows(10));
  EXPECT_TRUE(span.Allows(25));
  EXPECT_FALSE(span.Allows(1.49));
  EXPECT_FALSE(span.Allows(25.01));
  EXPECT_FALSE(span.Allows(std::numeric_limits<double>::quiet_NaN()));
}

TEST(ExtrapolationLimit, PrintedLimitsOfAFloatSpanAreAllowed) {
  const slb::ThicknessSpan span{1.524f, 25.4f};
  EXPECT_TRUE(span.Allows(1.143f));
  EXPECT_TRUE(span.Allows(31.75f));
  EXPECT_FALSE(span.Allows(31.76f));
}

TEST(ExtrapolationLimit, SingleRowSpanAllowsAQuarterEitherWay) {
  const slb::ThicknessSpan span{8.0f, 8.0f};
  EXPECT_TRUE(span.Allows(6));
  EXPECT_TRUE(span.Allows(10));
  EXPECT_FALSE(span.Allows(5.9));
  EXPECT_FALSE(span.Allows(10.1));
}

TEST(ExtrapolationLimit, RefusalNamesTheSpanTheLimitsAndTheOption) {
  const slb::ThicknessSpan span{2.0f, 20.0f};
  EXPECT_EQ(slb::ExtrapolationRefusal(30, span, "Steel on M"),
            "30 mm is too far above the listed rows of Steel on M (2 to 20 mm) to extrapolate "
            "safely: settings are given from 1.5 to 25 mm (25 % beyond the span); "
            "--allow-extrapolation gives them anyway");
  EXPECT_EQ(slb::ExtrapolationRefusal(1, span, "Steel").substr(0, 40),
            "1 mm is too far below the listed rows of");
}
