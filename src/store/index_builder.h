// Builds the record indexes and the position index of a record table in one
// pass over its records, fed slice by slice in table order, so a load can
// index each slice while it is still in cache.  Per record it does a few
// compares and stores into arrays sized by id; nothing is allocated per
// record.
//
// FindOptimal's fastest-per-thickness entries describe each material's
// bucket span [first, first + count).  On a table in material order that
// span is a tail of the material's run plus, when its thinnest record is not
// its first, as many records after the run; both are seen in the pass.  Any
// other table is grouped and walked again at Finish.
#ifndef SPARLANE_STORE_INDEX_BUILDER_H_
#define SPARLANE_STORE_INDEX_BUILDER_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sparlane/records.h"
#include "store/fastest_tracker.h"
#include "store/large_pages.h"
#include "store/pair_index.h"
#include "store/record_indexes.h"

namespace Sparlane {

class IndexBuilder {
 public:
  // expected: how many records will come (a reservation, not a limit).
  void Reserve(std::size_t expected) { positions_.thickness.reserve(expected); }

  // The next count records of the table.
  void Add(const CuttingParameter* records, std::size_t count);

  // table: every record added, in order.  Replaces both indexes.
  void Finish(const std::vector<CuttingParameter>& table, RecordIndexes& indexes,
              PairIndex& positions);

 private:
  // A material whose span runs past its own run: its tracker takes the next
  // `remaining` records of the table too.
  struct Spill {
    std::uint16_t material;
    std::uint64_t remaining;
    FastestTracker tracker;
  };

  void StartPair(const CuttingParameter& head, std::uint32_t pair);
  void AddRun(const CuttingParameter* records, std::size_t count);
  void StoreRunState();
  void StartMaterial(std::uint16_t material, std::size_t pos);
  void EndMaterialRun(bool table_ends);
  void FeedSpills(const CuttingParameter* records, std::size_t count, std::uint32_t first);
  void KeepFastest(std::uint16_t material, FastestTracker& tracker);
  void WalkSpan(const std::vector<CuttingParameter>& table, std::uint16_t material);

  std::size_t next_ = 0;  // position of the next record
  PairIndex positions_;
  PrefaultAhead<float> column_room_;

  std::vector<ThicknessBucket> buckets_;  // by material id; count 0 = not seen
  std::vector<std::uint16_t> materials_seen_;
  std::vector<MachineSpan> machines_;  // by id
  std::vector<std::uint16_t> machines_seen_;

  // Where each pair's and material's run starts, while the table is in order.
  struct Runs {
    std::vector<std::uint32_t> keys;
    std::vector<std::uint32_t> starts;
    void Add(std::uint32_t key, std::size_t pos);
    void MakeGroups(PositionGroups& kind, std::size_t n,
                    const std::vector<ThicknessBucket>* buckets) const;
  };
  Runs pair_runs_;
  Runs material_runs_;
  bool pair_ordered_ = true;
  bool material_ordered_ = true;
  std::uint32_t pair_ = 0;  // of the record before next_
  std::uint16_t material_ = 0;
  std::uint16_t machine_ = 0;
  ThicknessBucket bucket_{};  // material_'s bucket while its pair run lasts
  MachineSpan span_{};        // machine_'s span likewise
  std::size_t material_start_ = 0;  // where the current material's run began

  FastestTracker run_;  // the current material's span so far
  std::vector<Spill> spills_;
  std::vector<std::uint16_t> walk_later_;  // spans the pass could not follow
  IdTable<RecordIndexes::EntryRange> fastest_ranges_;
  std::vector<FastestAtThickness> fastest_;
};

// The whole table at once: what every rebuild does.
void BuildIndexes(const std::vector<CuttingParameter>& table, RecordIndexes& indexes,
                  PairIndex& positions);

}  // namespace Sparlane

#endif  // SPARLANE_STORE_INDEX_BUILDER_H_
