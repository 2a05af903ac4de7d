// Where a file's Finder information and resource fork persist: extended attributes named
// as macOS names them, or an AppleDouble file beside the object where the file system
// cannot hold them.
#ifndef XPPLATFORM_SRC_MACMETADATA_H
#define XPPLATFORM_SRC_MACMETADATA_H

#include <MacTypes.h>

#include <array>
#include <string>
#include <vector>

namespace xpcs {

// The 32 bytes of Finder information (16 of FileInfo/FolderInfo, 16 extended) in the
// big-endian order they have on disk.
using FinderBytes = std::array<UInt8, 32>;

// The Finder information of the object at `path`; all zero when it has none.
OSErr readFinderInfo(const std::string& path, FinderBytes& bytes);
// Stores Finder information; all zero removes it, as macOS does.
OSErr writeFinderInfo(const std::string& path, const FinderBytes& bytes);

// The resource fork of the file at `path`; `exists` tells whether it has one at all.
OSErr readResourceFork(const std::string& path, std::vector<UInt8>& bytes, bool& exists);
// Stores the resource fork, creating it when the file has none.
OSErr writeResourceFork(const std::string& path, const std::vector<UInt8>& bytes);

// Deletes the AppleDouble file of the object at `path`, if there is one; for use once the
// object itself is gone.
void removeAppleDouble(const std::string& path);

}  // namespace xpcs

#endif
