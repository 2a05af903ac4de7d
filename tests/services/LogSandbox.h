// A temporary folder tree with the log writer copied six folders deep, and a way to run it:
// the log lands a number of folders above the program that writes it.
#ifndef XPTOOLKIT_TESTS_SERVICES_LOGSANDBOX_H
#define XPTOOLKIT_TESTS_SERVICES_LOGSANDBOX_H

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "../helpers/TempFolder.h"

extern char** environ;

namespace logtest {

namespace fs = std::filesystem;

class Sandbox {
 public:
  explicit Sandbox(const fs::path& writer) : program_(root() / "d1/d2/d3/d4/d5/d6" / writer.filename()) {
    fs::create_directories(program_.parent_path());
    fs::copy_file(writer, program_);
  }

  const fs::path& root() const { return root_.path(); }
  /// The folder `up` folders above the one that holds the writer.
  fs::path Above(int up) const {
    fs::path folder = program_.parent_path();
    for (int i = 0; i < up; ++i) folder = folder.parent_path();
    return folder;
  }
  fs::path LogFile(int up, const std::string& name) const { return Above(up) / "Logs" / "Varn Logs" / name; }

  /// Starts the writer with `args`, its standard error going to `errFile`; returns its id.
  pid_t Start(const std::vector<std::string>& args, const fs::path& errFile) const {
    std::vector<std::string> all{program_.string()};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    pid_t pid = -1;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
  }
  /// Runs the writer to its end and returns what it wrote to standard error.
  std::string Run(const std::vector<std::string>& args) const {
    fs::path errFile = root() / "stderr.txt";
    return Wait(Start(args, errFile)) == 0 ? ReadFile(errFile) : "writer failed";
  }
  /// The exit status of the process, -1 when it did not exit normally.
  static int Wait(pid_t pid) {
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
  }
  static std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

 private:
  testing_host::TempFolder root_;
  fs::path program_;
};

/// The line without its time, or "" when it does not start with "YYYY-MM-DD hh:mm:ss ".
inline std::string AfterTime(const std::string& line) {
  const std::string shape = "0000-00-00 00:00:00 ";
  if (line.size() < shape.size()) return "";
  for (size_t i = 0; i < shape.size(); ++i) {
    bool digit = line[i] >= '0' && line[i] <= '9';
    if (shape[i] == '0' ? !digit : line[i] != shape[i]) return "";
  }
  return line.substr(shape.size());
}

/// Line `n` of thread `t` of process `p` in the stress run: long enough that a line broken
/// by another writer's bytes cannot pass for a whole one.
inline std::string StressText(int p, int t, int n) {
  return "p" + std::to_string(p) + " t" + std::to_string(t) + " n" + std::to_string(n) + " " +
         std::string(80, static_cast<char>('a' + (p * 8 + t) % 26));
}

}  // namespace logtest

#endif  // XPTOOLKIT_TESTS_SERVICES_LOGSANDBOX_H
