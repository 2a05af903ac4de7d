// The loader with which the main plug-in finds, version-checks and binds the flash bundle.
//
// The same code is compiled into the main plug-in, which calls it at its start and end on
// one thread, and into the flash bundle, which only exports it. Nothing here is guarded:
// the globals belong to that one thread.
#ifndef XPFLASH_BUNDLELOADER_H
#define XPFLASH_BUNDLELOADER_H

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>

/// The file name under which the main plug-in carries the flash bundle in its resources.
constexpr const char* kFlashBundleFileName = "Vn7_KestCocoaFlashBundle.bundle";

/// The flash bundle's dialog entry, KestCocoa_CALLShowPluginFlashDialog, as resolved by name.
typedef int (*KestCocoa_ShowPluginFlashDialogProc)(bool withButton, unsigned int delayTicks, short dialogKind,
                                                   CFStringRef text2, CFStringRef text3, CFStringRef text1,
                                                   CFStringRef nibFolderPath, CFStringRef logoImagePath);
/// The flash bundle's version function, Vn7BundleFlash_VersionFunc.
typedef unsigned int (*Vn7BundleFlash_VersionProc)(void);

/// The loaded flash bundle (one reference, owned), or null while none is loaded.
extern CFBundleRef gFlashBundlePtr;
/// The dialog entry of the last successful load, or null when that bundle lacked it. The
/// unload leaves it set: test gFlashBundlePtr before calling it.
extern KestCocoa_ShowPluginFlashDialogProc gKestBundle_CALLShowPluginFlashDialogFunc;

extern "C" {

/// Loads the flash bundle from the resources of `pluginBundle` (the main plug-in's own
/// bundle) and resolves its dialog entry; `*outVersion` receives the version the bundle
/// reported, or 0. Returns 0; kXP_BundleNotLoaded (-4258) when the bundle cannot be found or
/// loaded, after a line to the system log; kXP_BundleTooOld (-4260) when its version
/// function is missing or reports 1227 or less, after unloading it again. A second load
/// while loaded takes a new reference without releasing the old one and reloads the code.
int Kest7_LoadMyCocoaFlashPlugin(CFBundleRef pluginBundle, unsigned int* outVersion);

/// Unloads the flash bundle and clears gFlashBundlePtr; does nothing when none is loaded.
void Kest7_UnLoadMyCocoaFlashPlugin(void);

}  // extern "C"

/// Makes `*outRef` the reference of the flash bundle in the resources folder of `bundle`:
/// XP7_FSMakeFSRef's result (kXP_FileNotFound, -43, when it is not there), or
/// kXP_ResourcesNotReferenced (-4224) when the folder has no reference. A bundle whose
/// resources folder cannot be named gives 0 and leaves `*outRef` as it was.
int Vn7_FindCocoaFlashBundleInMyBundle(CFBundleRef bundle, FSRef* outRef);

/// Makes `*outBundle` the bundle at `bundleRef` (one reference for the caller) and loads its
/// executable, unloading it first when it is loaded and `reloadIfLoaded`. Returns 0, or the
/// load's error code (4 read as -43) should a successful load report one;
/// kXP_BundleNotCreated (-4172) when no bundle can be made of the folder;
/// kXP_ExecutableNotLoaded (-200110050) when the load fails (`*outBundle` still holds the
/// bundle). A reference that names nothing gives 0 with `*outBundle` null.
int Vn7LoadExecutable(FSRef bundleRef, CFBundleRef* outBundle, bool reloadIfLoaded);

/// Unloads the executable of `bundle` and releases the caller's reference; null does
/// nothing. Returns 0.
int Vn7UnloadExecutable(CFBundleRef bundle);

/// Sets `*outFunction` to the function `name` (Mac Roman) of the bundle's executable, or to
/// null. Returns 0; kXP_ParamErr (-50) without a bundle; kXP_FunctionNameNotString
/// (-200110051) when `name` makes no string; kXP_FunctionNotFound (-200110052) when the
/// executable has no such function.
int Vn7GetFunctionPtr(CFBundleRef bundle, const char* name, void** outFunction);

/// Frees `ptr` with DisposePtr and returns 0. It served function pointers that once needed
/// a glue record of their own; CFBundle lookups need none, so nothing calls it.
int VnDisposeFunctionPtr(void* ptr);

#endif  // XPFLASH_BUNDLELOADER_H
