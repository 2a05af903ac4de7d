// The progress line of long xptool runs.
#include "Progress.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace xptool {

Progress::Progress(std::string label, uint64_t total)
    : label_(std::move(label)), total_(total), active_(total > kProgressThreshold && isatty(2) == 1) {}

Progress::~Progress() {
  if (active_ && shown_ >= 0) std::fputc('\n', stderr);
}

void Progress::Update(uint64_t done) {
  if (!active_) return;
  const int percent = static_cast<int>(done >= total_ ? 100 : done * 100 / total_);
  if (percent == shown_) return;
  shown_ = percent;
  std::fprintf(stderr, "\r%s: %3d%%", label_.c_str(), percent);
  std::fflush(stderr);
}

}  // namespace xptool
