// The plug-in of the log tests, writing through XP7_WriteTxtToLog from wherever it is placed:
//   log_writer VERSION TYPE SHALLOW TAG TEXT [VERSION TYPE SHALLOW TAG TEXT]...  (calls in order)
//   log_writer --stress PROCESS THREADS LINES  (type 1 lines from all threads at once)
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "services/LogSandbox.h"
#include "services/Logging.h"

namespace {

void WriteLine(int hostVersion, short appType, bool shallow, const char* tag, const std::string& text) {
  fmx::TextAutoPtr txt;
  txt->Assign(text.c_str(), fmx::Text::kEncoding_UTF8);
  XP7_WriteTxtToLog(hostVersion, appType, tag, txt, shallow);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.size() == 4 && args[0] == "--stress") {
    int process = std::atoi(args[1].c_str()), lines = std::atoi(args[3].c_str());
    std::vector<std::thread> writers;
    for (int t = 0; t < std::atoi(args[2].c_str()); ++t) {
      writers.emplace_back([=] {
        for (int n = 0; n < lines; ++n) WriteLine(0, 1, false, "stress", logtest::StressText(process, t, n));
      });
    }
    for (std::thread& w : writers) w.join();
    return 0;
  }
  if (args.empty() || args.size() % 5 != 0) return 2;
  for (size_t i = 0; i < args.size(); i += 5) {
    WriteLine(std::atoi(args[i].c_str()), static_cast<short>(std::atoi(args[i + 1].c_str())), args[i + 2] == "1",
              args[i + 3].c_str(), args[i + 4]);
  }
  return 0;
}
