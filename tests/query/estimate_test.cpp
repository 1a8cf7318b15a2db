// Database::Estimate: every branch and edge, with the expected records and
// confidences worked out here from the documented rules.
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

#include "query_fixture.h"

namespace query_test {
namespace {

using Sparlane::InterpolationResult;
using Sparlane::kFlagDerived;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;
namespace T = Sparlane::Testing;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

// Settings that move with thickness, some up and one (kerf) down, so that a
// copied field can be told from a continued or floored one.
CuttingParameter Row(float t, float speed, std::uint16_t material = 1, std::uint16_t machine = 1) {
  CuttingParameter p = Record(material, machine, t, speed);
  p.cut_height_mm = 1.0f + 0.1f * t;
  p.pierce_height_mm = 3.0f + 0.2f * t;
  p.transfer_height_mm = 4.0f + 0.1f * t;
  p.arc_voltage_v = 100.0f + 3.0f * t;
  p.pierce_time_s = 0.1f + 0.05f * t;
  p.kerf_width_mm = 2.0f - 0.05f * t;
  // Rows of unusable thickness (NaN, infinite, negative) keep 30 A.
  p.current_amps = static_cast<std::uint16_t>(t > 0.0f && t < 1000.0f ? 30.0f + 2.0f * t : 30.0f);
  return p;
}

bool IsEmpty(const InterpolationResult& r) {
  return SameBytes(r.parameter, CuttingParameter{}) && r.confidence == 0.0f && !r.extrapolated;
}

bool SameResult(const InterpolationResult& a, const InterpolationResult& b) {
  return SameBytes(a.parameter, b.parameter) && a.confidence == b.confidence &&
         a.extrapolated == b.extrapolated;
}

// The documented law: v = va * (t / ta)^k, k = ln(vb / va) / ln(tb / ta).
double Law(const CuttingParameter& a, const CuttingParameter& b, double t) {
  const double k = std::log(static_cast<double>(b.cut_speed_mm_min) / a.cut_speed_mm_min) /
                   std::log(static_cast<double>(b.thickness_mm) / a.thickness_mm);
  return a.cut_speed_mm_min * std::pow(t / a.thickness_mm, k);
}

double RelativeError(double predicted, float listed) {
  return std::fabs(predicted - listed) / listed;
}

// |ln(t / t_near)| / |ln(tb / ta)|, t_near the nearer of the pair in log terms.
double U(double t, float ta, float tb) {
  return std::min(std::fabs(std::log(t / ta)), std::fabs(std::log(t / tb))) /
         std::fabs(std::log(static_cast<double>(tb) / ta));
}

// n + (n - s) * (t - tn) / (tn - ts)
double Continued(double n, double s, double t, double tn, double ts) {
  return n + (n - s) * (t - tn) / (tn - ts);
}

template <typename Get>
float SmallestOf(const std::vector<CuttingParameter>& rows, Get get) {
  float smallest = FLT_MAX;
  for (const CuttingParameter& r : rows) smallest = std::min(smallest, get(r));
  return smallest;
}

// The record the documented rule gives beyond the rows, from n and s, with
// the speed given (the law or the conservative rule, capped).
CuttingParameter ContinuedRecord(const std::vector<CuttingParameter>& series,
                                 const CuttingParameter& n, const CuttingParameter& s, float t,
                                 double speed) {
  CuttingParameter want = n;
  want.thickness_mm = t;
  want.flags = n.flags | kFlagDerived;
  want.cut_speed_mm_min = static_cast<float>(speed);
  const double tn = n.thickness_mm;
  const double ts = s.thickness_mm;
  for (float CuttingParameter::*f :
       {&CuttingParameter::cut_height_mm, &CuttingParameter::pierce_height_mm,
        &CuttingParameter::transfer_height_mm, &CuttingParameter::arc_voltage_v,
        &CuttingParameter::pierce_time_s, &CuttingParameter::kerf_width_mm}) {
    const double line = Continued(n.*f, s.*f, t, tn, ts);
    const float floor = SmallestOf(series, [f](const CuttingParameter& r) { return r.*f; });
    want.*f = static_cast<float>(std::max(line, static_cast<double>(floor)));
  }
  const double amps = Continued(n.current_amps, s.current_amps, t, tn, ts);
  const float least = SmallestOf(series, [](const CuttingParameter& r) {
    return static_cast<float>(r.current_amps);
  });
  want.current_amps = static_cast<std::uint16_t>(
      std::round(std::min(std::max(amps, static_cast<double>(least)), 65535.0)));
  return want;
}

class Estimate : public ::testing::Test {
 protected:
  void SetUp() override { MakeCatalogue(db, 3, 2); }
  InterpolationResult At(float t, const char* material = "Mat1", const char* machine = "M1") {
    return db.Estimate(material, t, machine);
  }
  Database db;
};

// --- empty results -----------------------------------------------------------

TEST_F(Estimate, NotLoadedGivesTheEmptyResult) {
  Database fresh;
  EXPECT_TRUE(IsEmpty(fresh.Estimate("Mat1", 5.0f, "M1")));
  LoadRecords(db, {Row(5.0f, 2000.0f)});
  db.Close();
  EXPECT_TRUE(IsEmpty(At(5.0f)));
}

TEST_F(Estimate, ThicknessNotFiniteOrNotAboveZeroGivesTheEmptyResult) {
  LoadRecords(db, {Row(5.0f, 2000.0f), Row(10.0f, 1000.0f)});
  for (float t : {0.0f, -0.0f, -1.0f, kNaN, kInf, -kInf}) {
    EXPECT_TRUE(IsEmpty(At(t))) << t;
  }
}

TEST_F(Estimate, UnknownNamesGiveTheEmptyResult) {
  LoadRecords(db, {Row(5.0f, 2000.0f), Row(10.0f, 1000.0f)});
  EXPECT_TRUE(IsEmpty(At(7.0f, "Mat9", "M1")));
  EXPECT_TRUE(IsEmpty(At(7.0f, "Mat1", "M9")));
  EXPECT_TRUE(IsEmpty(At(7.0f, "", "M1")));
  // A name whose id is 0 is unknown, as in the other queries.
  DatabaseAccess::SetNameId(db, NameKind::kMaterial, "Mat1", 0);
  EXPECT_TRUE(IsEmpty(At(7.0f)));
}

TEST_F(Estimate, PairWithoutUsableRowsGivesTheEmptyResult) {
  LoadRecords(db, {Row(5.0f, 2000.0f), Row(kNaN, 900.0f, 2, 1), Row(0.0f, 900.0f, 2, 1),
                   Row(-3.0f, 900.0f, 2, 1), Row(kInf, 900.0f, 2, 1)});
  EXPECT_TRUE(IsEmpty(At(5.0f, "Mat1", "M2")));  // no records at all
  EXPECT_TRUE(IsEmpty(At(5.0f, "Mat2", "M1")));  // none with a usable thickness
}

TEST_F(Estimate, IsNeitherTimedNorCountedNorLogged) {
  LoadRecords(db, {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f), Row(8.0f, 1000.0f)});
  db.SetQueryLogging(true);
  CaptureStderr();
  for (float t : {1.0f, 2.0f, 3.0f, 16.0f, -1.0f}) At(t);
  At(3.0f, "Mat9", "M1");
  At(3.0f, "Mat2", "M1");
  EXPECT_EQ(GetCapturedStderr(), "");
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 0u);
  EXPECT_EQ(m.queries_found + m.queries_not_found, 0u);
}

