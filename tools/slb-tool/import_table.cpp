#include "import_table.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <numeric>

#include "number_format.h"
#include "strict_check.h"

namespace slb {
namespace {

constexpr std::size_t kMaxNameBytes = 255;
constexpr std::size_t kMaxNames = std::numeric_limits<std::uint16_t>::max();

std::string NameProblem(const char* column, const std::string& name) {
  if (name.empty()) return std::string(column) + " must not be empty";
  if (name.size() > kMaxNameBytes) {
    return std::string(column) + " must be at most 255 bytes (is " +
           std::to_string(name.size()) + ")";
  }
  for (unsigned char c : name) {
    if (c < 0x20 || c == 0x7F) {
      char code[8];
      std::snprintf(code, sizeof code, "0x%02x", c);
      return std::string(column) + " holds a control character (byte " + code +
             "); names must be printable text";
    }
  }
  return std::string();
}

bool SameSettings(const Sparlane::CuttingParameter& a, const Sparlane::CuttingParameter& b) {
  return a.cut_speed_mm_min == b.cut_speed_mm_min && a.cut_height_mm == b.cut_height_mm &&
         a.pierce_height_mm == b.pierce_height_mm &&
         a.transfer_height_mm == b.transfer_height_mm && a.arc_voltage_v == b.arc_voltage_v &&
         a.pierce_time_s == b.pierce_time_s && a.kerf_width_mm == b.kerf_width_mm &&
         a.current_amps == b.current_amps && a.flags == b.flags;
}

constexpr std::uint32_t kNoRow = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t kFibonacci = 0x9E3779B97F4A7C15u;  // 2^64 / golden ratio

// What a lookup tells rows apart by.  The thicknesses passed the strict
// check (finite, at least 0.1), so equal ones have equal bits.
std::uint64_t LookupKey(const Sparlane::CuttingParameter& r) {
  std::uint32_t thickness_bits = 0;
  std::memcpy(&thickness_bits, &r.thickness_mm, sizeof thickness_bits);
  return std::uint64_t{r.material_id} << 48 | std::uint64_t{r.machine_model_id} << 32 |
         thickness_bits;
}

// Ids in byte order of the names: new_ids[old id - 1] is the new id.
std::vector<std::uint16_t> ByteOrderIds(std::vector<std::string>& names) {
  std::vector<std::uint16_t> order(names.size());
  std::iota(order.begin(), order.end(), std::uint16_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::uint16_t a, std::uint16_t b) { return names[a] < names[b]; });
  std::vector<std::uint16_t> new_ids(names.size());
  std::vector<std::string> sorted(names.size());
  for (std::size_t rank = 0; rank < order.size(); ++rank) {
    new_ids[order[rank]] = static_cast<std::uint16_t>(rank + 1);
    sorted[rank] = std::move(names[order[rank]]);
  }
  names = std::move(sorted);
  return new_ids;
}

}  // namespace

std::uint16_t ImportTable::Names::Find(const std::string& name) const {
  const auto it = ids.find(name);
  return it == ids.end() ? 0 : it->second;
}

std::uint16_t ImportTable::Names::Intern(const std::string& name) {
  const auto [it, added] = ids.emplace(name, static_cast<std::uint16_t>(names.size() + 1));
  if (added) names.push_back(name);
  return it->second;
}

ImportTable::ImportTable(std::string source) : source_(std::move(source)) {}

std::string ImportTable::Refuse(std::size_t line, const std::string& reason) const {
  return source_ + ":" + std::to_string(line) + ": " + reason;
}

std::string ImportTable::NamesProblem(const std::string& vendor, const std::string& machine,
                                      const std::string& material) const {
  std::string problem = NameProblem("vendor", vendor);
  if (problem.empty()) problem = NameProblem("machine_model", machine);
  if (problem.empty()) problem = NameProblem("material", material);
  if (!problem.empty()) return problem;
  const std::pair<const Names*, const std::string*> tables[] = {
      {&vendors_, &vendor}, {&machines_, &machine}, {&materials_, &material}};
  const char* const columns[] = {"vendor", "machine_model", "material"};
  for (std::size_t i = 0; i < 3; ++i) {
    const Names& table = *tables[i].first;
    if (table.names.size() >= kMaxNames && table.Find(*tables[i].second) == 0) {
      return std::string("a 65536th distinct ") + columns[i] +
             " name; a parameter file holds at most 65535";
    }
  }
  return std::string();
}

std::string ImportTable::VendorProblem(const std::string& vendor,
                                       const std::string& machine) const {
  const std::uint16_t machine_id = machines_.Find(machine);
  if (machine_id == 0) return std::string();
  const std::string& first_vendor = vendors_.names[machine_vendor_[machine_id - 1] - 1u];
  if (first_vendor == vendor) return std::string();
  return "machine model \"" + machine + "\" is listed under vendor \"" + vendor +
         "\" here and under \"" + first_vendor + "\" at line " +
         std::to_string(machine_first_line_[machine_id - 1]) +
         "; model names must be unique across vendors";
}

