// The X side of the demo: a private Xvfb when there is no display, real clicks through
// xdotool and screen grabs through ImageMagick's import.
#ifndef XPDEMO_XDISPLAY_H
#define XPDEMO_XDISPLAY_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace demo {

/// Runs `argv` (found on PATH) with its output sent to /dev/null and waits for it;
/// returns whether it exited with 0.
bool RunQuietly(const std::vector<std::string>& argv);

/// An Xvfb server of the demo's own, stopped on destruction.
class PrivateXServer {
 public:
  PrivateXServer() = default;
  PrivateXServer(const PrivateXServer&) = delete;
  PrivateXServer& operator=(const PrivateXServer&) = delete;
  ~PrivateXServer() { Stop(); }

  /// Starts Xvfb on the first free display and sets DISPLAY to it. False, with `error`
  /// set, when it cannot be started.
  bool Start(std::string& error);
  /// Stops the server, when one runs.
  void Stop();
  /// The display's name (":N"), empty before Start.
  const std::string& Display() const { return display_; }

 private:
  pid_t pid_ = -1;
  std::string display_;
};

/// Starts GNUstep's daemons (gdnc, gpbs) with their output sent to /dev/null. Started on
/// demand instead, they would inherit the demo's output and keep a reader of it (ctest,
/// a pipe) waiting after the demo has ended. A second copy of either leaves by itself.
void StartGNUstepDaemons();

/// A real click with mouse button 1 at (x, y) in X coordinates (y down).
bool ClickAt(long x, long y);
/// Saves the screen's rectangle (X coordinates) as PNG in `file`.
bool Screenshot(const std::string& file, long x, long y, long width, long height);

}  // namespace demo

#endif  // XPDEMO_XDISPLAY_H
