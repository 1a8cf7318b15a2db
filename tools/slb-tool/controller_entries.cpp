#include "controller_entries.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "catalogue.h"
#include "extrapolation_limit.h"
#include "material_numbering.h"
#include "record_selection.h"
#include "record_view.h"
#include "sheet_gauges.h"
#include "strict_check.h"
#include "text_fields.h"

namespace slb {
namespace {

using Sparlane::CuttingParameter;

// A line break in a name would end the NAME line and start keys of its own.
std::string NameProblem(const std::string& kind, const std::string& name) {
  if (name.empty()) return "a " + kind + " without a name cannot be written";
  for (unsigned char c : name) {
    if (c < 0x20 || c == 0x7F) {
      return "the " + kind + " name \"" + Printable(name) +
             "\" holds a control character and cannot be written";
    }
  }
  return std::string();
}

struct Wanted {
  float thickness_mm;
  std::optional<int> gauge;
};

std::vector<Wanted> WantedThicknesses(const ControllerRequest& request,
                                      const std::string& material,
                                      std::vector<std::string>& warnings) {
  std::vector<Wanted> wanted;
  if (!request.gauges) {
    for (float t : request.thicknesses) wanted.push_back({t, std::nullopt});
    return wanted;
  }
  const auto family = GaugeFamilyOf(material);
  if (!family) {
    warnings.push_back("no gauge table for " + material +
                       " (only steel, galvanised steel, stainless steel and aluminium have "
                       "one); only its listed rows are written");
    return wanted;
  }
  for (const auto& g : GaugeTable(*family)) {
    wanted.push_back({ImportedFloat(g.inches * kMmPerInch), g.number});
  }
  return wanted;
}

bool Covered(const std::vector<ControllerEntry>& entries, float thickness_mm) {
  return std::any_of(entries.begin(), entries.end(), [&](const ControllerEntry& e) {
    return e.derived ? e.settings.thickness_mm == thickness_mm
                     : std::fabs(static_cast<double>(e.settings.thickness_mm) - thickness_mm) <=
                           0.001;
  });
}

class Collector {
 public:
  Collector(const Sparlane::Database& db, const ControllerRequest& request,
            ControllerFile& file, ProblemList& problems, std::vector<std::string>& warnings)
      : db_(db),
        catalogue_(db),
        request_(request),
        file_(file),
        problems_(problems),
        warnings_(warnings) {}

  bool Run() {
    if (!SelectRecords()) return false;
    for (const auto id : MaterialIds()) AddMaterial(id);
    if (entries_.size() > kHighestMaterialNumber) {
      problems_.Add(std::to_string(entries_.size()) + " entries are more than a material file " +
                    "can number (" + std::to_string(kHighestMaterialNumber) + ")");
    }
    if (!problems_.empty()) return false;
    Order();
    file_.entries = std::move(entries_);
    return true;
  }

 private:
  bool SelectRecords() {
    const std::string machine_problem = NameProblem("machine model", request_.machine);
    if (!machine_problem.empty()) {
      problems_.Add(machine_problem);
      return false;
    }
    const auto machine_id = catalogue_.MachineId(request_.machine);
    if (!machine_id) {
      problems_.Add("unknown machine model: " + request_.machine);
      return false;
    }
    std::uint16_t vendor_id = 0;
    if (!request_.vendor.empty()) {
      vendor_id = db_.GetVendorId(request_.vendor);
      if (vendor_id == 0) {
        problems_.Add("unknown vendor: " + request_.vendor);
        return false;
      }
    }
    for (const auto& r : db_.GetParameters()) {
      if (r.machine_model_id == *machine_id && (vendor_id == 0 || r.vendor_id == vendor_id)) {
        records_.push_back(r);
      }
    }
    if (records_.empty()) {
      problems_.Add("no records of " + request_.machine +
                    (request_.vendor.empty() ? "" : " by " + request_.vendor));
      return false;
    }
    file_.vendor = catalogue_.Vendor(records_.front().vendor_id);
    const std::string vendor_problem = NameProblem("vendor", file_.vendor);
    if (!vendor_problem.empty()) problems_.Add(vendor_problem);
    return vendor_problem.empty();
  }

  bool HasRecords(std::uint16_t material_id) const {
    return std::any_of(records_.begin(), records_.end(), [&](const CuttingParameter& r) {
      return r.material_id == material_id;
    });
  }

