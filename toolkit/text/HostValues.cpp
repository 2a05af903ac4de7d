// Toolkit functions over host type codes.
#include "text/HostValues.h"

uint32_t XP7_QuadCharToUInt32(char a, char b, char c, char d) {
  return uint32_t(uint8_t(a)) << 24 | uint32_t(uint8_t(b)) << 16 | uint32_t(uint8_t(c)) << 8 | uint32_t(uint8_t(d));
}
