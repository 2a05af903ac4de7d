// The loader with which the main plug-in finds, version-checks and binds the flash bundle.
#include "BundleLoader.h"

#include "services/Files.h"
#include "services/Logging.h"
#include "text/CFRef.h"
#include "text/ResultCodes.h"
#include "text/TextCore.h"

CFBundleRef gFlashBundlePtr = nullptr;
KestCocoa_ShowPluginFlashDialogProc gKestBundle_CALLShowPluginFlashDialogFunc = nullptr;

namespace {

// Bundles up to this version have a dialog interface the main plug-in cannot call.
constexpr unsigned int kRefusedVersion = 1227;

}  // namespace

extern "C" int Kest7_LoadMyCocoaFlashPlugin(CFBundleRef pluginBundle, unsigned int* outVersion) {
  *outVersion = 0;
  // A plug-in bundle whose resources cannot be named leaves the reference untouched: the
  // empty one names nothing, so that no bundle is made of it, rather than of whatever a
  // reference left on the stack names.
  FSRef ref{};
  bool loaded = false;
  if (Vn7_FindCocoaFlashBundleInMyBundle(pluginBundle, &ref) == kXP_NoErr) {
    loaded = Vn7LoadExecutable(ref, &gFlashBundlePtr, true) == kXP_NoErr && gFlashBundlePtr != nullptr;
    // The bundle of a failed load is held by nobody else.
    if (!loaded && gFlashBundlePtr != nullptr) CFRelease(gFlashBundlePtr);
  }
  if (!loaded) {
    gFlashBundlePtr = nullptr;
    // The host shows nothing of a missing bundle; the system log is where a user finds why.
    Vn_Mac_WriteToConsole("Varn Kest Plug-in: Could not load Cocoa Flash bundle");
    return kXP_BundleNotLoaded;
  }
  void* function = nullptr;
  if (Vn7GetFunctionPtr(gFlashBundlePtr, "Vn7BundleFlash_VersionFunc", &function) == kXP_NoErr) {
    *outVersion = reinterpret_cast<Vn7BundleFlash_VersionProc>(function)();
  }
  if (*outVersion <= kRefusedVersion) {
    Vn7UnloadExecutable(gFlashBundlePtr);
    gFlashBundlePtr = nullptr;
    return kXP_BundleTooOld;
  }
  // A bundle without the dialog entry still counts as loaded; the null entry tells the caller.
  Vn7GetFunctionPtr(gFlashBundlePtr, "KestCocoa_CALLShowPluginFlashDialog", &function);
  gKestBundle_CALLShowPluginFlashDialogFunc = reinterpret_cast<KestCocoa_ShowPluginFlashDialogProc>(function);
  return kXP_NoErr;
}

extern "C" void Kest7_UnLoadMyCocoaFlashPlugin(void) {
  if (gFlashBundlePtr == nullptr) return;
  Vn7UnloadExecutable(gFlashBundlePtr);
  gFlashBundlePtr = nullptr;
}

int Vn7_FindCocoaFlashBundleInMyBundle(CFBundleRef bundle, FSRef* outRef) {
  const CFRef<CFURLRef> resources(CFBundleCopyResourcesDirectoryURL(bundle));
  if (!resources) return kXP_NoErr;
  // The path is not used: it only proves that the folder can be named at all.
  const CFRef<CFURLRef> absolute(CFURLCopyAbsoluteURL(resources.get()));
  const CFRef<CFStringRef> path(
      CFURLCopyFileSystemPath(absolute ? absolute.get() : resources.get(), kCFURLPOSIXPathStyle));
  if (!path) return kXP_NoErr;
  FSRef resourcesRef;
  if (!CFURLGetFSRef(resources.get(), &resourcesRef)) return kXP_ResourcesNotReferenced;
  fmx::TextAutoPtr name;
  XP7_CStrToTxt(kFlashBundleFileName, name, fmx::Text::kEncoding_ASCII_Mac);
  return XP7_FSMakeFSRef(&resourcesRef, name, outRef);
}

int Vn7LoadExecutable(FSRef bundleRef, CFBundleRef* outBundle, bool reloadIfLoaded) {
  *outBundle = nullptr;
  if (const CFRef<CFURLRef> url(CFURLCreateFromFSRef(kCFAllocatorDefault, &bundleRef)); url) {
    *outBundle = CFBundleCreate(kCFAllocatorDefault, url.get());
    if (*outBundle == nullptr) return kXP_BundleNotCreated;
  }
  if (*outBundle == nullptr) return kXP_NoErr;
  // Unloading first makes a second load pick up a bundle replaced on disk meanwhile.
  if (reloadIfLoaded && CFBundleIsExecutableLoaded(*outBundle)) CFBundleUnloadExecutable(*outBundle);
  CFErrorRef error = nullptr;
  const bool loaded = CFBundleLoadExecutableAndReturnError(*outBundle, &error);
  int code = kXP_NoErr;
  if (error != nullptr) {
    const CFRef<CFErrorRef> owned(error);
    const CFIndex reported = CFErrorGetCode(error);
    code = reported == kCFBundleExecutableNotFoundError ? kXP_FileNotFound : static_cast<int>(reported);
  }
  return loaded ? code : kXP_ExecutableNotLoaded;
}

int Vn7UnloadExecutable(CFBundleRef bundle) {
  if (bundle != nullptr) {
    CFBundleUnloadExecutable(bundle);
    CFRelease(bundle);
  }
  return kXP_NoErr;
}

int Vn7GetFunctionPtr(CFBundleRef bundle, const char* name, void** outFunction) {
  *outFunction = nullptr;
  if (bundle == nullptr) return kXP_ParamErr;
  const CFRef<CFStringRef> symbol(CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingMacRoman));
  if (!symbol) return kXP_FunctionNameNotString;
  *outFunction = CFBundleGetFunctionPointerForName(bundle, symbol.get());
  return *outFunction != nullptr ? kXP_NoErr : kXP_FunctionNotFound;
}

int VnDisposeFunctionPtr(void* ptr) {
  DisposePtr(static_cast<Ptr>(ptr));
  return kXP_NoErr;
}
