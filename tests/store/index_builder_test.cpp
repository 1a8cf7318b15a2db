// The index builder fed in slices, as a load feeds it while it copies or
// decodes, against the same builder fed the whole table at once: slices
// that cut pair runs, material runs and the spans FindOptimal follows must
// not change a single index entry.  Tables in every order, with NaN, -0.0,
// infinite thicknesses, speeds of 0 and below, and stray ids.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <vector>

#include "sparlane/sparlane.h"
#include "store/index_builder.h"

namespace {

using Sparlane::CuttingParameter;
using Sparlane::FastestAtThickness;
using Sparlane::GroupRef;
using Sparlane::IndexBuilder;
using Sparlane::PairIndex;
using Sparlane::PositionGroups;
using Sparlane::RecordIndexes;
using Sparlane::ThicknessBucket;

bool SameFloat(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Everything an index says, in one comparable form.
struct Picture {
  std::map<std::uint16_t, std::vector<std::vector<std::uint64_t>>> buckets;  // bits and numbers
  std::map<std::uint16_t, std::pair<std::uint64_t, std::uint64_t>> machines;
  std::map<std::uint16_t, std::vector<std::vector<std::uint32_t>>> fastest;
  std::size_t fastest_table_size = 0;
  bool spans_fit = false;
  std::vector<std::uint32_t> thickness_bits;
  std::map<std::uint32_t, std::vector<std::uint32_t>> material_positions;
  std::map<std::uint32_t, std::vector<std::uint32_t>> pair_positions;
  bool usable = false;
  bool pair_ordered = false;
  std::size_t covered = 0;

  bool operator==(const Picture& o) const {
    return buckets == o.buckets && machines == o.machines && fastest == o.fastest &&
           fastest_table_size == o.fastest_table_size && spans_fit == o.spans_fit &&
           thickness_bits == o.thickness_bits && material_positions == o.material_positions &&
           pair_positions == o.pair_positions && usable == o.usable &&
           pair_ordered == o.pair_ordered && covered == o.covered;
  }
};

std::uint32_t Bits(float f) {
  std::uint32_t u;
  std::memcpy(&u, &f, sizeof u);
  return u;
}

std::vector<std::uint32_t> Positions(const PositionGroups& kind, std::uint32_t key) {
  std::vector<std::uint32_t> out;
  const GroupRef* ref = kind.ids.Find(key);
  if (ref != nullptr) Sparlane::ForEachPosition(kind, *ref, [&](std::uint32_t p) { out.push_back(p); });
  return out;
}

Picture Draw(const std::vector<CuttingParameter>& table, const RecordIndexes& r,
             const PairIndex& p) {
  Picture pic;
  r.material_ranges.ForEach([&](std::uint16_t id, const std::vector<ThicknessBucket>& list) {
    for (const ThicknessBucket& b : list) {
      pic.buckets[id].push_back({Bits(b.min_thickness), Bits(b.max_thickness), b.first, b.count});
    }
  });
  r.machine_records.ForEach([&](std::uint16_t id, const Sparlane::MachineSpan& s) {
    pic.machines[id] = {s.first, s.count};
  });
  r.fastest_ranges.ForEach([&](std::uint16_t id, const RecordIndexes::EntryRange& range) {
    std::vector<std::vector<std::uint32_t>>& out = pic.fastest[id];
    for (std::uint32_t i = 0; i < range.count; ++i) {
      const FastestAtThickness& e = r.fastest[range.begin + i];
      out.push_back({Bits(e.thickness_mm), Bits(e.cut_speed_mm_min), e.position});
    }
  });
  pic.fastest_table_size = r.fastest_table_size;
  pic.spans_fit = r.fastest_spans_fit;
  for (float t : p.thickness) pic.thickness_bits.push_back(Bits(t));
  for (const CuttingParameter& rec : table) {
    pic.material_positions[rec.material_id] = Positions(p.materials, rec.material_id);
    const std::uint32_t pair = Sparlane::PairKey(rec.material_id, rec.machine_model_id);
    pic.pair_positions[pair] = Positions(p.pairs, pair);
  }
  pic.usable = p.usable;
  pic.pair_ordered = p.pair_ordered;
  pic.covered = p.covered;
  return pic;
}

Picture Whole(const std::vector<CuttingParameter>& table) {
  RecordIndexes r;
  PairIndex p;
  Sparlane::BuildIndexes(table, r, p);
  return Draw(table, r, p);
}

Picture Sliced(const std::vector<CuttingParameter>& table, std::mt19937& rng) {
  IndexBuilder builder;
  builder.Reserve(table.size() / 2);  // a short reservation must not matter either
  std::size_t done = 0;
  while (done < table.size()) {
    const std::size_t n = std::min<std::size_t>(table.size() - done,
                                                std::uniform_int_distribution<std::size_t>(1, 9)(rng));
    builder.Add(table.data() + done, n);
    done += n;
  }
  RecordIndexes r;
  PairIndex p;
  builder.Finish(table, r, p);
  return Draw(table, r, p);
}

float OddThickness(std::mt19937& rng) {
  static const float kValues[] = {0.5f, 1.0f, 2.0f, 2.0f, 3.0f, 6.0f, 6.0f, 12.0f, 25.0f,
                                  0.0f, -0.0f, std::numeric_limits<float>::infinity(),
                                  std::nanf("")};
  return kValues[std::uniform_int_distribution<int>(0, 12)(rng)];
}

// Material runs whose thinnest record may sit anywhere, so the spans reach
// into the following runs; in material order, pair order, or none.
std::vector<CuttingParameter> Table(std::mt19937& rng, int order) {
  std::vector<CuttingParameter> table;
  const int materials = std::uniform_int_distribution<int>(0, 9)(rng);
  for (int m = 0; m < materials; ++m) {
    const int records = std::uniform_int_distribution<int>(1, 30)(rng);
    for (int i = 0; i < records; ++i) {
      CuttingParameter r{};
      r.material_id = static_cast<std::uint16_t>(order == 2 ? std::uniform_int_distribution<int>(0, 5)(rng) : m + 1);
      r.machine_model_id = static_cast<std::uint16_t>(std::uniform_int_distribution<int>(0, 3)(rng));
      r.thickness_mm = OddThickness(rng);
      const int speed = std::uniform_int_distribution<int>(-1, 6)(rng);
      r.cut_speed_mm_min = speed == 6 ? std::nanf("") : static_cast<float>(speed * 500);
      r.current_amps = static_cast<std::uint16_t>(i);
      table.push_back(r);
    }
  }
  if (order != 1) return table;
  // Sorted through positions: the sort's scratch buffer would not keep the
  // records' 64-byte alignment.
  std::vector<std::size_t> at(table.size());
  for (std::size_t i = 0; i < at.size(); ++i) at[i] = i;
  std::stable_sort(at.begin(), at.end(), [&](std::size_t i, std::size_t j) {
    return Sparlane::PairKey(table[i].material_id, table[i].machine_model_id) <
           Sparlane::PairKey(table[j].material_id, table[j].machine_model_id);
  });
  std::vector<CuttingParameter> sorted;
  sorted.reserve(table.size());
  for (std::size_t i : at) sorted.push_back(table[i]);
  return sorted;
}

TEST(IndexBuilder, SlicesGiveTheSameIndexesAsTheWholeTable) {
  std::mt19937 rng(20240611);
  for (int round = 0; round < 3000; ++round) {
    const std::vector<CuttingParameter> table = Table(rng, round % 3);
    const Picture whole = Whole(table);
    ASSERT_TRUE(Sliced(table, rng) == whole) << "round " << round;
  }
}

// Runs of 512, 256, ... 1 records whose thinnest record comes last: each
// material's span reaches to the table's end, past every later run, so nine
// spans are open at once, more than the pass follows; the rest are walked
// at the end.  Without the last records the spans are cut by the end.
TEST(IndexBuilder, ManySpansOpenAtOnceGiveTheSameIndexes) {
  std::vector<CuttingParameter> table;
  for (int m = 0; m < 10; ++m) {
    const int records = 1024 >> (m + 1);
    for (int i = 0; i < records; ++i) {
      CuttingParameter r{};
      r.material_id = static_cast<std::uint16_t>(m + 1);
      r.machine_model_id = static_cast<std::uint16_t>(1 + i % 3);
      r.thickness_mm = static_cast<float>(records - i);  // the thinnest is last
      r.cut_speed_mm_min = static_cast<float>(1000 + (i * 37) % 500);
      table.push_back(r);
    }
  }
  std::mt19937 rng(3);
  const Picture whole = Whole(table);
  EXPECT_TRUE(whole.spans_fit);
  EXPECT_EQ(whole.fastest.size(), 10u);
  for (int round = 0; round < 20; ++round) EXPECT_TRUE(Sliced(table, rng) == whole);

  table.resize(table.size() - 3);
  const Picture cut = Whole(table);
  EXPECT_FALSE(cut.spans_fit);
  EXPECT_EQ(cut.fastest.size(), 8u);  // the last two runs are gone
  for (int round = 0; round < 20; ++round) EXPECT_TRUE(Sliced(table, rng) == cut);
}

// The fastest entries against their definition: per distinct thickness of
// the span (NaN never, -0.0 with 0.0), the fastest record above 0, the
// earliest of equals.
TEST(IndexBuilder, FastestEntriesFollowTheirDefinition) {
  std::mt19937 rng(99);
  for (int round = 0; round < 2000; ++round) {
    const std::vector<CuttingParameter> table = Table(rng, round % 3);
    RecordIndexes r;
    PairIndex p;
    Sparlane::BuildIndexes(table, r, p);
    r.material_ranges.ForEach([&](std::uint16_t id, const std::vector<ThicknessBucket>& list) {
      ASSERT_EQ(list.size(), 1u);
      const ThicknessBucket& b = list.front();
      std::vector<FastestAtThickness> want;
      const std::uint64_t end = std::min<std::uint64_t>(b.first + b.count, table.size());
      for (std::uint64_t pos = b.first; pos < end; ++pos) {
        const CuttingParameter& rec = table[pos];
        if (!(rec.cut_speed_mm_min > 0.0f) || std::isnan(rec.thickness_mm)) continue;
        auto it = std::find_if(want.begin(), want.end(), [&](const FastestAtThickness& e) {
          return e.thickness_mm == rec.thickness_mm;
        });
        if (it == want.end()) {
          want.push_back({rec.thickness_mm, rec.cut_speed_mm_min, static_cast<std::uint32_t>(pos)});
        } else if (rec.cut_speed_mm_min > it->cut_speed_mm_min) {
          it->cut_speed_mm_min = rec.cut_speed_mm_min;
          it->position = static_cast<std::uint32_t>(pos);
        }
      }
      std::sort(want.begin(), want.end(), [](const FastestAtThickness& a, const FastestAtThickness& c) {
        return a.thickness_mm < c.thickness_mm;
      });
      const RecordIndexes::EntryRange* range = r.Fastest(id, table.size());
      ASSERT_NE(range, nullptr);
      ASSERT_EQ(range->count, want.size());
      for (std::size_t i = 0; i < want.size(); ++i) {
        const FastestAtThickness& got = r.fastest[range->begin + i];
        EXPECT_EQ(got.thickness_mm, want[i].thickness_mm);  // -0.0 and 0.0 are one entry
        EXPECT_TRUE(SameFloat(got.cut_speed_mm_min, want[i].cut_speed_mm_min));
        EXPECT_EQ(got.position, want[i].position);
      }
    });
  }
}

TEST(IndexBuilder, EmptyTableGivesEmptyIndexes) {
  const Picture whole = Whole({});
  EXPECT_TRUE(whole.buckets.empty());
  EXPECT_TRUE(whole.machines.empty());
  EXPECT_TRUE(whole.fastest.empty());
  EXPECT_TRUE(whole.usable);
  EXPECT_EQ(whole.covered, 0u);
}

}  // namespace
