// Apple's bundles (CFBundle.h): folders that carry an executable, an information property
// list and resources, with localized string tables.
#ifndef XPPLATFORM_COREFOUNDATION_CFBUNDLE_H
#define XPPLATFORM_COREFOUNDATION_CFBUNDLE_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFError.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __CFBundle* CFBundleRef;

// Keys of the information property list.
extern const CFStringRef kCFBundleInfoDictionaryVersionKey;
extern const CFStringRef kCFBundleExecutableKey;
extern const CFStringRef kCFBundleIdentifierKey;
extern const CFStringRef kCFBundleVersionKey;
extern const CFStringRef kCFBundleDevelopmentRegionKey;
extern const CFStringRef kCFBundleNameKey;

// Codes of the errors (domain kCFErrorDomainCocoa) that loading an executable reports.
enum {
  kCFBundleExecutableNotFoundError = 4,
  kCFBundleExecutableNotLoadableError = 3584,
  kCFBundleExecutableArchitectureMismatchError = 3585,
  kCFBundleExecutableRuntimeMismatchError = 3586,
  kCFBundleExecutableLoadError = 3587,
  kCFBundleExecutableLinkError = 3588
};

/// The type of every CFBundle.
CFTypeID CFBundleGetTypeID(void);
/// The bundle of the running program: the bundle that encloses the executable when it
/// lies in "<bundle>/Contents/MacOS/", else the executable's folder (not retained for the
/// caller).
CFBundleRef CFBundleGetMainBundle(void);
/// The bundle at the folder `bundleURL`; NULL when there is no such folder. A bundle that
/// is still alive for the same folder is returned again, retained.
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef bundleURL);
/// A bundle created earlier (or the main bundle) whose CFBundleIdentifier is
/// `bundleID`, or NULL (not retained for the caller).
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID);

/// The bundle's folder.
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
/// The folder of its resources: "Contents/Resources/" of a macOS-style bundle, the bundle
/// folder itself of a flat one.
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);
/// The executable named by CFBundleExecutable, or NULL when there is none on disk.
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);
/// The resource `resourceName`.`resourceType` in `subDirName` (each optional but the
/// name), looked up first outside and then inside the ".lproj" folders in the order of
/// the user's languages; NULL when there is none.
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName, CFStringRef resourceType,
                                 CFStringRef subDirName);

/// A string value of the information property list (not retained for the caller); NULL
/// for a missing key and for values that are not strings.
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
/// The bundle's CFBundleIdentifier, or NULL (not retained for the caller).
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
/// The bundle's CFBundleDevelopmentRegion, or NULL (not retained for the caller).
CFStringRef CFBundleGetDevelopmentRegion(CFBundleRef bundle);

/// The localized text of `key` in the strings table `tableName` (NULL or empty:
/// "Localizable"). When the table lacks the key, `value` itself is returned, retained, or
/// the key itself when `value` is NULL or empty; a NULL key gives `value`, or "".
CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value, CFStringRef tableName);

/// Loads the bundle's executable (dlopen); true when it is loaded.
Boolean CFBundleLoadExecutable(CFBundleRef bundle);
/// CFBundleLoadExecutable that on failure stores a new CFError (domain kCFErrorDomainCocoa,
/// one of the codes above) in `*error` when `error` is not NULL; the caller releases it.
Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error);
/// True while the bundle's executable is loaded.
Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle);
/// Unloads the bundle's executable; the addresses found in it become invalid.
void CFBundleUnloadExecutable(CFBundleRef bundle);
/// The address of the function `functionName` in the bundle's executable, which is loaded
/// first when needed; NULL when it cannot be loaded or lacks the function.
void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef functionName);
/// The address of the data symbol `symbolName`, as CFBundleGetFunctionPointerForName.
void* CFBundleGetDataPointerForName(CFBundleRef bundle, CFStringRef symbolName);

// Apple's shorthands for localized strings; the comment only guides translators.
#define CFCopyLocalizedString(key, comment) \
  CFBundleCopyLocalizedString(CFBundleGetMainBundle(), (key), (key), NULL)
#define CFCopyLocalizedStringFromTable(key, tbl, comment) \
  CFBundleCopyLocalizedString(CFBundleGetMainBundle(), (key), (key), (tbl))
#define CFCopyLocalizedStringFromTableInBundle(key, tbl, bundle, comment) \
  CFBundleCopyLocalizedString((bundle), (key), (key), (tbl))

#ifdef __cplusplus
}
#endif

#endif
