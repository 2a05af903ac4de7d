// The table of xptool subcommands.
#include "Command.h"

namespace xptool {

int RunConvert(const std::vector<std::string>& args);
int RunEncodings(const std::vector<std::string>& args);
int RunMacToWin(const std::vector<std::string>& args);
int RunWinToMac(const std::vector<std::string>& args);

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"convert", "bytes in one host encoding to bytes in another",
       "usage: xptool convert --from ENC --to ENC [FILE]\n\n"
       "Reads FILE (or standard input) as bytes in ENC --from, makes host text of them\n"
       "and writes that text as bytes in ENC --to. Encodings are named as in the\n"
       "-Encoding= switches (UTF8, ASCII_Mac, ShiftJIS_Win, ...) or ByteValues (one\n"
       "byte per character, code points 0-255); 'xptool encodings' lists them.\n"
       "Characters the target cannot hold become '?' (ByteValues: they are left out).\n",
       RunConvert},
      {"encodings", "the host encodings with their names and numbers",
       "usage: xptool encodings\n\nLists the encoding names convert accepts, with their numbers.\n", RunEncodings},
      {"mac2win", "Mac Roman bytes to Windows code page 1252",
       "usage: xptool mac2win [--euro] [FILE]\n\n"
       "Converts every byte 128-255 through the toolkit's Mac to Windows table.\n"
       "--euro uses the tables with the euro sign on Mac 0xDB (current Mac Roman);\n"
       "without it the euro sign is kept on Mac 0xAD, as in Mac Roman before the euro.\n",
       RunMacToWin},
      {"win2mac", "Windows code page 1252 bytes to Mac Roman",
       "usage: xptool win2mac [--euro] [FILE]\n\n"
       "The inverse of mac2win, with the same tables: win2mac after mac2win gives\n"
       "back every byte.\n",
       RunWinToMac},
  };
  return commands;
}

}  // namespace xptool
