// Argument reading, input and output shared by the xptool subcommands.
#include "Command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

namespace xptool {
namespace {

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

Arguments::Arguments(const std::vector<std::string>& args, const std::vector<std::string>& valued,
                     const std::vector<std::string>& flags) {
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (a.size() > 2 && a.compare(0, 2, "--") == 0) {
      std::string name = a.substr(2);
      if (Contains(valued, name)) {
        if (i + 1 >= args.size()) {
          error_ = "option --" + name + " needs a value";
          return;
        }
        options_.emplace_back(name, args[++i]);
      } else if (Contains(flags, name)) {
        options_.emplace_back(name, "");
      } else {
        error_ = "unknown option " + a;
        return;
      }
    } else {
      positionals_.push_back(a);
    }
  }
}

bool Arguments::has(const std::string& name) const {
  return std::any_of(options_.begin(), options_.end(), [&](const auto& o) { return o.first == name; });
}

std::string Arguments::value(const std::string& name, const std::string& fallback) const {
  for (const auto& o : options_) {
    if (o.first == name) return o.second;
  }
  return fallback;
}

int Fail(const char* command, const std::string& message, int code) {
  std::fprintf(stderr, "xptool %s: %s\n", command, message.c_str());
  return code;
}

bool ReadInput(const std::string& path, std::string& out, std::string& error) {
  if (path.empty() || path == "-") {
    std::ostringstream all;
    all << std::cin.rdbuf();
    out = all.str();
    if (std::cin.bad()) {
      error = "cannot read standard input";
      return false;
    }
    return true;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error = "cannot read '" + path + "': " + std::strerror(errno);
    return false;
  }
  out.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (in.bad()) {
    error = "cannot read '" + path + "'";
    return false;
  }
  return true;
}

bool WriteOutput(const std::string& bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() && std::fflush(stdout) == 0;
}

}  // namespace xptool
