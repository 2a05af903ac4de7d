// The in-memory host: every host operation of HostValues.h, in memory, plus what
// tests and tools need to build values and to make host calls fail on demand.
#ifndef XPTOOLKIT_MEMHOST_MEMHOST_H
#define XPTOOLKIT_MEMHOST_MEMHOST_H

#include <cstdint>

#include "text/HostValues.h"

namespace memhost {

/// Makes the call after `skip` further calls of the named host operation (e.g.
/// "FM_Text_AppendText"), or of any operation for "*", report `code` once.
/// Several faults may be pending at a time.
void InjectFault(const char* operation, int32_t code, uint32_t skip = 0);

/// Drops every pending fault.
void ClearFaults();

/// Number of faults injected but not yet reported.
uint32_t PendingFaults();

/// The encoding Native (0) stands for: 4 (ASCII_Mac) unless switched.
int32_t NativeEncoding();

/// Makes Native (0) stand for another host encoding (1-36); others are ignored.
void SetNativeEncoding(int32_t encoding);

/// The style of a text: a number the host carries along with the units (0 = plain).
uint32_t StyleOf(const fmx::Text& text);

/// Gives a text a style; SetText copies it, and an emptied text keeps it.
void SetStyle(fmx::Text& text, uint32_t style);

/// Host values this thread made and has not deleted, for leak checks in tests.
int64_t LiveValues();

/// The error number FM_ExprEnv_Evaluate returns for anything but a string literal.
constexpr fmx::errcode kEvaluateSyntaxError = 1200;

/// The error number container reads return for a stream range that is not there.
constexpr fmx::errcode kRangeError = 3;

}  // namespace memhost

#endif  // XPTOOLKIT_MEMHOST_MEMHOST_H
