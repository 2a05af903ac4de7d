// What every xptool subcommand shares: its entry signature, argument reading,
// input from a file or standard input, and error reporting.
#ifndef XPTOOL_COMMAND_H
#define XPTOOL_COMMAND_H

#include <string>
#include <vector>

namespace xptool {

/// Exit codes: 0 done, 1 the work failed (unreadable input, bad data), 2 bad usage.
constexpr int kFailed = 1;
constexpr int kUsage = 2;

/// A subcommand: its name, a one-line summary, its help text and its entry.
struct Command {
  const char* name;
  const char* summary;
  const char* help;
  int (*run)(const std::vector<std::string>& args);
};

/// Every subcommand, in the order `xptool --help` lists them.
const std::vector<Command>& Commands();

/// Arguments split into options ("--name value" or "--flag") and positionals.
class Arguments {
 public:
  /// Reads `args`; `valued` names the options that take a value. On a bad
  /// argument error() tells what is wrong.
  Arguments(const std::vector<std::string>& args, const std::vector<std::string>& valued,
            const std::vector<std::string>& flags);
  const std::string& error() const { return error_; }
  bool has(const std::string& name) const;
  /// The value of a valued option, or `fallback` when it was not given.
  std::string value(const std::string& name, const std::string& fallback = "") const;
  const std::vector<std::string>& positionals() const { return positionals_; }

 private:
  std::vector<std::pair<std::string, std::string>> options_;
  std::vector<std::string> positionals_;
  std::string error_;
};

/// Prints "xptool <command>: <message>" to standard error and returns `code`.
int Fail(const char* command, const std::string& message, int code);

/// Reads all of `path` ("" or "-" for standard input) into `out`; false with a
/// message in `error` when it cannot be read.
bool ReadInput(const std::string& path, std::string& out, std::string& error);

/// Writes `bytes` to standard output; false when that fails.
bool WriteOutput(const std::string& bytes);

}  // namespace xptool

#endif  // XPTOOL_COMMAND_H
