// The table of xptool subcommands.
#include "Command.h"

namespace xptool {

int RunBase64(const std::vector<std::string>& args);
int RunContainer(const std::vector<std::string>& args);
int RunHex(const std::vector<std::string>& args);
int RunConvert(const std::vector<std::string>& args);
int RunDate(const std::vector<std::string>& args);
int RunStrings(const std::vector<std::string>& args);
int RunEncodings(const std::vector<std::string>& args);
int RunMacToWin(const std::vector<std::string>& args);
int RunWinToMac(const std::vector<std::string>& args);
int RunURLEncode(const std::vector<std::string>& args);
int RunUTF8(const std::vector<std::string>& args);
int RunReinterpret(const std::vector<std::string>& args);
int RunSubstitute(const std::vector<std::string>& args);
int RunLineEnds(const std::vector<std::string>& args);
int RunLog(const std::vector<std::string>& args);
int RunSwitch(const std::vector<std::string>& args);

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"base64", "bytes, hex text or bin text to base64 and back",
       "usage: xptool base64 encode [--line-length N] [--mode plain|hex|bin] [FILE]\n"
       "       xptool base64 decode [--mode plain|hex|bin] [FILE]\n\n"
       "encode writes the base64 of FILE (or standard input). --mode plain (the\n"
       "default) encodes the bytes as they are, with a CR LF after every line. With\n"
       "--mode hex the input is hex text (blanks and line breaks are passed over, lower\n"
       "case is read as upper case) and with --mode bin it is bin text, \"\\0\" standing\n"
       "for a zero byte and \"\\\\\" for a backslash; these are encoded as the toolkit\n"
       "encodes host text, with a single CR (the host's paragraph separator) after\n"
       "every line. --line-length N (default 76) is rounded down to whole groups of 4\n"
       "characters; 0 writes one line without a break, and below 4 the plain mode\n"
       "breaks after every group while hex and bin do not break.\n\n"
       "decode passes over everything that is not a base64 character (line breaks,\n"
       "blanks, padding) and writes the bytes (plain), their hex text (hex) or their\n"
       "bin text (bin). Text goes in and out as Mac Roman, one byte per character.\n",
       RunBase64},
      {"container", "files to a binary container text and back",
       "usage: xptool container pack [--base64] [--type ABCD] FILE...\n"
       "       xptool container unpack [--into DIR] [FILE]\n\n"
       "pack makes one container of the files, one stream each, and writes its\n"
       "<VARN_BINARY_CONTAINER10> text to standard output: the hex variant, or the\n"
       "base64 variant with --base64. A stream's type is --type, or follows the\n"
       "file's extension: .jpg/.jpeg JPEG, .png PNGf, .pdf \"PDF \", .gif GIFf, else FILE.\n\n"
       "unpack reads a container text of either variant from FILE (or standard input)\n"
       "and writes each stream into DIR (default: the current folder) as INDEX.TYPE,\n"
       "e.g. 1.JPEG, listing them on standard error. A malformed text writes no file\n"
       "and exits 1 with the toolkit's result code and the reason.\n",
       RunContainer},
      {"convert", "bytes in one host encoding to bytes in another",
       "usage: xptool convert --from ENC --to ENC [FILE]\n\n"
       "Reads FILE (or standard input) as bytes in ENC --from, makes host text of them\n"
       "and writes that text as bytes in ENC --to. Encodings are named as in the\n"
       "-Encoding= switches (UTF8, ASCII_Mac, ShiftJIS_Win, ...) or ByteValues (one\n"
       "byte per character, code points 0-255); 'xptool encodings' lists them.\n"
       "Characters the target cannot hold become '?' (ByteValues: they are left out).\n",
       RunConvert},
      {"date", "Mac seconds as host date-time, ISO text and locale dates",
       "usage: xptool date MACSECONDS\n\n"
       "Shows Mac seconds (seconds of local wall-clock time since 1904-01-01 00:00:00,\n"
       "0 to 4294967295, in decimal or as 0x hex) as the toolkit converts them: the\n"
       "host date-time (its day number, 0001-01-01 being day 1, and second of the day),\n"
       "its ISO text, and the date in the user's locale in the short, medium and long\n"
       "styles. The locale comes from LC_ALL, LC_TIME or LANG (e.g. LC_ALL=de_DE.UTF-8),\n"
       "the time zone from TZ. Example: xptool date 0xFFFFFFFF\n",
       RunDate},
      {"encodings", "the host encodings with their names and numbers",
       "usage: xptool encodings\n\nLists the encoding names convert accepts, with their numbers.\n", RunEncodings},
      {"hex", "bytes to hex text and back",
       "usage: xptool hex encode|decode [FILE]\n\n"
       "encode writes two upper-case hex digits per byte of FILE (or standard input)\n"
       "on one line, ended by a line break. decode reads them back: blanks and line\n"
       "breaks are passed over and lower case is read as upper case, so it also reads\n"
       "the output of other hex dumpers; any other character or an odd number of\n"
       "digits exits 1 without output.\n",
       RunHex},
      {"lineends", "convert the line ends of UTF-8 text",
       "usage: xptool lineends cr|crlf|lf-to-cr [FILE]\n\n"
       "Reads FILE (or standard input) as UTF-8, converts its line ends with the\n"
       "toolkit's line-end converter and writes it as UTF-8. The modes are the\n"
       "converter's: cr is mode 9 (CR LF, LF and CR all become CR), crlf is mode 10\n"
       "(all become CR LF), lf-to-cr is mode 3 (only LF becomes CR; CR LF becomes CR CR).\n",
       RunLineEnds},
      {"log", "write a line to the plug-in's log as the plug-in would",
       "usage: xptool log --app-type N --tag T [--host-version V] [--shallow] TEXT\n\n"
       "Writes TEXT (UTF-8, its first 1000 characters) through the plug-in's log writer\n"
       "and prints where the line went: the log file's path, or \"standard error\".\n"
       "The log file lies in Logs/Varn Logs, counted up from the folder that holds\n"
       "xptool: app type 1 (server) 3 folders up, \"Varn Plugin FMServer.log\"; 2 (web\n"
       "engine) 4 up, or from --host-version 53 on 3 up with --shallow and 5 without,\n"
       "\"Varn Plugin Web Engine.log\". Type 1 and 2 append \"time [T] TEXT\" to the file;\n"
       "any other type makes the file (101 \"VarnDebug.log\", others the server's, in\n"
       "the folder of xptool itself) and writes \"[T] TEXT\" to standard error. Missing\n"
       "folders are made; when that fails nothing is written and log exits 1.\n",
       RunLog},
      {"mac2win", "Mac Roman bytes to Windows code page 1252",
       "usage: xptool mac2win [--euro] [FILE]\n\n"
       "Converts every byte 128-255 through the toolkit's Mac to Windows table.\n"
       "--euro uses the tables with the euro sign on Mac 0xDB (current Mac Roman);\n"
       "without it the euro sign is kept on Mac 0xAD, as in Mac Roman before the euro.\n",
       RunMacToWin},
      {"reinterpret", "repair a web page or XML file decoded with the wrong charset",
       "usage: xptool reinterpret --from ENC (--to ENC | --meta) [FILE]\n\n"
       "Decodes FILE (or standard input) in ENC --from, as a plug-in would have received\n"
       "it, then repairs the text: turns it back into its --from bytes and decodes them\n"
       "again in ENC --to, or with --meta in the charset its first HTML meta tag or XML\n"
       "declaration names (only utf-8 and ISO-8859-1 are recognised; otherwise the text\n"
       "stays as it is). Writes the text as UTF-8. Encodings are named as for convert;\n"
       "--from must be a host encoding, not ByteValues. Only as many bytes as the text\n"
       "has characters are decoded again, so --from should be a single-byte encoding.\n",
       RunReinterpret},
      {"strings", "a localized message by number from a bundle's strings table",
       "usage: xptool strings BUNDLE TABLE ID [--format FMT] [--cut]\n\n"
       "Prints message ID of the strings table TABLE of the bundle folder BUNDLE\n"
       "(Contents/Resources/<language>.lproj/TABLE.strings) as the plug-in loads it,\n"
       "in UTF-8. The key is FMT applied to ID: a printf format with exactly one\n"
       "integer conversion, \"%d\" by default, so message 7 is looked up under \"7\"\n"
       "(--format MSG_%03d would use \"MSG_007\"). As in the plug-in, message 131 is\n"
       "message 1, and a message of 1023 UTF-16 units or more is refused. --cut drops\n"
       "the text from its first \"(\" on. A missing, empty or refused message exits 1.\n",
       RunStrings},
      {"substitute", "replace every occurrence of a text, ignoring case",
       "usage: xptool substitute SEARCH REPLACEMENT [FILE]\n\n"
       "Reads FILE (or standard input) as UTF-8, replaces every occurrence of SEARCH by\n"
       "REPLACEMENT, left to right, and writes the result as UTF-8. Like the toolkit,\n"
       "the search always ignores case, and a replacement is never searched again\n"
       "(substitute a aa turns aaa into aaaaaa). SEARCH must not be empty.\n",
       RunSubstitute},
      {"switch", "what a plug-in reads from a switches string",
       "usage: xptool switch --has SWITCH TEXT\n"
       "       xptool switch --tag TAG [--number | --end CHAR] TEXT\n\n"
       "--has prints true when SWITCH occurs in TEXT, else false. Only A-Z and a-z\n"
       "match each other, and there is no word boundary: -Wait is found in -Waiting.\n"
       "--tag prints the value after the first TAG, up to the character --end (default\n"
       "'-', where the next switch starts) or the end of TEXT; a missing tag exits 1.\n"
       "With --number it prints the first run of digits in that value (which ends at\n"
       "the next '-', so a minus sign is never read), or none.\n"
       "Example: xptool switch --tag -timeout= --number '-NoDialog -Timeout=30'\n",
       RunSwitch},
      {"urlencode", "percent-encode UTF-8 text for a URL",
       "usage: xptool urlencode [FILE]\n\n"
       "Reads FILE (or standard input) as UTF-8 and writes it percent-encoded: every\n"
       "byte of its UTF-8 except A-Z, a-z, 0-9 and - . _ ~ becomes %XY (upper-case hex;\n"
       "a space is %20, never +). Malformed input bytes arrive as U+FFFD (%EF%BF%BD).\n",
       RunURLEncode},
      {"utf8", "text to UTF-8 and back with the toolkit's own coder",
       "usage: xptool utf8 encode [--from ENC] [FILE]\n"
       "       xptool utf8 decode [FILE]\n\n"
       "encode decodes FILE (or standard input) in ENC --from (default UTF8; named as for\n"
       "convert) and writes the text through the toolkit's UTF-8 encoder.\n"
       "decode takes each input byte as one character of UTF-8 text and decodes it with\n"
       "the toolkit's lenient decoder: bytes that start no sequence (0x80-0xBF) pass as\n"
       "Latin-1 characters, overlong forms are accepted, values past U+10FFFF and\n"
       "surrogates become U+FFFD, and a sequence cut off at the end is dropped. The\n"
       "result is written as UTF-8.\n",
       RunUTF8},
      {"win2mac", "Windows code page 1252 bytes to Mac Roman",
       "usage: xptool win2mac [--euro] [FILE]\n\n"
       "The inverse of mac2win, with the same tables: win2mac after mac2win gives\n"
       "back every byte.\n",
       RunWinToMac},
  };
  return commands;
}

}  // namespace xptool
