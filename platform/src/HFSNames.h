// HFS names (UTF-16, at most 255 units, ":" as the separator) and the POSIX path
// components that stand for them.
#ifndef XPPLATFORM_SRC_HFSNAMES_H
#define XPPLATFORM_SRC_HFSNAMES_H

#include <CoreServices/Files.h>

#include <string>

namespace xpcs {

// The POSIX component of an HFS name, "/" turned into ":"; paramErr for a NULL name of
// some length, errFSNameTooLong beyond 255 units, bdNamErr for a name no file can have.
OSErr posixComponentOfName(UniCharCount length, const UniChar* name, std::string& component);
// The HFS name of a POSIX component, ":" turned into "/"; bytes that are not UTF-8 read
// as U+FFFD, and units beyond 255 are dropped.
void nameOfPosixComponent(const std::string& component, HFSUniStr255& name);

enum class Fork { kData, kResource };
// Which fork a fork name names; errFSBadForkName for any other name.
OSErr forkOfName(UniCharCount length, const UniChar* name, Fork& fork);
// The name of `fork`: empty for the data fork, "RESOURCE_FORK" for the resource fork.
void nameOfFork(Fork fork, HFSUniStr255& name);

}  // namespace xpcs

#endif
