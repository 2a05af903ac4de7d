// Builds a text through the installed toolkit and host, converts it back, and
// checks the round trip: proof that headers, libraries and package fit together.
#include <MemHost.h>
#include <XPToolkit.h>

#include <cstdio>
#include <cstring>

int main() {
  fmx::TextAutoPtr txt;
  XP7_CStrToTxt("caf\xC3\xA9", txt, fmx::Text::kEncoding_UTF8);
  char buf[16];
  XP7_TxtToCStr(txt, 0, 0xFFFFFFFF, sizeof buf, true, buf, fmx::Text::kEncoding_ASCII_Mac);
  char cp1252[] = "caf\x8E";
  XP_MacToWinStr(cp1252, 0);
  Rect r = {1, 2, 3, 4};
  const bool ok = std::strcmp(buf, "caf\x8E") == 0 && std::strcmp(cp1252, "caf\xE9") == 0 &&
                  XP7_GetEncodingSwitch(const_cast<char*>("-Encoding=UTF8"), fmx::Text::kEncoding_Native) ==
                      fmx::Text::kEncoding_UTF8 &&
                  r.right == 4;
  std::puts(ok ? "consumer: ok" : "consumer: wrong result");
  return ok ? 0 : 1;
}