// --- a listed row -----------------------------------------------------------

TEST_F(Estimate, RowWithinTheSameThicknessStepIsReturnedUnchanged) {
  LoadRecords(db, {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f), Row(8.0f, 1000.0f)});
  const CuttingParameter listed = db.GetParameters()[1];
  for (float t : {4.0f, 4.0009f, 3.9991f}) {
    const auto r = At(t);
    EXPECT_TRUE(SameBytes(r.parameter, listed)) << t;  // no derived bit, own thickness
    EXPECT_EQ(r.confidence, 1.0f);
    EXPECT_FALSE(r.extrapolated);
  }
  EXPECT_FALSE(SameBytes(At(4.0011f).parameter, listed));
}

TEST_F(Estimate, NearerOfTwoRowsWithinTheStepIsTheListedOne) {
  LoadRecords(db, {Row(5.0f, 2000.0f), Row(5.0015f, 1990.0f), Row(9.0f, 900.0f)});
  const auto records = db.GetParameters();
  EXPECT_TRUE(SameBytes(At(5.0009f).parameter, records[1]));
  EXPECT_TRUE(SameBytes(At(5.0006f).parameter, records[0]));
}

TEST_F(Estimate, OfTwoRowsEquallyNearTheThinnerIsTheListedOne) {
  // 1 + 2^-9 and a request at 1 + 2^-10: both exactly 2^-10 away.
  const float upper = 1.0f + 0.001953125f;
  const float t = 1.0f + 0.0009765625f;
  ASSERT_EQ(t - 1.0f, upper - t);
  LoadRecords(db, {Row(upper, 1990.0f), Row(1.0f, 2000.0f)});
  EXPECT_TRUE(SameBytes(At(t).parameter, db.GetParameters()[1]));
}

