// Material numbers and the written form of settings in controller files.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "controller_file.h"
#include "material_numbering.h"
#include "sheet_gauges.h"
#include "text_fields.h"

using namespace slb;

TEST(MaterialNumbering, NumberDependsOnlyOnMaterialAndThickness) {
  const auto number = PreferredMaterialNumber("Mild steel", 6.35f);
  EXPECT_EQ(PreferredMaterialNumber("Mild steel", 6.35f), number);
  EXPECT_NE(PreferredMaterialNumber("Mild steel", 6.3500004f), number);
  EXPECT_NE(PreferredMaterialNumber("Stainless steel", 6.35f), number);
  // Listed alone or among others, first or last: the same number.
  const auto alone = AssignMaterialNumbers({{"Mild steel", 6.35f}});
  const auto among = AssignMaterialNumbers({{"Aluminium", 2.0f}, {"Mild steel", 6.35f}});
  EXPECT_EQ(alone[0], number);
  EXPECT_EQ(among[1], number);
}

TEST(MaterialNumbering, NumbersStayBetweenOneAndTheTemporaryRange) {
  for (int i = 1; i <= 20000; ++i) {
    const auto number = PreferredMaterialNumber("Steel", static_cast<float>(i) / 100.0f);
    ASSERT_GE(number, 1u);
    ASSERT_LE(number, kHighestMaterialNumber);
  }
  EXPECT_EQ(kHighestMaterialNumber, 999999u);
}

TEST(MaterialNumbering, ASecondClaimOnANumberTakesTheNextFreeOne) {
  const auto first = PreferredMaterialNumber("Mild steel", 3.0f);
  const auto next = first == kHighestMaterialNumber ? 1u : first + 1;
  const auto numbers =
      AssignMaterialNumbers({{"Mild steel", 3.0f}, {"Mild steel", 3.0f}, {"Mild steel", 3.0f}});
  ASSERT_EQ(numbers.size(), 3u);
  EXPECT_EQ(numbers[0], first);
  EXPECT_EQ(numbers[1], next);
  EXPECT_EQ(numbers[2], next == kHighestMaterialNumber ? 1u : next + 1);
}

TEST(SettingText, ShortestDecimalThatReadsBackToTheSameFloat) {
  EXPECT_EQ(SettingText(1.3462f, 1.0), "1.3462");
  EXPECT_EQ(SettingText(2000.0f, 1.0), "2000");
  EXPECT_EQ(SettingText(0.0f, 1.0), "0");
  EXPECT_EQ(SettingText(-0.0f, 25.4), "0");
  EXPECT_EQ(SettingText(6324.6f, 25.4), "249");
  EXPECT_EQ(SettingText(1.3462f, 25.4), "0.053");
  EXPECT_EQ(SettingText(2.4286129e-17f, 1.0), "0.000000000000000024286129");
}

TEST(SettingText, EveryWrittenValueReadsBackExactly) {
  for (const double scale : {1.0, 25.4}) {
    for (float value = 0.001f; value < 20000.0f; value *= 1.37f) {
      const std::string text = SettingText(value, scale);
      EXPECT_EQ(text.find('e'), std::string::npos) << text;
      const auto back = ParseNumber(text);
      ASSERT_TRUE(back.has_value()) << text;
      EXPECT_EQ(ImportedFloat(*back * scale), value) << text << " " << scale;
    }
  }
}

TEST(SheetGauges, FamilyFollowsTheMaterialName) {
  EXPECT_EQ(GaugeFamilyOf("Mild steel"), GaugeFamily::Steel);
  EXPECT_EQ(GaugeFamilyOf("STAINLESS STEEL 304"), GaugeFamily::Stainless);
  EXPECT_EQ(GaugeFamilyOf("Galvanised steel"), GaugeFamily::Galvanised);
  EXPECT_EQ(GaugeFamilyOf("Galvanized Steel"), GaugeFamily::Galvanised);
  EXPECT_EQ(GaugeFamilyOf("Aluminum 5052"), GaugeFamily::Aluminium);
  EXPECT_EQ(GaugeFamilyOf("Brass"), std::nullopt);
}

TEST(SheetGauges, TablesDifferPerFamily) {
  EXPECT_EQ(GaugeInches(16, GaugeFamily::Steel), 0.0598);
  EXPECT_EQ(GaugeInches(16, GaugeFamily::Galvanised), 0.0635);
  EXPECT_EQ(GaugeInches(16, GaugeFamily::Stainless), 0.0625);
  EXPECT_EQ(GaugeInches(16, GaugeFamily::Aluminium), 0.0508);
  EXPECT_EQ(GaugeInches(27, GaugeFamily::Stainless), std::nullopt);
  EXPECT_EQ(GaugeInches(2, GaugeFamily::Steel), std::nullopt);
  for (const auto family : {GaugeFamily::Steel, GaugeFamily::Galvanised, GaugeFamily::Stainless,
                            GaugeFamily::Aluminium}) {
    const auto& table = GaugeTable(family);
    for (std::size_t i = 1; i < table.size(); ++i) {
      EXPECT_GT(table[i].number, table[i - 1].number) << GaugeFamilyName(family);
      EXPECT_LT(table[i].inches, table[i - 1].inches) << GaugeFamilyName(family);
    }
  }
}
