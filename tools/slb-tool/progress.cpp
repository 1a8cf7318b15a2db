#include "progress.h"

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
#define SLB_ISATTY _isatty
#define SLB_FILENO _fileno
#else
#include <unistd.h>
#define SLB_ISATTY isatty
#define SLB_FILENO fileno
#endif

namespace slb {

// Short runs finish before anyone could read a counter.
constexpr std::size_t kSmallestShownTotal = 1000;

Progress::Progress(std::string label, std::size_t total)
    : label_(std::move(label)),
      total_(total),
      enabled_(total >= kSmallestShownTotal && SLB_ISATTY(SLB_FILENO(stderr)) != 0) {}

Progress::~Progress() {
  if (enabled_ && shown_percent_ <= 100) std::fputc('\n', stderr);
}

void Progress::Update(std::size_t done) {
  if (!enabled_) return;
  const std::size_t percent = done * 100 / total_;
  if (percent == shown_percent_) return;
  shown_percent_ = percent;
  std::fprintf(stderr, "\r%s: %zu%% (%zu of %zu)", label_.c_str(), percent, done, total_);
  std::fflush(stderr);
}

}  // namespace slb