TEST_F(Estimate, ListedRowOfASingleRowSeriesIsReturnedUnchanged) {
  LoadRecords(db, {Row(6.0f, 1500.0f)});
  const auto r = At(6.0f);
  EXPECT_TRUE(SameBytes(r.parameter, db.GetParameters()[0]));
  EXPECT_EQ(r.confidence, 1.0f);
  EXPECT_FALSE(r.extrapolated);
}

// --- between two rows --------------------------------------------------------

TEST_F(Estimate, BetweenRowsTheSpeedFollowsThePowerLawAndTheRestIsLinear) {
  const std::vector<CuttingParameter> rows = {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f),
                                              Row(8.0f, 1000.0f), Row(16.0f, 380.0f)};
  LoadRecords(db, rows);
  const float t = 5.0f;
  const auto r = At(t);
  CuttingParameter want = T::InterpolateLinear(rows[1], rows[2], t);
  want.cut_speed_mm_min = static_cast<float>(Law(rows[1], rows[2], t));
  EXPECT_TRUE(SameBytes(r.parameter, want));
  EXPECT_LT(r.parameter.cut_speed_mm_min, T::InterpolateLinear(rows[1], rows[2], t).cut_speed_mm_min);
  EXPECT_EQ(r.parameter.flags, rows[1].flags | kFlagDerived);
  EXPECT_FALSE(r.extrapolated);

  // Fit: the law through 4 and 8 mm judged at 2 and 16 mm.
  const double e = (RelativeError(Law(rows[1], rows[2], 2.0), 4000.0f) +
                    RelativeError(Law(rows[1], rows[2], 16.0), 380.0f)) / 2.0;
  const double fit = 1.0 / (1.0 + e);
  EXPECT_FLOAT_EQ(r.confidence, static_cast<float>(fit * (1.0 - U(t, 4.0f, 8.0f))));
  EXPECT_GT(r.confidence, 0.0f);
  EXPECT_LE(r.confidence, 1.0f);
}

TEST_F(Estimate, BetweenRowsDistanceIsMeasuredOnALogScale) {
  // 1 and 10 mm: 4 mm is nearer 1 mm in millimetres but nearer 10 mm in log
  // terms, so u stays at or below one half.
  LoadRecords(db, {Row(1.0f, 5000.0f), Row(10.0f, 600.0f)});
  for (float t : {2.0f, 3.1622777f, 4.0f, 9.0f}) {
    const auto r = At(t);
    const double u = U(t, 1.0f, 10.0f);
    EXPECT_LE(u, 0.5 + 1e-9);
    EXPECT_FLOAT_EQ(r.confidence, static_cast<float>(0.5 * (1.0 - u))) << t;  // no neighbours
  }
}

TEST_F(Estimate, BetweenRowsWithOneNeighbourFitsOnThatOne) {
  const std::vector<CuttingParameter> rows = {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f),
                                              Row(8.0f, 1000.0f)};
  LoadRecords(db, rows);
  const float t = 3.0f;  // between 2 and 4: only the 8 mm row lies beside the pair
  const double fit = 1.0 / (1.0 + RelativeError(Law(rows[0], rows[1], 8.0), 1000.0f));
  EXPECT_FLOAT_EQ(At(t).confidence, static_cast<float>(fit * (1.0 - U(t, 2.0f, 4.0f))));
}

TEST_F(Estimate, NeighbourWithoutAUsableSpeedIsNoEvidence) {
  const std::vector<CuttingParameter> rows = {Row(2.0f, 0.0f), Row(4.0f, 2200.0f),
                                              Row(8.0f, 1000.0f), Row(16.0f, -5.0f)};
  LoadRecords(db, rows);
  const float t = 6.0f;
  EXPECT_FLOAT_EQ(At(t).confidence, static_cast<float>(0.5 * (1.0 - U(t, 4.0f, 8.0f))));
}

