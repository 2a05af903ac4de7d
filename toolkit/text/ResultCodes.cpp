// The names of the toolkit's result codes.
#include "text/ResultCodes.h"

#include <cstdio>

namespace {

struct Named {
  int code;
  const char* name;
};

#define XP_NAMED(code) \
  { code, #code }
constexpr Named kNames[] = {
    XP_NAMED(kXP_NoErr),
    XP_NAMED(kXP_ParamErr),
    XP_NAMED(kXP_MemFull),
    XP_NAMED(kXP_EndOfFile),
    XP_NAMED(kXP_FileNotFound),
    XP_NAMED(kXP_DuplicateName),
    XP_NAMED(kXP_DecodedToNothing),
    XP_NAMED(kXP_MalformedUTF8),
    XP_NAMED(kXP_NullString),
    XP_NAMED(kXP_OutOfSpace),
    XP_NAMED(kXP_BufferTooSmall),
    XP_NAMED(kXP_DateTooLate),
    XP_NAMED(kXP_DateTooEarly),
    XP_NAMED(kXP_BundleNotLoaded),
    XP_NAMED(kXP_BundleTooOld),
    XP_NAMED(kXP_ResourcesNotReferenced),
    XP_NAMED(kXP_BundleNotCreated),
    XP_NAMED(kXP_ExecutableNotLoaded),
    XP_NAMED(kXP_FunctionNameNotString),
    XP_NAMED(kXP_FunctionNotFound),
};
#undef XP_NAMED

}  // namespace

const char* XP_ResultCodeName(int code) {
  const char* name = "unknown";
  for (const Named& n : kNames) {
    if (n.code == code) name = n.name;
  }
  thread_local char text[48];
  std::snprintf(text, sizeof text, "%s (%d)", name, code);
  return text;
}
