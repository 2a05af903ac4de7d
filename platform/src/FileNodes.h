// Files and folders behind FSRefs: a process-wide table of absolute paths, and the
// checks that a reference still names the object it was made for.
#ifndef XPPLATFORM_SRC_FILENODES_H
#define XPPLATFORM_SRC_FILENODES_H

#include <CoreServices/Files.h>

#include <sys/stat.h>

#include <string>

namespace xpcs {

// An object found on disk: its absolute path and what stat() says of it now.
struct Node {
  std::string path;
  struct stat st {};

  bool isDirectory() const { return S_ISDIR(st.st_mode); }
};

// Fills `ref` for the object at the absolute `path`, whose current stat() is `st`.
void makeFSRef(const std::string& path, const struct stat& st, FSRef* ref);
// Looks the absolute `path` up on disk (symbolic links followed) and fills `ref` and,
// when not null, `node`.
OSErr makeFSRefForPath(const std::string& path, FSRef* ref, Node* node);
// The object `ref` names: paramErr for NULL, errFSBadFSRef for bytes that are no
// reference made here, fnfErr when the object is gone or another one took its name.
OSErr resolveFSRef(const FSRef* ref, Node& node);

// The folder that holds `path`, "" for the root.
std::string parentPath(const std::string& path);
// `name` inside the folder `folder`.
std::string childPath(const std::string& folder, const std::string& name);
// The last component of `path`, "" for the root.
std::string lastComponent(const std::string& path);

}  // namespace xpcs

#endif