TEST_F(Estimate, BetweenRowsWithoutAUsableSpeedTheLinearSpeedStays) {
  for (float bad : {0.0f, -200.0f}) {
    const std::vector<CuttingParameter> rows = {Row(2.0f, 4000.0f), Row(4.0f, bad),
                                                Row(8.0f, 1000.0f)};
    LoadRecords(db, rows);
    const float t = 6.0f;
    const auto r = At(t);
    EXPECT_TRUE(SameBytes(r.parameter, T::InterpolateLinear(rows[1], rows[2], t))) << bad;
    EXPECT_FLOAT_EQ(r.confidence, static_cast<float>(0.5 * (1.0 - U(t, 4.0f, 8.0f))));
    EXPECT_FALSE(r.extrapolated);
  }
}

TEST_F(Estimate, NonFiniteSpeedBetweenRowsGivesTheEmptyResult) {
  for (float bad : {kNaN, kInf}) {
    LoadRecords(db, {Row(2.0f, 4000.0f), Row(4.0f, bad), Row(8.0f, 1000.0f)});
    EXPECT_TRUE(IsEmpty(At(6.0f))) << bad;
    EXPECT_FALSE(IsEmpty(At(12.0f)));  // from 8 mm by the conservative rule
  }
}

// --- beyond the rows ---------------------------------------------------------

// A result beyond the rows by the law through rows n and s, its fit judged
// at the row `inward`.
void ExpectLawBeyond(const InterpolationResult& r, const std::vector<CuttingParameter>& rows,
                     std::size_t n, std::size_t s, std::size_t inward, float t) {
  const double speed = Law(rows[n], rows[s], t);
  EXPECT_TRUE(SameBytes(r.parameter, ContinuedRecord(rows, rows[n], rows[s], t, speed)));
  EXPECT_EQ(r.parameter.flags, rows[n].flags | kFlagDerived);
  EXPECT_TRUE(r.extrapolated);
  const double fit =
      1.0 / (1.0 + RelativeError(Law(rows[n], rows[s], rows[inward].thickness_mm),
                                 rows[inward].cut_speed_mm_min));
  const double u = U(t, rows[n].thickness_mm, rows[s].thickness_mm);
  EXPECT_FLOAT_EQ(r.confidence, static_cast<float>(0.7 * fit / (1.0 + u)));
}

TEST_F(Estimate, AboveTheRowsTheSpeedFollowsTheLawBelowTheSlowestListed) {
  const std::vector<CuttingParameter> rows = {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f),
                                              Row(8.0f, 1000.0f)};
  LoadRecords(db, rows);
  float slower_than = 1000.0f;
  for (float t : {9.0f, 16.0f, 40.0f}) {
    const auto r = At(t);
    ExpectLawBeyond(r, rows, 2, 1, 0, t);
    EXPECT_LT(r.parameter.cut_speed_mm_min, slower_than) << t;  // keeps falling
    slower_than = r.parameter.cut_speed_mm_min;
    EXPECT_GT(r.parameter.pierce_time_s, rows[2].pierce_time_s);  // rising, continued
  }
  // Kerf falls with thickness; continued, it would drop below the smallest
  // listed kerf, so it stops there.
  EXPECT_LT(Continued(rows[2].kerf_width_mm, rows[1].kerf_width_mm, 40.0, 8.0, 4.0),
            rows[2].kerf_width_mm);
  EXPECT_EQ(At(40.0f).parameter.kerf_width_mm, rows[2].kerf_width_mm);
}

TEST_F(Estimate, BelowTheRowsTheSpeedFollowsTheLawFromTheTwoThinnest) {
  // Speed rising with thickness at the thin end: the law goes down, no cap.
  const std::vector<CuttingParameter> rows = {Row(2.0f, 3000.0f), Row(4.0f, 4000.0f),
                                              Row(8.0f, 2500.0f)};
  LoadRecords(db, rows);
  const auto r = At(1.0f);
  ExpectLawBeyond(r, rows, 0, 1, 2, 1.0f);
  EXPECT_LT(r.parameter.cut_speed_mm_min, 3000.0f);
  // Fields rising with thickness are floored at the thinnest row's values;
  // kerf, falling, is continued above them.
  EXPECT_EQ(r.parameter.pierce_time_s, rows[0].pierce_time_s);
  EXPECT_EQ(r.parameter.cut_height_mm, rows[0].cut_height_mm);
  EXPECT_EQ(r.parameter.current_amps, rows[0].current_amps);
  EXPECT_GT(r.parameter.kerf_width_mm, rows[0].kerf_width_mm);
}

