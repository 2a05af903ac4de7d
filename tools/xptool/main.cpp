// xptool: the toolkit's functions on the command line, run on the in-memory host.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Command.h"

namespace {

void PrintUsage(FILE* out) {
  std::fprintf(out, "usage: xptool COMMAND [ARGS]\n\ncommands:\n");
  for (const xptool::Command& c : xptool::Commands()) std::fprintf(out, "  %-12s %s\n", c.name, c.summary);
  std::fprintf(out, "\n'xptool COMMAND --help' explains one command.\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    PrintUsage(stderr);
    return xptool::kUsage;
  }
  const std::string name = argv[1];
  if (name == "--help" || name == "-h" || name == "help") {
    PrintUsage(stdout);
    return 0;
  }
  for (const xptool::Command& c : xptool::Commands()) {
    if (name != c.name) continue;
    std::vector<std::string> args(argv + 2, argv + argc);
    for (const std::string& a : args) {
      if (a == "--help" || a == "-h") {
        std::fputs(c.help, stdout);
        return 0;
      }
    }
    return c.run(args);
  }
  std::fprintf(stderr, "xptool: unknown command '%s'\n", name.c_str());
  PrintUsage(stderr);
  return xptool::kUsage;
}
