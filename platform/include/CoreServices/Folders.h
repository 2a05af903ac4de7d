// Apple's Folder Manager (Folders.h): where the system keeps the user's special folders.
#ifndef XPPLATFORM_CORESERVICES_FOLDERS_H
#define XPPLATFORM_CORESERVICES_FOLDERS_H

#include <CoreServices/Files.h>
#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

// Volumes and domains to search (FSFindFolder's vRefNum).
enum {
  kOnSystemDisk = -32768,
  kOnAppropriateDisk = -32767,
  kSystemDomain = -32766,
  kLocalDomain = -32765,
  kNetworkDomain = -32764,
  kUserDomain = -32763,
  kClassicDomain = -32762
};

// FSFindFolder's createFolder.
enum { kCreateFolder = 1, kDontCreateFolder = 0 };

// Folder types, spelled in hexadecimal so that compilers warning about multi-character
// constants stay quiet.
enum {
  kDesktopFolderType = 0x6465736B,             /* 'desk' */
  kDocumentsFolderType = 0x646F6373,           /* 'docs' */
  kCurrentUserFolderType = 0x63757372,         /* 'cusr' */
  kPreferencesFolderType = 0x70726566,         /* 'pref' */
  kApplicationSupportFolderType = 0x61737570,  /* 'asup' */
  kTemporaryFolderType = 0x74656D70            /* 'temp' */
};

// Off Apple systems the user domain lies in the home folder ($HOME, else the password
// database): Desktop, Documents, Library/Preferences, Library/Application Support; the
// temporary folder is $TMPDIR, else /tmp. kOnSystemDisk, kOnAppropriateDisk and
// kUserDomain find the user's folders; the temporary folder is found in every domain.

/// The folder of `folderType` in the domain `vRefNum`, created with its missing parents
/// when `createFolder` is kCreateFolder. fnfErr when it does not exist or the type or
/// domain has no folder here; paramErr for a NULL `foundRef`.
OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder, FSRef* foundRef);

#ifdef __cplusplus
}
#endif

#endif