TEST_F(Estimate, TwoRowSeriesExtrapolatesWithTheEvidenceFreeFit) {
  const std::vector<CuttingParameter> rows = {Row(3.0f, 3000.0f), Row(6.0f, 1400.0f)};
  LoadRecords(db, rows);
  const float t = 12.0f;
  const auto r = At(t);
  EXPECT_TRUE(SameBytes(r.parameter,
                        ContinuedRecord(rows, rows[1], rows[0], t, Law(rows[1], rows[0], t))));
  EXPECT_FLOAT_EQ(r.confidence, static_cast<float>(0.7 * 0.5 / (1.0 + U(t, 6.0f, 3.0f))));
}

TEST_F(Estimate, ExtrapolatedSpeedNeverExceedsTheFastestListed) {
  // Falling speeds: any thinner plate would cut faster than the thinnest row.
  LoadRecords(db, {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f), Row(8.0f, 1000.0f)});
  for (float t : {1.9f, 1.0f, 0.1f, 1e-30f}) {
    EXPECT_EQ(At(t).parameter.cut_speed_mm_min, 4000.0f) << t;
  }
  // The cap is the series' fastest, wherever it lies.
  const std::vector<CuttingParameter> rows = {Row(2.0f, 3000.0f), Row(4.0f, 2000.0f),
                                              Row(8.0f, 6000.0f)};
  LoadRecords(db, rows);
  EXPECT_GT(Law(rows[0], rows[1], 0.5), 6000.0);
  EXPECT_EQ(At(0.5f).parameter.cut_speed_mm_min, 6000.0f);
  EXPECT_LT(Law(rows[0], rows[1], 1.0), 6000.0);
  EXPECT_EQ(At(1.0f).parameter.cut_speed_mm_min, static_cast<float>(Law(rows[0], rows[1], 1.0)));
}

TEST_F(Estimate, WithoutALawTheSpeedFollowsTheConservativeRuleFromTheNearestRow) {
  // Below: n = 1 mm, s has speed 0, a faster row further in.
  std::vector<CuttingParameter> rows = {Row(1.0f, 1000.0f), Row(2.0f, 0.0f), Row(3.0f, 5000.0f)};
  LoadRecords(db, rows);
  const float thin = 0.5f;
  const double down = T::ExtrapolateConservative(rows[0], thin).cut_speed_mm_min;
  EXPECT_LT(down, 5000.0);
  auto r = At(thin);
  EXPECT_TRUE(SameBytes(r.parameter, ContinuedRecord(rows, rows[0], rows[1], thin, down)));
  EXPECT_FLOAT_EQ(r.confidence, static_cast<float>(0.7 * 0.5 / (1.0 + U(thin, 1.0f, 2.0f))));
  // ... capped at the fastest listed speed.
  EXPECT_EQ(At(0.01f).parameter.cut_speed_mm_min, 5000.0f);

  // Above: n = 3 mm, s has a negative speed.
  rows = {Row(1.0f, 5000.0f), Row(2.0f, -3.0f), Row(3.0f, 1000.0f)};
  LoadRecords(db, rows);
  const float thick = 6.0f;
  const double up = T::ExtrapolateConservative(rows[2], thick).cut_speed_mm_min;
  r = At(thick);
  EXPECT_TRUE(SameBytes(r.parameter, ContinuedRecord(rows, rows[2], rows[1], thick, up)));
  EXPECT_EQ(r.parameter.cut_speed_mm_min, 1000.0f / std::sqrt(2.0f));
  EXPECT_TRUE(r.extrapolated);
}

TEST_F(Estimate, ContinuedFieldsAreFlooredAtTheSmallestListedValue) {
  // Pierce delay falls toward thin plate and would go negative.
  std::vector<CuttingParameter> rows = {Row(2.0f, 4000.0f), Row(3.0f, 3000.0f)};
  rows[0].pierce_time_s = 0.1f;
  rows[1].pierce_time_s = 0.5f;
  rows[0].arc_voltage_v = 110.0f;
  rows[1].arc_voltage_v = 105.0f;  // falls with thickness: continued upward toward thin
  LoadRecords(db, rows);
  const auto r = At(1.0f);
  EXPECT_LT(Continued(0.1, 0.5, 1.0, 2.0, 3.0), 0.0);
  EXPECT_EQ(r.parameter.pierce_time_s, 0.1f);
  EXPECT_EQ(r.parameter.arc_voltage_v, static_cast<float>(Continued(110.0, 105.0, 1.0, 2.0, 3.0)));
  EXPECT_EQ(r.parameter.arc_voltage_v, 115.0f);
}