  // The materials asked for, or every material of the machine's records.
  std::vector<std::uint16_t> MaterialIds() {
    std::vector<std::uint16_t> ids;
    if (request_.materials.empty()) {
      for (const auto& r : records_) ids.push_back(r.material_id);
    }
    for (const auto& name : request_.materials) {
      const auto id = catalogue_.MaterialId(name);
      if (!id) {
        problems_.Add("unknown material: " + name);
      } else if (!HasRecords(*id)) {
        problems_.Add("no records of " + name + " on " + request_.machine);
      } else {
        ids.push_back(*id);
      }
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
  }

  void AddMaterial(std::uint16_t material_id) {
    const std::string material = catalogue_.Material(material_id);
    std::string problem = NameProblem("material", material);
    if (problem.empty() && catalogue_.MaterialId(material) != material_id) {
      problem = "the material name " + material + " is given twice in the file, so its records "
                "cannot be told apart";
    }
    if (!problem.empty()) {
      problems_.Add(problem);
      return;
    }
    std::vector<ControllerEntry> material_entries;
    bool listed_pass = true;
    for (const auto& r : records_) {
      if (r.material_id != material_id) continue;
      const std::string finding = StrictCheckFinding(r);
      if (!finding.empty()) {
        problems_.Add(file_.source + ": " + RecordTitle(r, catalogue_) + ": " + finding);
        listed_pass = false;
      }
      material_entries.push_back(ControllerEntry{material, r, false, false, 1.0f, {}, 0});
    }
    // Derived settings are no better than the rows they come from.
    if (!listed_pass) return;
    std::vector<CuttingParameter> listed;
    for (const auto& e : material_entries) listed.push_back(e.settings);
    const auto span = SpanOf(listed);
    std::string left_out;  // gauges beyond the extrapolation limit
    for (const auto& wanted : WantedThicknesses(request_, material, warnings_)) {
      if (Covered(material_entries, wanted.thickness_mm)) continue;
      if (wanted.gauge && !request_.allow_extrapolation && !span->Allows(wanted.thickness_mm)) {
        left_out += (left_out.empty() ? "" : ", ") + std::to_string(*wanted.gauge);
        continue;
      }
      RecordRequest question;
      question.material = material;
      question.machine = request_.machine;
      question.thickness = wanted.thickness_mm;
      question.model = request_.model;
      question.allow_extrapolation = request_.allow_extrapolation;
      const Selection selection = SelectRecord(db_, catalogue_, question);
      if (!selection.found) {
        problems_.Add(selection.miss_reason);
        continue;
      }
      material_entries.push_back(ControllerEntry{material, selection.record, true,
                                                 selection.extrapolated, selection.confidence,
                                                 wanted.gauge, 0});
    }
    if (!left_out.empty()) {
      warnings_.push_back("gauges " + left_out + " of " + material +
                          " left out: they are too far from " +
                          BeyondLimit(*span, material + " on " + request_.machine));
    }
    entries_.insert(entries_.end(), material_entries.begin(), material_entries.end());
  }

  // By material name, then thickness; listed rows keep their table order
  // and come before anything derived for the same thickness.
  void Order() {
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const ControllerEntry& a, const ControllerEntry& b) {
                       if (a.material != b.material) return a.material < b.material;
                       return a.settings.thickness_mm < b.settings.thickness_mm;
                     });
    std::vector<NumberRequest> requests;
    std::vector<ControllerEntry*> order;
    for (const bool derived : {false, true}) {
      for (auto& e : entries_) {
        if (e.derived != derived) continue;
        requests.push_back({e.material, e.settings.thickness_mm});
        order.push_back(&e);
      }
    }
    const auto numbers = AssignMaterialNumbers(requests);
    for (std::size_t i = 0; i < order.size(); ++i) order[i]->number = numbers[i];
  }

  const Sparlane::Database& db_;
  const Catalogue catalogue_;
  const ControllerRequest& request_;
  ControllerFile& file_;
  ProblemList& problems_;
  std::vector<std::string>& warnings_;
  std::vector<CuttingParameter> records_;  // of the machine (and vendor), in table order
  std::vector<ControllerEntry> entries_;
};

}  // namespace

bool CollectEntries(const Sparlane::Database& db, const ControllerRequest& request,
                    ControllerFile& file, ProblemList& problems,
                    std::vector<std::string>& warnings) {
  return Collector(db, request, file, problems, warnings).Run();
}

}  // namespace slb
