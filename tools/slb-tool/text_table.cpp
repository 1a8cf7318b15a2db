#include "text_table.h"

#include <algorithm>

namespace slb {

TextTable::TextTable(std::vector<std::string> header, std::size_t left_columns)
    : left_columns_(left_columns) {
  if (!header.empty()) rows_.push_back(std::move(header));
}

TextTable::TextTable(std::vector<std::string> header, std::string alignment)
    : alignment_(std::move(alignment)) {
  if (!header.empty()) rows_.push_back(std::move(header));
}

void TextTable::AddRow(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

std::string TextTable::Render(const std::string& indent) const {
  std::vector<std::size_t> widths;
  for (const auto& row : rows_) {
    if (widths.size() < row.size()) widths.resize(row.size(), 0);
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string out;
  for (const auto& row : rows_) {
    std::string line = indent;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) line += "  ";
      const std::string pad(widths[i] - row[i].size(), ' ');
      const bool left = i < alignment_.size() ? alignment_[i] == 'l' : i < left_columns_;
      line += left ? row[i] + pad : pad + row[i];
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    out += line + "\n";
  }
  return out;
}

}  // namespace slb