TEST_F(Estimate, CurrentIsRoundedHalfAwayFromZeroAndKeptWithinItsRange) {
  std::vector<CuttingParameter> rows = {Row(1.0f, 4000.0f), Row(3.0f, 2000.0f)};
  rows[0].current_amps = 10;
  rows[1].current_amps = 11;
  LoadRecords(db, rows);
  EXPECT_EQ(Continued(11.0, 10.0, 4.0, 3.0, 1.0), 11.5);
  EXPECT_EQ(At(4.0f).parameter.current_amps, 12);
  EXPECT_EQ(At(0.5f).parameter.current_amps, 10);  // 9.75 below the smallest listed

  rows[0].current_amps = 100;
  rows[1].current_amps = 30000;
  LoadRecords(db, rows);
  EXPECT_GT(Continued(30000.0, 100.0, 6.0, 3.0, 1.0), 65535.0);
  EXPECT_EQ(At(6.0f).parameter.current_amps, 65535);
}

TEST_F(Estimate, ResultWithAFieldNoFloatHoldsIsEmpty) {
  LoadRecords(db, {Row(1.0f, 4000.0f), Row(2.0f, 2000.0f)});
  // Voltage rises 3 V per mm: continued to near the float limit it overflows.
  EXPECT_TRUE(IsEmpty(At(FLT_MAX)));
  EXPECT_FALSE(IsEmpty(At(1000.0f)));
}

// --- one row ----------------------------------------------------------------

TEST_F(Estimate, SingleRowSeriesExtrapolatesConservatively) {
  const CuttingParameter row = Row(5.0f, 2000.0f);
  LoadRecords(db, {row, Row(3.0f, 900.0f, 2, 1)});
  for (float t : {10.0f, 2.5f}) {
    const auto r = At(t);
    EXPECT_TRUE(SameBytes(r.parameter, T::ExtrapolateConservative(row, t))) << t;
    EXPECT_TRUE(r.extrapolated);
    const double u = std::fabs(std::log(static_cast<double>(t) / 5.0));
    EXPECT_FLOAT_EQ(r.confidence, static_cast<float>(0.7 * 0.5 / (1.0 + u)));
  }
}

TEST_F(Estimate, SingleRowFarAwayStillHasAConfidenceAboveZero) {
  LoadRecords(db, {Row(5.0f, 2000.0f)});
  const auto r = At(1e30f);
  EXPECT_GT(r.confidence, 0.0f);
  EXPECT_LT(r.confidence, 0.01f);
}

TEST_F(Estimate, NonFiniteSettingOfAListedRowGivesTheEmptyResult) {
  CuttingParameter bad = Row(5.0f, 2000.0f);
  bad.pierce_time_s = kNaN;
  LoadRecords(db, {Row(2.0f, 4000.0f), bad, Row(8.0f, 1000.0f), Row(12.0f, 600.0f)});
  EXPECT_TRUE(IsEmpty(At(5.0f)));
  EXPECT_TRUE(IsEmpty(At(6.0f)));  // the linear pierce delay is NaN too
  EXPECT_TRUE(IsEmpty(At(1.0f)));  // continued from 2 and 5 mm
  EXPECT_FALSE(IsEmpty(At(10.0f)));  // 8 and 12 mm are whole
}

// --- which rows make the series ----------------------------------------------

TEST_F(Estimate, RowsOfEqualThicknessKeepTheFirstInTableOrder) {
  const CuttingParameter first = Row(4.0f, 2200.0f);
  const CuttingParameter second = Row(4.0f, 2600.0f);
  LoadRecords(db, {Row(8.0f, 1000.0f), first, Row(2.0f, 4000.0f), second});
  Database only_first;
  MakeCatalogue(only_first, 3, 2);
  LoadRecords(only_first, {Row(2.0f, 4000.0f), first, Row(8.0f, 1000.0f)});
  for (float t : {1.0f, 3.0f, 4.0f, 6.0f, 12.0f}) {
    EXPECT_TRUE(SameResult(At(t), only_first.Estimate("Mat1", t, "M1"))) << t;
  }
}

