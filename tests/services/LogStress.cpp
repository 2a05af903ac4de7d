// Stress test of the log file: 4 processes of 8 threads each append 10,000 lines at once;
// every line must arrive exactly once and whole. Argument: the log_writer program.
#include <chrono>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "services/LogSandbox.h"

namespace {

constexpr int kProcesses = 4, kThreads = 8, kLines = 10000;

// The index of the line's (process, thread, number), or -1 for a line that is not whole.
long LineIndex(const std::string& line) {
  const std::string text = logtest::AfterTime(line);
  int p = -1, t = -1, n = -1;
  if (std::sscanf(text.c_str(), "[stress] p%d t%d n%d", &p, &t, &n) != 3) return -1;
  if (p < 0 || p >= kProcesses || t < 0 || t >= kThreads || n < 0 || n >= kLines) return -1;
  if (text != "[stress] " + logtest::StressText(p, t, n)) return -1;
  return (static_cast<long>(p) * kThreads + t) * kLines + n;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: log_stress LOG_WRITER\n");
    return 2;
  }
  logtest::Sandbox box(argv[1]);
  auto start = std::chrono::steady_clock::now();
  std::vector<pid_t> writers;
  for (int p = 0; p < kProcesses; ++p) {
    writers.push_back(box.Start({"--stress", std::to_string(p), std::to_string(kThreads), std::to_string(kLines)},
                                box.root() / ("stderr" + std::to_string(p))));
  }
  int failedWriters = 0;
  for (pid_t pid : writers) failedWriters += logtest::Sandbox::Wait(pid) != 0;
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

  std::string log = logtest::Sandbox::ReadFile(box.LogFile(3, "Varn Plugin FMServer.log"));
  std::vector<char> seen(static_cast<size_t>(kProcesses) * kThreads * kLines, 0);
  long broken = 0, repeated = 0, missing = 0;
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    long index = LineIndex(line);
    if (index < 0) {
      ++broken;
    } else if (seen[static_cast<size_t>(index)]++ != 0) {
      ++repeated;
    }
  }
  for (char s : seen) missing += s == 0;
  if (!log.empty() && log.back() != '\n') ++broken;

  std::printf("%zu lines from %d processes x %d threads in %.1f s: %ld missing, %ld repeated, %ld broken, "
              "%d writers failed\n",
              seen.size(), kProcesses, kThreads, seconds, missing, repeated, broken, failedWriters);
  return failedWriters == 0 && missing == 0 && repeated == 0 && broken == 0 ? 0 : 1;
}
