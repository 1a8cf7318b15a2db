// ImportTable: ids in byte order of names, rows handed out in input order
// (the library sorts them as the file is built), and its checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "import_table.h"
#include "test_database.h"

namespace {

using Sparlane::CuttingParameter;

CuttingParameter Values(float thickness, float speed) { return tooltest::Settings(thickness, speed); }

struct Added {
  std::string vendor;
  std::string machine;
  std::string material;
  CuttingParameter values;
  std::size_t line;
};

std::vector<CuttingParameter> Drained(slb::ImportTable& table) {
  std::vector<CuttingParameter> out;
  table.Drain([&](const CuttingParameter& p) {
    out.push_back(p);
    return true;
  });
  return out;
}

}  // namespace

TEST(ImportTable, RowsComeOutInInputOrderWithByteOrderIds) {
  std::mt19937 random(7);
  const std::vector<std::string> machines = {"Zeta", "alpha", "Alpha", "M\xC3\xA4", "B"};
  const std::vector<std::string> materials = {"Steel", "Brass", "steel", "Al"};
  std::vector<Added> added;
  slb::ImportTable table("in.csv");
  // More rows than one chunk, so that the rows cross chunks.
  for (std::size_t line = 2; line < 40000; ++line) {
    const std::string& machine = machines[random() % machines.size()];
    Added a{"Vendor of " + machine, machine, materials[random() % materials.size()],
            Values(static_cast<float>(1 + random() % 20), 1000), line};
    a.values.flags = static_cast<std::uint32_t>(line);  // tells the rows apart
    ASSERT_EQ(table.Add(a.line, a.vendor, a.machine, a.material, a.values), "");
    added.push_back(a);
  }
  slb::ProblemList warnings;
  table.Arrange(warnings);

  std::vector<std::string> sorted_machines = machines;
  std::sort(sorted_machines.begin(), sorted_machines.end());
  std::vector<std::string> sorted_materials = materials;
  std::sort(sorted_materials.begin(), sorted_materials.end());
  EXPECT_EQ(table.Machines(), sorted_machines);
  EXPECT_EQ(table.Materials(), sorted_materials);
  auto id_of = [](const std::vector<std::string>& names, const std::string& name) {
    return static_cast<std::uint16_t>(std::find(names.begin(), names.end(), name) - names.begin() + 1);
  };
  const auto rows = Drained(table);
  ASSERT_EQ(rows.size(), added.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ASSERT_EQ(rows[i].flags, added[i].values.flags) << i;
    ASSERT_EQ(rows[i].thickness_mm, added[i].values.thickness_mm) << i;
    ASSERT_EQ(rows[i].material_id, id_of(sorted_materials, added[i].material));
    ASSERT_EQ(rows[i].machine_model_id, id_of(sorted_machines, added[i].machine));
    ASSERT_EQ(table.VendorOfMachine(rows[i].machine_model_id - 1u), "Vendor of " + added[i].machine);
  }
  EXPECT_EQ(table.size(), 0u);
}

TEST(ImportTable, VendorsTakeIdsInTheOrderOfTheirFirstMachineByName) {
  slb::ImportTable table("in.csv");
  ASSERT_EQ(table.Add(2, "Second", "Zeta", "Steel", Values(2, 100)), "");
  ASSERT_EQ(table.Add(3, "First", "Alpha", "Steel", Values(2, 100)), "");
  ASSERT_EQ(table.Add(4, "Second", "Beta", "Steel", Values(2, 100)), "");
  slb::ProblemList warnings;
  table.Arrange(warnings);
  EXPECT_EQ(table.Machines(), (std::vector<std::string>{"Alpha", "Beta", "Zeta"}));
  EXPECT_EQ(table.VendorOfMachine(0), "First");
  EXPECT_EQ(table.VendorOfMachine(1), "Second");
  const auto rows = Drained(table);
  EXPECT_EQ(rows[0].vendor_id, 2);  // Zeta's vendor, Second
  EXPECT_EQ(rows[1].vendor_id, 1);  // Alpha's, First
  EXPECT_EQ(rows[2].vendor_id, 2);
}

