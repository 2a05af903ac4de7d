// Ownership of one CoreFoundation object, released when the holder goes.
#ifndef XPTOOLKIT_TEXT_CFREF_H
#define XPTOOLKIT_TEXT_CFREF_H

#include <CoreFoundation/CoreFoundation.h>

/// Owns one reference (from a Create or Copy call) to a CoreFoundation object of
/// type T (CFStringRef, CFDateRef ...) and CFReleases it; null is allowed.
template <class T>
class CFRef {
 public:
  /// Takes over the reference `ref`, which may be null.
  explicit CFRef(T ref = nullptr) : ref_(ref) {}
  CFRef(const CFRef&) = delete;
  CFRef& operator=(const CFRef&) = delete;
  ~CFRef() {
    if (ref_ != nullptr) CFRelease(ref_);
  }

  /// The object, still owned by the holder.
  T get() const { return ref_; }
  explicit operator bool() const { return ref_ != nullptr; }

 private:
  T ref_;
};

#endif  // XPTOOLKIT_TEXT_CFREF_H
