#include "store/store.h"

#include <utility>

#include "store/index_builder.h"
#include "store/record_order.h"

namespace Sparlane {

void Store::Reset(const FileHeader& fresh_header) {
  header_ = fresh_header;
  vendors_.Clear();
  machines_.Clear();
  materials_.Clear();
  records_.clear();
  consumable_sets_.clear();
  indexes_.Clear();
  pair_index_ = PairIndex();
  loaded_ = true;
}

void Store::Close() {
  if (file_) file_->Close();
  loaded_ = false;
}

void Store::DropFile() { file_.reset(); }

void Store::Replace(StoreParts parts) {
  if (parts.header) header_ = *parts.header;
  if (parts.vendors) vendors_.Assign(std::move(*parts.vendors));
  if (parts.machines) machines_.Assign(std::move(*parts.machines));
  if (parts.materials) materials_.Assign(std::move(*parts.materials));
  if (parts.records) records_ = std::move(*parts.records);
  if (parts.indexes) {
    indexes_ = std::move(parts.indexes->records);
    pair_index_ = std::move(parts.indexes->positions);
  }
}

void Store::FinishLoad(std::unique_ptr<LoadedFile> file) {
  file_ = std::move(file);
  loaded_ = true;
}

ErrorCode Store::Fail(ErrorCode code, std::string message) {
  last_error_ = std::move(message);
  return code;
}

const NameTable& Store::names(NameKind kind) const {
  switch (kind) {
    case NameKind::kVendor:
      return vendors_;
    case NameKind::kMachine:
      return machines_;
    case NameKind::kMaterial:
      break;
  }
  return materials_;
}

NameTable& Store::table(NameKind kind) {
  return const_cast<NameTable&>(static_cast<const Store&>(*this).names(kind));
}

std::uint16_t Store::AddName(NameKind kind, const std::string& name) {
  return table(kind).Append(name);
}

void Store::Append(const CuttingParameter& record) {
  records_.push_back(record);
  PairIndexAppended(records_, pair_index_);
}

void Store::Overwrite(std::size_t pos, const CuttingParameter& record) {
  records_[pos] = record;
  RebuildRecordIndexes();
}

void Store::Erase(std::size_t pos) {
  records_.erase(records_.begin() + static_cast<std::ptrdiff_t>(pos));
  RebuildRecordIndexes();
}

void Store::SortRecords() {
  SortByIndexKey(records_);
  RebuildRecordIndexes();
}

void Store::RebuildRecordIndexes() { BuildIndexes(records_, indexes_, pair_index_); }

const ConsumableSet* Store::FindConsumableSet(std::uint16_t set_id) const {
  const auto found = consumable_sets_.find(set_id);
  return found == consumable_sets_.end() ? nullptr : &found->second;
}

}  // namespace Sparlane
