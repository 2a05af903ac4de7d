// The toolkit's result codes, grouped by the subsystem that returns them, and their names
// for test and log messages. Codes are signed 32-bit numbers in the platform's style.
#ifndef XPTOOLKIT_TEXT_RESULTCODES_H
#define XPTOOLKIT_TEXT_RESULTCODES_H

// Every subsystem.
constexpr int kXP_NoErr = 0;       // success
constexpr int kXP_ParamErr = -50;  // a bad parameter, also malformed input
constexpr int kXP_MemFull = -108;  // out of memory

// Files.
constexpr int kXP_EndOfFile = -39;      // the end of the file came before the bytes asked for
constexpr int kXP_FileNotFound = -43;   // no such file or folder
constexpr int kXP_DuplicateName = -48;  // the file or folder already exists

// Host text from byte blocks.
constexpr int kXP_DecodedToNothing = -302;  // the block decoded to an empty text
constexpr int kXP_MalformedUTF8 = -4280;    // the block is not well-formed UTF-8

// Platform strings.
constexpr int kXP_NullString = -4176;  // a null CFString where a string was needed

// Codecs.
constexpr int kXP_OutOfSpace = -416;  // the output buffer or the host text is too small

// Plain strings.
constexpr int kXP_BufferTooSmall = -207;  // the destination cannot hold the block and its NUL

// Dates.
constexpr int kXP_DateTooLate = -4241;   // the date of the Mac seconds is after 2040-02-04
constexpr int kXP_DateTooEarly = -4245;  // the date of the Mac seconds is before 1904-01-01

// The bundle loader.
constexpr int kXP_BundleNotLoaded = -4258;  // the bundle could not be found or loaded
constexpr int kXP_BundleTooOld = -4260;     // the bundle's version function is missing or too old
constexpr int kXP_ResourcesNotReferenced = -4224;      // the resources folder has no FSRef
constexpr int kXP_BundleNotCreated = -4172;            // no CFBundle could be made of the folder
constexpr int kXP_ExecutableNotLoaded = -200110050;    // the bundle's executable did not load
constexpr int kXP_FunctionNameNotString = -200110051;  // the function name made no CFString
constexpr int kXP_FunctionNotFound = -200110052;       // the executable has no function of that name

/// The name and number of a result code ("kXP_ParamErr (-50)"), or "unknown (N)", in a
/// per-thread buffer that the next call on the same thread reuses.
const char* XP_ResultCodeName(int code);

#endif  // XPTOOLKIT_TEXT_RESULTCODES_H