TEST(ImportTable, RefusedRowsAreNotKeptAndNameTheirLine) {
  slb::ImportTable table("in.csv");
  EXPECT_EQ(table.Add(2, "V", "M", "Steel", Values(0, 100)),
            "in.csv:2: thickness_mm must be 0.1 to 300 mm (is 0)");
  EXPECT_EQ(table.Add(3, "V", "", "Steel", Values(2, 100)),
            "in.csv:3: machine_model must not be empty");
  EXPECT_EQ(table.Add(4, "V", "M", "Steel", Values(2, 100)), "");
  EXPECT_EQ(table.Add(5, "W", "M", "Steel", Values(3, 100)),
            "in.csv:5: machine model \"M\" is listed under vendor \"W\" here and under \"V\" at "
            "line 4; model names must be unique across vendors");
  EXPECT_EQ(table.size(), 1u);
  EXPECT_EQ(table.Refuse(9, "why"), "in.csv:9: why");
}

TEST(ImportTable, NameTablesStopAt65535DistinctNames) {
  slb::ImportTable table("in.csv");
  for (std::size_t i = 0; i < 65535; ++i) {
    ASSERT_EQ(table.Add(i + 2, "V", "M", "Mat" + std::to_string(i), Values(2, 100)), "");
  }
  EXPECT_EQ(table.Add(65537, "V", "M", "Mat0", Values(3, 100)), "");
  EXPECT_EQ(table.Add(65538, "V", "M", "One too many", Values(2, 100)),
            "in.csv:65538: a 65536th distinct material name; a parameter file holds at most "
            "65535");
}

TEST(ImportTable, ConflictingRepeatsAreWarnedAboutOnceEach) {
  slb::ImportTable table("in.csv");
  ASSERT_EQ(table.Add(2, "V", "M", "Steel", Values(2, 100)), "");
  ASSERT_EQ(table.Add(3, "V", "M", "Steel", Values(2, 100)), "");  // the same: no warning
  ASSERT_EQ(table.Add(4, "V", "M", "Steel", Values(2, 200)), "");
  ASSERT_EQ(table.Add(5, "V", "M", "Steel", Values(2, 300)), "");
  slb::ProblemList warnings;
  table.Arrange(warnings);
  EXPECT_EQ(warnings.count(), 2u);
}

TEST(ImportTable, EachConflictingRowIsComparedWithTheFirstRowOfItsKey) {
  // Many keys, so that the key table holds collisions; every key repeats
  // once with the same settings (no warning) and once with others.
  std::mt19937 random(3);
  slb::ImportTable table("in.csv");
  std::vector<std::size_t> expected_lines;
  std::size_t line = 2;
  for (int material = 0; material < 40; ++material) {
    for (int step = 1; step <= 200; ++step) {
      const std::string name = "Mat" + std::to_string(material);
      const float thickness = 0.5f * static_cast<float>(step);
      ASSERT_EQ(table.Add(line++, "V", "M", name, Values(thickness, 1000)), "");
      ASSERT_EQ(table.Add(line++, "V", "M", name, Values(thickness, 1000)), "");
      if (random() % 2) {
        expected_lines.push_back(line);
        ASSERT_EQ(table.Add(line++, "V", "M", name, Values(thickness, 900)), "");
      }
    }
  }
  slb::ProblemList warnings;
  table.Arrange(warnings);
  EXPECT_EQ(warnings.count(), expected_lines.size());
}

TEST(ImportTable, ConflictWarningNamesBothLinesAndTheExactThickness) {
  slb::ImportTable table("in.csv");
  ASSERT_EQ(table.Add(2, "V", "M", "Steel", Values(2.54f, 100)), "");
  ASSERT_EQ(table.Add(3, "V", "M", "Brass", Values(2.54f, 300)), "");  // another key
  ASSERT_EQ(table.Add(4, "V", "M", "Steel", Values(2.54f, 200)), "");
  slb::ProblemList warnings;
  table.Arrange(warnings);
  ASSERT_EQ(warnings.count(), 1u);
  testing::internal::CaptureStderr();
  warnings.ReportWarnings("warnings");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "slb-tool: warning: in.csv:4: same vendor, machine model, material and thickness "
            "(2.54 mm) as line 2 but different settings; a lookup may answer from either row\n");
}
