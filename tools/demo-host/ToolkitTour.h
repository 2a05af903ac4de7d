// The toolkit on the in-memory host, in three short scenes printed before the dialogs.
#ifndef XPDEMO_TOOLKITTOUR_H
#define XPDEMO_TOOLKITTOUR_H

#include <string>

namespace demo {

/// Packs `samples`/menu-macroman.txt into container text and back, repairs
/// `samples`/menu-utf8.html read as Mac Roman by its meta tag, and prints a date in three
/// locales. Returns false when a scene went wrong (what went wrong is printed).
bool RunToolkitTour(const std::string& samples);

}  // namespace demo

#endif  // XPDEMO_TOOLKITTOUR_H