TEST_F(Estimate, RowsCloserThanTheStepKeepTheThinnerOne) {
  // 4.0005 lies earlier in the table, but 4.0 comes first by thickness.
  LoadRecords(db, {Row(4.0005f, 2600.0f), Row(8.0f, 1000.0f), Row(4.0f, 2200.0f),
                   Row(2.0f, 4000.0f)});
  Database without;
  MakeCatalogue(without, 3, 2);
  LoadRecords(without, {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f), Row(8.0f, 1000.0f)});
  for (float t : {1.0f, 3.0f, 4.0005f, 6.0f, 12.0f}) {
    EXPECT_TRUE(SameResult(At(t), without.Estimate("Mat1", t, "M1"))) << t;
  }
}

TEST_F(Estimate, RowsWithoutAUsableThicknessAreLeftOut) {
  const std::vector<CuttingParameter> good = {Row(2.0f, 4000.0f), Row(4.0f, 2200.0f),
                                              Row(8.0f, 1000.0f)};
  LoadRecords(db, {Row(kNaN, 9000.0f), good[0], Row(0.0f, 9000.0f), good[1], Row(-1.0f, 9000.0f),
                   good[2], Row(kInf, 9000.0f), Row(-0.0f, 9000.0f)});
  Database clean;
  MakeCatalogue(clean, 3, 2);
  LoadRecords(clean, good);
  for (float t : {0.5f, 2.0f, 3.0f, 5.0f, 8.0f, 20.0f}) {
    EXPECT_TRUE(SameResult(At(t), clean.Estimate("Mat1", t, "M1"))) << t;
  }
}

TEST_F(Estimate, OtherPairsDoNotEnterTheSeries) {
  const std::vector<CuttingParameter> rows = {Row(2.0f, 4000.0f), Row(8.0f, 1000.0f)};
  LoadRecords(db, {rows[0], Row(4.0f, 100.0f, 1, 2), Row(4.0f, 100.0f, 2, 1), rows[1],
                   Row(5.0f, 100.0f, 2, 2)});
  const auto r = At(4.0f);
  CuttingParameter want = T::InterpolateLinear(rows[0], rows[1], 4.0f);
  want.cut_speed_mm_min = static_cast<float>(Law(rows[0], rows[1], 4.0));
  EXPECT_TRUE(SameBytes(r.parameter, want));
}

// Every thickness kind, for the order tests.
const float kProbe[] = {0.3f, 1.0f, 1.5f, 2.0f, 2.5f, 3.9995f, 4.0f, 5.0f, 7.0f, 10.0f,
                        12.0f, 15.0f, 20.0f, 40.0f};

std::vector<CuttingParameter> MixedTable() {
  return {Row(1.5f, 5200.0f), Row(2.0f, 4000.0f), Row(4.0f, 2200.0f), Row(7.0f, 1300.0f),
          Row(10.0f, 800.0f), Row(15.0f, 450.0f), Row(3.0f, 1200.0f, 1, 2),
          Row(9.0f, 300.0f, 1, 2), Row(1.0f, 2500.0f, 2, 1), Row(6.0f, 700.0f, 2, 1),
          Row(12.0f, 350.0f, 2, 1)};
}

void ExpectSameEverywhere(const Database& a, const Database& b) {
  for (const char* material : {"Mat1", "Mat2"}) {
    for (const char* machine : {"M1", "M2"}) {
      for (float t : kProbe) {
        EXPECT_TRUE(SameResult(a.Estimate(material, t, machine), b.Estimate(material, t, machine)))
            << material << " " << machine << " " << t;
      }
    }
  }
}

std::vector<CuttingParameter> SortedByKey(std::vector<CuttingParameter> rows) {
  std::vector<std::size_t> at(rows.size());
  for (std::size_t i = 0; i < at.size(); ++i) at[i] = i;
  std::sort(at.begin(), at.end(), [&](std::size_t i, std::size_t j) {
    const auto& a = rows[i];
    const auto& b = rows[j];
    return std::tie(a.material_id, a.machine_model_id, a.thickness_mm) <
           std::tie(b.material_id, b.machine_model_id, b.thickness_mm);
  });
  std::vector<CuttingParameter> sorted;
  for (std::size_t i : at) sorted.push_back(rows[i]);
  return sorted;
}

