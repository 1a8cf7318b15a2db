// A progress counter on stderr, shown only when stderr is a terminal so
// that logs and pipes stay clean.
#ifndef SLB_TOOL_PROGRESS_H_
#define SLB_TOOL_PROGRESS_H_

#include <cstddef>
#include <string>

namespace slb {

class Progress {
 public:
  Progress(std::string label, std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Update(std::size_t done);

 private:
  std::string label_;
  std::size_t total_;
  std::size_t shown_percent_ = 101;
  bool enabled_;
};

}  // namespace slb

#endif  // SLB_TOOL_PROGRESS_H_
