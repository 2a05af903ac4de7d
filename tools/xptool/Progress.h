// A percentage line on standard error while a subcommand works through a large input.
#ifndef XPTOOL_PROGRESS_H
#define XPTOOL_PROGRESS_H

#include <cstdint>
#include <string>

namespace xptool {

/// Inputs larger than this many units get a progress line.
constexpr uint64_t kProgressThreshold = 16u << 20;

/// Shows "<label>: NN%" on standard error, rewritten in place as the work goes on,
/// and ends the line when destroyed. Silent unless `total` exceeds
/// kProgressThreshold and standard error is a terminal, so pipes and logs stay clean.
class Progress {
 public:
  Progress(std::string label, uint64_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Reports that `done` of the total units are finished; prints only when the
  /// whole percentage changes.
  void Update(uint64_t done);

 private:
  std::string label_;
  uint64_t total_;
  bool active_;
  int shown_ = -1;
};

}  // namespace xptool

#endif  // XPTOOL_PROGRESS_H
