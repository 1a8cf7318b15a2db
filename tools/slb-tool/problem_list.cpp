#include "problem_list.h"

#include "exit_status.h"

namespace slb {

void ProblemList::Add(std::string text) {
  if (shown_.size() < kShown) shown_.push_back(std::move(text));
  ++count_;
}

std::string ProblemList::MoreLine(const std::string& noun) const {
  return std::to_string(count_ - shown_.size()) + " more " + noun + " not shown (" +
         std::to_string(count_) + " in all)";
}

void ProblemList::ReportErrors(const std::string& noun) const {
  for (const auto& text : shown_) Fail(text);
  if (count_ > shown_.size()) Fail(MoreLine(noun));
}

void ProblemList::ReportWarnings(const std::string& noun, const std::string& suffix) const {
  for (const auto& text : shown_) Warn(text + suffix);
  if (count_ > shown_.size()) Warn(MoreLine(noun));
}

}  // namespace slb
