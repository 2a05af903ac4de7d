// Apple's system sounds (AudioToolbox/AudioServices.h): the alert sound the plug-in plays.
#ifndef XPPLATFORM_AUDIOTOOLBOX_AUDIOTOOLBOX_H
#define XPPLATFORM_AUDIOTOOLBOX_AUDIOTOOLBOX_H

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A sound the system knows by number.
typedef UInt32 SystemSoundID;

enum {
  /// The alert sound the user chose in the system's settings.
  kSystemSoundID_UserPreferredAlert = 0x00001000
};

/// Plays the alert sound `inSystemSoundID` and returns at once. Here a desktop has no one
/// alert sound to ask for, so the terminal bell stands in: it is written to standard error
/// when that is a terminal, and nothing happens otherwise (a server's log must not collect
/// bell characters).
void AudioServicesPlayAlertSound(SystemSoundID inSystemSoundID);

#ifdef __cplusplus
}
#endif

#endif
