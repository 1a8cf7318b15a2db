// Column-aligned plain-text tables.
#ifndef SLB_TOOL_TEXT_TABLE_H_
#define SLB_TOOL_TEXT_TABLE_H_

#include <cstddef>
#include <string>
#include <vector>

namespace slb {

class TextTable {
 public:
  // The first left_columns columns are left-aligned, the rest right-aligned.
  explicit TextTable(std::vector<std::string> header, std::size_t left_columns = 1);

  // Per-column alignment, 'l' or 'r' for each column ("lrl").
  TextTable(std::vector<std::string> header, std::string alignment);

  void AddRow(std::vector<std::string> cells);

  // Rows joined with two blanks between columns, each line indented.
  std::string Render(const std::string& indent = "  ") const;

 private:
  std::vector<std::vector<std::string>> rows_;
  std::size_t left_columns_ = 0;
  std::string alignment_;
};

}  // namespace slb

#endif  // SLB_TOOL_TEXT_TABLE_H_