TEST_F(Estimate, AnswersDoNotDependOnTheTableOrder) {
  const std::vector<CuttingParameter> rows = MixedTable();
  Database sorted;
  MakeCatalogue(sorted, 3, 2);
  LoadRecords(sorted, SortedByKey(rows));
  std::mt19937 rng(14);
  for (int round = 0; round < 20; ++round) {
    std::vector<std::size_t> at(rows.size());
    for (std::size_t i = 0; i < at.size(); ++i) at[i] = i;
    std::shuffle(at.begin(), at.end(), rng);
    std::vector<CuttingParameter> shuffled;
    for (std::size_t i : at) shuffled.push_back(rows[i]);
    LoadRecords(db, shuffled);
    ExpectSameEverywhere(db, sorted);
  }
}

TEST_F(Estimate, AppendedRowsCountWithOrWithoutCurrentPositions) {
  const std::vector<CuttingParameter> rows = MixedTable();
  Database whole;
  MakeCatalogue(whole, 3, 2);
  LoadRecords(whole, SortedByKey(rows));

  // Appended as AddParameter does: the position lists follow.
  LoadRecords(db, std::vector<CuttingParameter>(rows.begin(), rows.begin() + 3));
  for (std::size_t i = 3; i < rows.size(); ++i) ASSERT_EQ(db.AddParameter(rows[i]), ErrorCode::Success);
  ExpectSameEverywhere(db, whole);

  // Put in the table behind every index's back: the scan finds them.
  Database stale;
  MakeCatalogue(stale, 3, 2);
  LoadRecords(stale, std::vector<CuttingParameter>(rows.begin() + 5, rows.end()));
  for (std::size_t i = 0; i < 5; ++i) DatabaseAccess::Records(stale).push_back(rows[i]);
  ExpectSameEverywhere(stale, whole);
}

// --- hostile tables ------------------------------------------------------------

float HostileFloat(std::mt19937& rng) {
  static const float kValues[] = {kNaN,    kInf,  -kInf,   0.0f,    -0.0f,  -1.0f,   1e-30f,
                                  1e-6f,   0.5f,  1.0f,    2.0f,    3.0f,   5.0f,    5.0005f,
                                  10.0f,   25.0f, 1000.0f, 1e20f,   1e37f,  FLT_MAX, -FLT_MAX,
                                  FLT_MIN, 4e-45f};
  return kValues[std::uniform_int_distribution<std::size_t>(0, std::size(kValues) - 1)(rng)];
}

TEST_F(Estimate, NeverReturnsANonFiniteFieldOnHostileTables) {
  std::mt19937 rng(1414);
  int records_returned = 0;
  for (int round = 0; round < 400; ++round) {
    std::vector<CuttingParameter> rows(std::uniform_int_distribution<int>(0, 8)(rng));
    for (auto& r : rows) {
      r = Record(1, static_cast<std::uint16_t>(1 + rng() % 2), HostileFloat(rng),
                 HostileFloat(rng));
      for (float CuttingParameter::*f :
           {&CuttingParameter::cut_height_mm, &CuttingParameter::pierce_height_mm,
            &CuttingParameter::transfer_height_mm, &CuttingParameter::arc_voltage_v,
            &CuttingParameter::pierce_time_s, &CuttingParameter::kerf_width_mm}) {
        if (rng() % 3 == 0) r.*f = HostileFloat(rng);
      }
      r.current_amps = static_cast<std::uint16_t>(rng() % 3 == 0 ? rng() : 45);
    }
    LoadRecords(db, rows);
    for (int q = 0; q < 20; ++q) {
      const float t = HostileFloat(rng);
      const auto r = At(t, "Mat1", rng() % 2 ? "M1" : "M2");
      if (r.confidence == 0.0f) {
        EXPECT_TRUE(IsEmpty(r)) << t;
        continue;
      }
      ++records_returned;
      EXPECT_GT(r.confidence, 0.0f);
      EXPECT_LE(r.confidence, 1.0f);
      const CuttingParameter& p = r.parameter;
      for (float v : {p.thickness_mm, p.cut_speed_mm_min, p.cut_height_mm, p.pierce_height_mm,
                      p.transfer_height_mm, p.arc_voltage_v, p.pierce_time_s, p.kerf_width_mm}) {
        EXPECT_TRUE(std::isfinite(v)) << t;
      }
    }
  }
  EXPECT_GT(records_returned, 100);  // the loop did reach the estimator's branches
}

}  // namespace
}  // namespace query_test
