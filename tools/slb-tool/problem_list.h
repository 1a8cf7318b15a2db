// Problems found while importing, kept short: a hostile file can hold
// millions of bad rows, so only the first few texts are kept, and the rest
// are counted.
#ifndef SLB_TOOL_PROBLEM_LIST_H_
#define SLB_TOOL_PROBLEM_LIST_H_

#include <cstddef>
#include <string>
#include <vector>

namespace slb {

class ProblemList {
 public:
  static constexpr std::size_t kShown = 20;

  void Add(std::string text);

  std::size_t count() const { return count_; }
  bool empty() const { return count_ == 0; }

  // Prints the kept texts as failures ("slb-tool: TEXT") and, when some
  // were dropped, "slb-tool: N more <noun> not shown (M in all)".
  void ReportErrors(const std::string& noun) const;
  // The same as warnings, each text followed by suffix.
  void ReportWarnings(const std::string& noun, const std::string& suffix = "") const;

 private:
  std::string MoreLine(const std::string& noun) const;

  std::vector<std::string> shown_;
  std::size_t count_ = 0;
};

}  // namespace slb

#endif  // SLB_TOOL_PROBLEM_LIST_H_
