// Rows on their way into a new parameter file, held compactly.
//
// Each row is checked as it is added: its names (not empty, at most 255
// bytes, no control character or NUL), its values against the library's
// strict record check, and its machine model's vendor (a model belongs to
// one vendor, since the library keys models by name alone).  A row that
// passes is kept as its 64-byte record and its line; names are stored once.
// Memory stays near 68 bytes a row, and rows are handed out in chunks that
// are freed as they go, so even large imports fit in a few times their
// size.
#ifndef SLB_TOOL_IMPORT_TABLE_H_
#define SLB_TOOL_IMPORT_TABLE_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "problem_list.h"
#include "sparlane/sparlane.h"

namespace slb {

class ImportTable {
 public:
  // The file format's limit on records.
  static constexpr std::size_t kMaxRecords = 10000000;

  // source names the input file in messages ("source:line: reason").
  explicit ImportTable(std::string source);

  // Checks a row and keeps it.  Returns "" when it was kept, else why it
  // was refused, as "source:line: reason".  ids in values are ignored.
  std::string Add(std::size_t line, const std::string& vendor, const std::string& machine,
                  const std::string& material, const Sparlane::CuttingParameter& values);

  // Refuses a row for a reason found before Add, in the same form.
  std::string Refuse(std::size_t line, const std::string& reason) const;

  std::size_t size() const { return size_; }
  bool full() const { return size_ >= kMaxRecords; }
  const std::string& source() const { return source_; }

  // Gives the names their ids in the file: machine models and materials in
  // byte order of their names, vendors in the order their first machine
  // model takes them, so a file's ids depend only on its rows.  Rows keep
  // their input order; the library sorts them as it builds the file.  A row
  // with the same vendor, machine model, material and thickness as an
  // earlier row but different settings is reported in warnings, naming both
  // lines, in input order.  Call once, after the last Add.
  void Arrange(ProblemList& warnings);

  // After Arrange: names in id order, and each machine model's vendor.
  const std::vector<std::string>& Machines() const { return machines_.names; }
  const std::vector<std::string>& Materials() const { return materials_.names; }
  const std::string& VendorOfMachine(std::size_t machine_index) const;

  // After Arrange: calls take(record) for every row in input order, freeing the
  // rows as it goes; the table is empty afterwards.  Stops when take
  // returns false.
  bool Drain(const std::function<bool(const Sparlane::CuttingParameter&)>& take);

 private:
  struct Row {
    Sparlane::CuttingParameter record;  // ids index the name tables below, plus one
    std::uint32_t line;
  };
  struct Names {
    std::vector<std::string> names;
    std::unordered_map<std::string, std::uint16_t> ids;  // 1-based
    std::uint16_t Find(const std::string& name) const;
    std::uint16_t Intern(const std::string& name);
  };
  static constexpr std::size_t kChunkRows = 1 << 14;

  Row& At(std::size_t i) { return chunks_[i / kChunkRows][i % kChunkRows]; }
  std::string NamesProblem(const std::string& vendor, const std::string& machine,
                           const std::string& material) const;
  std::string VendorProblem(const std::string& vendor, const std::string& machine) const;
  void GiveFileIds();
  void ReportConflictingDuplicates(ProblemList& warnings);

  std::string source_;
  Names vendors_;
  Names machines_;
  Names materials_;
  std::vector<std::uint16_t> machine_vendor_;       // by machine id - 1
  std::vector<std::uint32_t> machine_first_line_;   // by machine id - 1
  std::vector<std::vector<Row>> chunks_;
  std::size_t size_ = 0;
};

}  // namespace slb

#endif  // SLB_TOOL_IMPORT_TABLE_H_
