// Catalog information of files and folders, shared by the calls that read and write it
// and those that create objects with it.
#ifndef XPPLATFORM_SRC_CATALOGINFO_H
#define XPPLATFORM_SRC_CATALOGINFO_H

#include "FileNodes.h"

#include <CoreServices/Files.h>

namespace xpcs {

// Writes the settable fields of `whichInfo` from `info` to the object `node`.
OSErr applyCatalogInfo(const Node& node, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo& info);

}  // namespace xpcs

#endif
