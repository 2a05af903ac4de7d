// Where the toolkit's flash dialog call leads inside this bundle: nowhere.
#include "FlashEntryPoints.h"

// The bundle is what shows the dialog; its own copy of the toolkit must not call back into
// it. The main plug-in builds its toolkit with its own version of this file, which calls
// the entry it has loaded from the bundle.
int PluginCocoa_DisplayFlashDialog(bool, unsigned int, short, CFStringRef, CFStringRef, CFStringRef, CFStringRef,
                                   CFStringRef) {
  return 0;
}
