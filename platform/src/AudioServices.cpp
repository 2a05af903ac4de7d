// AudioServicesPlayAlertSound as the terminal bell.
#include <AudioToolbox/AudioToolbox.h>

#include <unistd.h>

extern "C" void AudioServicesPlayAlertSound(SystemSoundID) {
  // Every sound number rings the same bell: there is no sound set to choose from.
  if (isatty(STDERR_FILENO) == 1) {
    const char bell = '\a';
    // A bell that cannot be written is a bell not heard; there is no one to tell.
    [[maybe_unused]] ssize_t written = write(STDERR_FILENO, &bell, 1);
  }
}