std::string ImportTable::Add(std::size_t line, const std::string& vendor,
                             const std::string& machine, const std::string& material,
                             const Sparlane::CuttingParameter& values) {
  std::string problem = NamesProblem(vendor, machine, material);
  if (problem.empty()) problem = StrictCheckFindingOfValues(values);
  if (problem.empty()) problem = VendorProblem(vendor, machine);
  if (!problem.empty()) return Refuse(line, problem);

  const auto line32 = static_cast<std::uint32_t>(
      std::min<std::size_t>(line, std::numeric_limits<std::uint32_t>::max()));
  Row row{values, line32};
  row.record.vendor_id = vendors_.Intern(vendor);
  const std::size_t machines_before = machines_.names.size();
  row.record.machine_model_id = machines_.Intern(machine);
  if (machines_.names.size() != machines_before) {
    machine_vendor_.push_back(row.record.vendor_id);
    machine_first_line_.push_back(line32);
  }
  row.record.material_id = materials_.Intern(material);
  if (size_ % kChunkRows == 0) {
    chunks_.emplace_back();
    chunks_.back().reserve(kChunkRows);
  }
  chunks_.back().push_back(row);
  ++size_;
  return std::string();
}

const std::string& ImportTable::VendorOfMachine(std::size_t machine_index) const {
  return vendors_.names[machine_vendor_[machine_index] - 1u];
}

void ImportTable::GiveFileIds() {
  const auto machine_ids = ByteOrderIds(machines_.names);
  const auto material_ids = ByteOrderIds(materials_.names);
  // Vendors in the order the sorted machine models take them.
  std::vector<std::uint16_t> machine_vendor(machine_vendor_.size());
  for (std::size_t old = 0; old < machine_ids.size(); ++old) {
    machine_vendor[machine_ids[old] - 1u] = machine_vendor_[old];
  }
  std::vector<std::uint16_t> vendor_ids(vendors_.names.size(), 0);
  std::vector<std::string> vendors;
  for (std::uint16_t& old_vendor : machine_vendor) {
    std::uint16_t& id = vendor_ids[old_vendor - 1u];
    if (id == 0) {
      vendors.push_back(std::move(vendors_.names[old_vendor - 1u]));
      id = static_cast<std::uint16_t>(vendors.size());
    }
    old_vendor = id;
  }
  vendors_.names = std::move(vendors);
  machine_vendor_ = std::move(machine_vendor);
  for (Names* table : {&vendors_, &machines_, &materials_}) {
    table->ids = decltype(table->ids)();  // names no longer grow
  }
  for (std::size_t i = 0; i < size_; ++i) {
    auto& r = At(i).record;
    r.vendor_id = vendor_ids[r.vendor_id - 1u];
    r.machine_model_id = machine_ids[r.machine_model_id - 1u];
    r.material_id = material_ids[r.material_id - 1u];
  }
}

void ImportTable::ReportConflictingDuplicates(ProblemList& warnings) {
  // Each key's first row by position, in an open-addressing table of twice
  // the rows: a few bytes a row, where a map of keys would cost tens.
  int bits = 4;
  while ((std::size_t{1} << bits) < 2 * size_) ++bits;
  const std::size_t mask = (std::size_t{1} << bits) - 1;
  std::vector<std::uint32_t> first_of_key(mask + 1, kNoRow);
  for (std::size_t i = 0; i < size_; ++i) {
    const Row& row = At(i);
    const std::uint64_t key = LookupKey(row.record);
    std::size_t slot = static_cast<std::size_t>((key * kFibonacci) >> (64 - bits));
    while (first_of_key[slot] != kNoRow && LookupKey(At(first_of_key[slot]).record) != key) {
      slot = (slot + 1) & mask;
    }
    if (first_of_key[slot] == kNoRow) {
      first_of_key[slot] = static_cast<std::uint32_t>(i);
      continue;
    }
    const Row& first = At(first_of_key[slot]);
    if (SameSettings(row.record, first.record)) continue;
    warnings.Add(Refuse(row.line, "same vendor, machine model, material and thickness (" +
                                      ExactFloat(row.record.thickness_mm) + " mm) as line " +
                                      std::to_string(first.line) +
                                      " but different settings; a lookup may answer from "
                                      "either row"));
  }
}

void ImportTable::Arrange(ProblemList& warnings) {
  GiveFileIds();
  ReportConflictingDuplicates(warnings);
}

bool ImportTable::Drain(const std::function<bool(const Sparlane::CuttingParameter&)>& take) {
  for (auto& chunk : chunks_) {
    for (const Row& row : chunk) {
      if (!take(row.record)) return false;
    }
    std::vector<Row>().swap(chunk);
  }
  chunks_.clear();
  size_ = 0;
  return true;
}

}  // namespace slb
